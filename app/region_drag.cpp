#include "app/region_drag.h"

#include "app/region_selection.h"

namespace velmora {

SelectorReaction RegionDrag::Feed(const SelectorEvent& e) {
  switch (e.input) {
    case SelectorInput::LeftDown: {
      if (done_) return {};
      // The corner is where the pointer is, in screen pixels whatever the
      // window's origin.
      anchor_ = e.pointer;
      dragging_ = true;
      SelectorReaction r{.capture = CaptureChange::Take};
      if (!picking_) {
        marked_ = ScreenRect{anchor_.x, anchor_.y, anchor_.x, anchor_.y};
        pointer_ = anchor_;
        r.redraw = true;
      }
      return r;
    }
    case SelectorInput::Move:
      // The right button cancels at every moment of a drag, even one whose
      // button-down the selector never saw.
      if (e.rightHeld) return CancelByRightButton();
      if (done_) return {};
      pointer_ = e.pointer;
      if (picking_) {
        marked_ = e.underPointer;
      } else if (dragging_) {
        marked_ = RectFromCorners(anchor_.x, anchor_.y, e.pointer.x, e.pointer.y);
      } else {
        marked_.reset();
      }
      return {.redraw = true};
    case SelectorInput::LeftUp:
      if (done_ || !dragging_) return {};
      if (!picking_) return Finish(RectFromCorners(anchor_.x, anchor_.y, e.pointer.x, e.pointer.y));
      if (e.underPointer) return Finish(*e.underPointer);
      dragging_ = false;  // nothing there to take: keep waiting for a window
      return {.capture = CaptureChange::Release};
    case SelectorInput::RightDown:
      return CancelByRightButton();
    case SelectorInput::RightUp:
      awaitingRightUp_ = false;
      return Cancel();
    case SelectorInput::Escape:
    case SelectorInput::Closed:  // by someone else: nothing left to wait for
      return Cancel();
    case SelectorInput::CaptureTaken: {
      // Another window took the mouse in the middle of a drag: nothing sane
      // to finish. Its release after a finished drag is no cancel.
      const SelectorReaction r = dragging_ ? Cancel() : SelectorReaction{};
      awaitingRightUp_ = false;
      return r;
    }
  }
  return {};
}

SelectorReaction RegionDrag::Cancel() {
  if (done_) return {};
  done_ = true;
  cancelled_ = true;
  return {.hide = true};
}

SelectorReaction RegionDrag::CancelByRightButton() {
  if (done_) return {};
  // The button's release is kept from the window that would be under the
  // pointer once the selector is gone (it would open a context menu there).
  awaitingRightUp_ = true;
  SelectorReaction r = Cancel();
  r.capture = CaptureChange::Take;
  return r;
}

SelectorReaction RegionDrag::Finish(const ScreenRect& rect) {
  result_ = rect;
  cancelled_ = false;
  done_ = true;
  return {.hide = true};
}

std::optional<ScreenRect> RegionDrag::Band() const {
  if (!marked_ || picking_) return marked_;
  return ScreenRect{marked_->left, marked_->top, marked_->right + 1, marked_->bottom + 1};
}

std::string RegionDrag::Hint() const {
  return SelectorHint(picking_, marked_ ? RegionBoxesFor(*marked_, depth_, method_) : std::nullopt);
}

ScreenRect HintBoxAt(ScreenPoint pointer, WindowSize size, const ScreenRect& screen,
                     int32_t offset) {
  int32_t x = pointer.x + offset, y = pointer.y + offset;
  if (x + size.width > screen.right) x = pointer.x - offset - size.width;
  if (y + size.height > screen.bottom) y = pointer.y - offset - size.height;
  return {x, y, x + size.width, y + size.height};
}

}  // namespace velmora
