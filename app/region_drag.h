// The region selector's decisions without a window: what each input does to
// a drag or a window pick, what the selector shows meanwhile and how it
// ends. The window feeds it inputs with screen points, takes or releases the
// mouse capture as told, and shows Band() and Hint() until Done().
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
  bool cancelled = true;  // right button, Esc, or closed by someone else
  ScreenRect rect{};      // normalised; right and bottom just outside
};

// CaptureTaken: by another window. Closed: the window or the application is ending.
enum class SelectorInput {
  LeftDown,
  LeftUp,
  Move,
  RightDown,
  RightUp,
  Escape,
  CaptureTaken,
  Closed
};

struct SelectorEvent {
  SelectorInput input;
  ScreenPoint pointer{};  // in screen pixels
  // Picking: what a pick would take from the top-level window under the
  // pointer (none there); read for moves and the left button's release.
  std::optional<ScreenRect> underPointer;
  bool rightHeld = false;  // a move with the right button down
};

enum class CaptureChange { None, Take, Release };

class RegionDrag {
 public:
  // `displayDepth` and `method` give the width the boxes will get, for the hint.
  RegionDrag(bool pickWindow, int32_t displayDepth, int32_t method)
      : picking_(pickWindow), depth_(displayDepth), method_(method) {}

  CaptureChange Feed(const SelectorEvent& e);

  // Finished or cancelled; a right-button cancel may still wait for its release.
  bool Done() const { return done_; }
  bool AwaitingRightUp() const { return awaitingRightUp_; }
  RegionChoice Choice() const { return {cancelled_, result_}; }

  // In screen pixels: one pixel larger than a dragged region, so that it runs
  // through the pixel under the pointer; a picked window's rectangle as it is.
  std::optional<ScreenRect> Band() const;
  std::string Hint() const;
  ScreenPoint Pointer() const { return pointer_; }

 private:
  bool picking_;
  int32_t depth_, method_;
  bool done_ = false;
  bool cancelled_ = true;  // until a region is taken
  bool dragging_ = false;  // the left button went down on the selector
  bool awaitingRightUp_ = false;
  ScreenPoint anchor_{};
  ScreenPoint pointer_{};
  std::optional<ScreenRect> marked_;  // what the region boxes would get now
  ScreenRect result_{};
};

// The hint box of `size` `offset` pixels below and right of the pointer, or
// on its other side where it would run past the right or bottom of `screen`.
ScreenRect HintBoxAt(ScreenPoint pointer, WindowSize size, const ScreenRect& screen,
                     int32_t offset);

}  // namespace velmora
