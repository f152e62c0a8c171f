// The region selector's decisions without a window: what each mouse or key
// input does to a drag or a window pick, what the selector shows meanwhile,
// and how it ends. The window feeds it inputs with screen points and carries
// out its reactions (mouse capture, hiding, repainting).
#pragma once
#include <cstdint>
#include <optional>
#include <string>

#include "app/region_band.h"       // BandColour
#include "app/window_positions.h"  // ScreenRect, ScreenPoint, WindowSize

namespace velmora {

inline constexpr BandColour kSelectorBandColour{255, 0, 0};
inline constexpr BandColour kSelectorHintColour{255, 255, 225};  // the hint box's background

struct RegionChoice {
  bool cancelled = true;  // right button, Esc, or the selector closed by someone else
  ScreenRect rect{};      // normalised; right and bottom just outside
};

enum class SelectorInput {
  LeftDown,
  LeftUp,
  Move,
  RightDown,
  RightUp,
  Escape,
  CaptureTaken,  // another window took the mouse capture
  Closed,        // the window is being closed or destroyed, or the application ends
};

struct SelectorEvent {
  SelectorInput input;
  ScreenPoint pointer{};  // where the pointer is now, in screen pixels
  // When picking: what a pick would take from the top-level window under the
  // pointer (none there). Only read for moves and the left button's release.
  std::optional<ScreenRect> underPointer;
  bool rightHeld = false;  // a move with the right button down
};

enum class CaptureChange { None, Take, Release };

struct SelectorReaction {
  CaptureChange capture = CaptureChange::None;
  bool redraw = false;  // band, hint or pointer changed
  bool hide = false;    // finished or cancelled just now
};

class RegionDrag {
 public:
  // `displayDepth` and `method` give the width the region boxes will get,
  // which the hint shows.
  RegionDrag(bool pickWindow, int32_t displayDepth, int32_t method)
      : picking_(pickWindow), depth_(displayDepth), method_(method) {}

  SelectorReaction Feed(const SelectorEvent& e);

  // Finished or cancelled; a right-button cancel may still wait for its release.
  bool Done() const { return done_; }
  bool AwaitingRightUp() const { return awaitingRightUp_; }
  RegionChoice Choice() const { return {cancelled_, result_}; }

  // The red band in screen pixels: round a dragged region (one pixel larger,
  // so it runs through the pixel under the pointer) or the picked window's
  // rectangle as it is.
  std::optional<ScreenRect> Band() const;
  std::string Hint() const;
  ScreenPoint Pointer() const { return pointer_; }

 private:
  SelectorReaction Cancel();
  SelectorReaction CancelByRightButton();
  SelectorReaction Finish(const ScreenRect& rect);

  bool picking_;
  int32_t depth_, method_;
  bool done_ = false;
  bool cancelled_ = true;
  bool dragging_ = false;  // the left button went down on the selector
  bool awaitingRightUp_ = false;
  ScreenPoint anchor_{};
  ScreenPoint pointer_{};
  std::optional<ScreenRect> marked_;  // what the region boxes would get now
  ScreenRect result_{};
};

// The hint box of `size` beside the pointer, inside `screen`: `offset`
// pixels below and right of it, or on the other side near the right or
// bottom edge.
ScreenRect HintBoxAt(ScreenPoint pointer, WindowSize size, const ScreenRect& screen,
                     int32_t offset);

}  // namespace velmora
