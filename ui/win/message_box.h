// The application's own message box: the system box's style numbers and
// answer codes, Japanese button captions, an animated icon, and the left and
// right arrow keys moving between the buttons. The prompt is a static
// control whose window text is the prompt, so screen readers and tests read
// what the user reads.
#pragma once
#include <windows.h>

#include <cstdint>
#include <string>

#include "ui/win/asker.h"

namespace velmora::win {

class MessageBoxDialog final : public Asker {
 public:
  explicit MessageBoxDialog(HWND owner = nullptr) : owner_(owner) {}

  // Shows the box modally (owned by `owner`, may be null) and returns the
  // answer code. `beep` non-zero is passed to MessageBeep first. Texts UTF-8;
  // an empty title is the application's.
  static int32_t Show(const std::string& prompt, HWND owner, int32_t style,
                      const std::string& title = {}, uint32_t beep = 0);

  int32_t Msg(const std::string& prompt, int32_t style, const std::string& title = {}) override {
    return Show(prompt, owner_, style, title);
  }

 private:
  HWND owner_;
};

// The window class of the box, for tests and tools that look for it.
inline constexpr const wchar_t* kMessageBoxClass = L"VelmoraMsgBoxEx";
// Control ids: the prompt, and the buttons left to right from kFirstButtonId.
inline constexpr int kPromptId = 100;
inline constexpr int kFirstButtonId = 101;

}  // namespace velmora::win
