// Where the parts of the application's message box go. Sizes are pixels;
// the Windows side measures the prompt and the button captions with the
// box's font and hands the numbers in, so the layout follows the font and
// the display's DPI without knowing either.
#pragma once
#include <cstdint>
#include <vector>

namespace velmora {

struct BoxRect {
  int32_t left = 0, top = 0, width = 0, height = 0;
};

struct MessageBoxMetrics {
  int32_t promptWidth = 0;  // the prompt's width, wrapped at maxPromptWidth
  int32_t promptHeight = 0;
  int32_t widestCaption = 0;  // the widest button caption
  int32_t lineHeight = 0;     // one line of the font
  int32_t iconSize = 0;       // 0 when the box has no icon
  int32_t buttonCount = 1;
};

struct MessageBoxLayout {
  int32_t clientWidth = 0, clientHeight = 0;
  BoxRect icon;  // empty without an icon
  BoxRect prompt;
  std::vector<BoxRect> buttons;
};

// The widest a prompt line may grow before it wraps, for a screen work area
// `workWidth` pixels wide and a font line `lineHeight` high.
int32_t MaxPromptWidth(int32_t workWidth, int32_t lineHeight);

MessageBoxLayout LayOutMessageBox(const MessageBoxMetrics& m);

}  // namespace velmora
