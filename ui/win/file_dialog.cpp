#include "ui/win/file_dialog.h"

#include <commdlg.h>

#include "engine/win/text_encoding.h"

namespace velmora::win {

std::string ComD6::Run(FileDialogKind kind, HWND owner, const std::string& defaultName,
                       uint32_t* filterIndex) {
  std::wstring file(kBufferChars, L'\0');
  std::wstring fileTitle(kBufferChars, L'\0');
  const std::wstring name = Widen(defaultName);
  file.replace(0, std::min(name.size(), kBufferChars - 1), name, 0, kBufferChars - 1);
  const std::wstring filter = Widen(SystemFilter(Filter));
  const std::wstring folder = Widen(DefaultDirectory);
  const std::wstring title = Widen(Title);
  const std::string before = CurDir();

  OPENFILENAMEW ofn{};
  ofn.lStructSize = sizeof ofn;
  ofn.hwndOwner = owner;
  ofn.lpstrFilter = Filter.empty() ? nullptr : filter.c_str();
  ofn.nFilterIndex = 1;
  ofn.lpstrFile = file.data();
  ofn.nMaxFile = kBufferChars;
  ofn.lpstrFileTitle = fileTitle.data();
  ofn.nMaxFileTitle = kBufferChars;
  ofn.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
  ofn.lpstrTitle = title.empty() ? nullptr : title.c_str();
  ofn.Flags = FileDialogFlagWord(kind, flags);
  const BOOL chosen =
      kind == FileDialogKind::kSave ? GetSaveFileNameW(&ofn) : GetOpenFileNameW(&ofn);
  if (flags.Flag_RestoreDirectory == 1) ChDir(before);
  if (!chosen) return {};
  if (filterIndex) *filterIndex = ofn.nFilterIndex;
  // Up to the double NUL that ends a multiple selection.
  file[kBufferChars - 1] = L'\0';
  const size_t end = file.find(std::wstring(2, L'\0'));
  return Narrow(file.substr(0, end));
}

std::string ComD6::ShowOpenSingle(HWND owner, const std::string& defaultName) {
  return Run(FileDialogKind::kOpenSingle, owner, defaultName, nullptr);
}

std::string ComD6::ShowSave(HWND owner, const std::string& defaultName) {
  uint32_t filterIndex = 1;
  const std::string path = Run(FileDialogKind::kSave, owner, defaultName, &filterIndex);
  if (path.empty()) return {};
  return SavedName(path, Filter, filterIndex, flags.Flag_Save_AddExt);
}

std::vector<std::string> ComD6::ShowOpenMulti(HWND owner) {
  return SelectedPaths(Run(FileDialogKind::kOpenMulti, owner, {}, nullptr));
}

std::string ComD6::CurDir() {
  wchar_t dir[MAX_PATH * 4] = {};
  const DWORD n = GetCurrentDirectoryW(MAX_PATH * 4, dir);
  return n > 0 && n < MAX_PATH * 4 ? Narrow(dir) : std::string();
}

bool ComD6::ChDir(const std::string& folder) {
  // The current directory carries its drive, so one call changes both.
  return !folder.empty() && SetCurrentDirectoryW(Widen(folder).c_str()) != 0;
}

}  // namespace velmora::win
