#include "app/region_drag.h"

#include "app/region_selection.h"

namespace velmora {

CaptureChange RegionDrag::Feed(const SelectorEvent& e) {
  if (done_) {
    // Only a wait for the right button's release goes on, until it comes or
    // the capture that would have brought it is gone.
    if (e.input == SelectorInput::RightUp || e.input == SelectorInput::CaptureTaken)
      awaitingRightUp_ = false;
    return CaptureChange::None;
  }
  switch (e.input) {
    case SelectorInput::LeftDown:
      anchor_ = pointer_ = e.pointer;
      dragging_ = true;
      if (!picking_) marked_ = ScreenRect{anchor_.x, anchor_.y, anchor_.x, anchor_.y};
      return CaptureChange::Take;
    case SelectorInput::Move:
      // The right button cancels at every moment of a drag, even one whose
      // button-down the selector never saw.
      if (e.rightHeld) break;
      pointer_ = e.pointer;
      if (picking_) {
        marked_ = e.underPointer;
      } else if (dragging_) {
        marked_ = RectFromCorners(anchor_.x, anchor_.y, e.pointer.x, e.pointer.y);
      }
      return CaptureChange::None;
    case SelectorInput::LeftUp:
      if (!dragging_) return CaptureChange::None;
      if (!picking_) {
        result_ = RectFromCorners(anchor_.x, anchor_.y, e.pointer.x, e.pointer.y);
      } else if (e.underPointer) {
        result_ = *e.underPointer;
      } else {
        dragging_ = false;  // nothing there to take: keep waiting for a window
        return CaptureChange::Release;
      }
      done_ = true;
      cancelled_ = false;
      return CaptureChange::None;
    case SelectorInput::RightDown:
      break;
    case SelectorInput::RightUp:
    case SelectorInput::Escape:
    case SelectorInput::Closed:  // by someone else: nothing left to wait for
      done_ = true;              // cancelled until a region is taken
      return CaptureChange::None;
    case SelectorInput::CaptureTaken:
      // Another window took the mouse in the middle of a drag: nothing sane
      // to finish. Taken before any drag, it changes nothing.
      done_ = dragging_;
      return CaptureChange::None;
  }
  // A right-button cancel. The button's release is kept from the window that
  // would be under the pointer once the selector is gone (it would open a
  // context menu there).
  done_ = awaitingRightUp_ = true;
  return CaptureChange::Take;
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
