#include "app/region_drag.h"

#include "app/region_selection.h"

namespace velmora {

CaptureChange RegionDrag::Feed(const SelectorEvent& e) {
  switch (e.input) {
    case SelectorInput::LeftDown:
      if (done_) return CaptureChange::None;
      anchor_ = pointer_ = e.pointer;
      dragging_ = true;
      if (!picking_) marked_ = ScreenRect{anchor_.x, anchor_.y, anchor_.x, anchor_.y};
      return CaptureChange::Take;
    case SelectorInput::Move:
      // The right button cancels at every moment of a drag, even one whose
      // button-down the selector never saw.
      if (e.rightHeld) break;
      if (done_) return CaptureChange::None;
      pointer_ = e.pointer;
      if (picking_) {
        marked_ = e.underPointer;
      } else if (dragging_) {
        marked_ = RectFromCorners(anchor_.x, anchor_.y, e.pointer.x, e.pointer.y);
      } else {
        marked_.reset();
      }
      return CaptureChange::None;
    case SelectorInput::LeftUp:
      if (done_ || !dragging_) return CaptureChange::None;
      if (!picking_) {
        Finish(RectFromCorners(anchor_.x, anchor_.y, e.pointer.x, e.pointer.y));
      } else if (e.underPointer) {
        Finish(*e.underPointer);
      } else {
        dragging_ = false;  // nothing there to take: keep waiting for a window
        return CaptureChange::Release;
      }
      return CaptureChange::None;
    case SelectorInput::RightDown:
      break;
    case SelectorInput::RightUp:
      awaitingRightUp_ = false;
      Cancel();
      return CaptureChange::None;
    case SelectorInput::Escape:
    case SelectorInput::Closed:  // by someone else: nothing left to wait for
      Cancel();
      return CaptureChange::None;
    case SelectorInput::CaptureTaken:
      // Another window took the mouse in the middle of a drag: nothing sane
      // to finish. Its release after a finished drag is no cancel.
      if (dragging_) Cancel();
      awaitingRightUp_ = false;
      return CaptureChange::None;
  }
  // A right-button cancel. The button's release is kept from the window that
  // would be under the pointer once the selector is gone (it would open a
  // context menu there).
  if (done_) return CaptureChange::None;
  Cancel();
  awaitingRightUp_ = true;
  return CaptureChange::Take;
}

void RegionDrag::Cancel() {
  if (done_) return;
  done_ = true;
  cancelled_ = true;
}

void RegionDrag::Finish(const ScreenRect& rect) {
  result_ = rect;
  cancelled_ = false;
  done_ = true;
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
