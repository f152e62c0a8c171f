#include "app/win/console.h"

#include <windows.h>

#include "engine/win/text_encoding.h"

namespace velmora::win {

void AttachParentConsole() {
  // Redirected output (a pipe or a file handed to us) wins over the console.
  const HANDLE out = GetStdHandle(STD_OUTPUT_HANDLE);
  if (out != nullptr && out != INVALID_HANDLE_VALUE) return;
  if (AttachConsole(ATTACH_PARENT_PROCESS)) {
    const HANDLE con =
        CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    nullptr, OPEN_EXISTING, 0, nullptr);
    if (con != INVALID_HANDLE_VALUE) SetStdHandle(STD_OUTPUT_HANDLE, con);
  }
}

void PrintLine(const std::string& utf8) {
  const HANDLE out = GetStdHandle(STD_OUTPUT_HANDLE);
  if (out == nullptr || out == INVALID_HANDLE_VALUE) return;
  DWORD mode = 0, written = 0;
  if (GetConsoleMode(out, &mode)) {
    const std::wstring text = Widen(utf8 + "\r\n");
    WriteConsoleW(out, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  } else {
    const std::string text = utf8 + "\r\n";
    WriteFile(out, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  }
}

}  // namespace velmora::win
