#include "engine/win/win_idioms.h"

#include <shellapi.h>

#include "engine/win/handles.h"
#include "engine/win/text_encoding.h"

namespace velmora::win {

bool ForceDelete(const std::wstring& path) {
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  return DeleteFileW(path.c_str()) != 0;
}

bool ForceDelete(const std::string& utf8Path) { return ForceDelete(Widen(utf8Path)); }

BITMAPINFOHEADER DibHeader(int32_t width, int32_t height, int32_t bitCount) {
  BITMAPINFOHEADER header{};
  header.biSize = sizeof(BITMAPINFOHEADER);
  header.biWidth = width;
  header.biHeight = height;
  header.biPlanes = 1;
  header.biBitCount = static_cast<WORD>(bitCount);
  header.biCompression = BI_RGB;
  return header;
}

bool RegisterWindowClass(const wchar_t* name, WNDPROC proc, HBRUSH background,
                         const wchar_t* cursor) {
  WNDCLASSW wc{};
  wc.lpfnWndProc = proc;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.hCursor = cursor ? LoadCursorW(nullptr, cursor) : nullptr;
  wc.hbrBackground = background;
  wc.lpszClassName = name;
  return RegisterClassW(&wc) != 0;
}

std::vector<std::wstring> ProgramArguments() {
  int argc = 0;
  const UniqueArgv argv(CommandLineToArgvW(GetCommandLineW(), &argc));
  std::vector<std::wstring> args;
  for (int i = 1; argv && i < argc; ++i) args.emplace_back(argv.get()[i]);
  return args;
}

}  // namespace velmora::win
