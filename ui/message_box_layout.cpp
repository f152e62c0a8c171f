#include "ui/message_box_layout.h"

#include <algorithm>

namespace velmora {

int32_t MaxPromptWidth(int32_t workWidth, int32_t lineHeight) {
  // Lines of about 40 Japanese characters read comfortably; a narrow screen
  // lowers the limit so the box stays on it.
  return std::max(lineHeight * 4, std::min(lineHeight * 40, workWidth * 3 / 5));
}

MessageBoxLayout LayOutMessageBox(const MessageBoxMetrics& m) {
  // Every gap is a fraction of the font's line, so the box scales with it.
  const int32_t margin = m.lineHeight;
  const int32_t gap = m.lineHeight / 2;
  const int32_t buttonWidth = std::max(m.widestCaption + m.lineHeight * 2, m.lineHeight * 5);
  const int32_t buttonHeight = m.lineHeight * 7 / 4;
  const int32_t count = std::max<int32_t>(m.buttonCount, 1);
  const int32_t rowWidth = count * buttonWidth + (count - 1) * gap;

  MessageBoxLayout out;
  int32_t promptLeft = margin;
  int32_t upperHeight = m.promptHeight;
  if (m.iconSize > 0) {
    out.icon = {margin, margin, m.iconSize, m.iconSize};
    promptLeft += m.iconSize + margin;
    upperHeight = std::max(upperHeight, m.iconSize);
  }
  // A short prompt stands level with the middle of the icon.
  const int32_t promptTop = margin + (upperHeight - m.promptHeight) / 2;
  out.prompt = {promptLeft, promptTop, m.promptWidth, m.promptHeight};

  out.clientWidth = std::max(promptLeft + m.promptWidth + margin, rowWidth + 2 * margin);
  const int32_t buttonTop = margin + upperHeight + margin;
  out.clientHeight = buttonTop + buttonHeight + margin;
  int32_t x = (out.clientWidth - rowWidth) / 2;
  for (int32_t i = 0; i < count; ++i, x += buttonWidth + gap) {
    out.buttons.push_back({x, buttonTop, buttonWidth, buttonHeight});
  }
  return out;
}

}  // namespace velmora
