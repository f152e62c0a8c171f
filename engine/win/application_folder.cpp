#include "engine/win/application_folder.h"

#include <windows.h>

#include <filesystem>

#include "engine/win/text_encoding.h"

namespace velmora::win {

std::wstring ExecutablePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD n = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (n < path.size()) return path.substr(0, n);
    path.resize(path.size() * 2);
  }
}

std::string ResolveInApplicationFolder(const std::string& utf8Path) {
  const std::filesystem::path p(Widen(utf8Path));
  if (utf8Path.empty() || p.is_absolute()) return utf8Path;
  return Narrow((std::filesystem::path(ExecutablePath()).parent_path() / p).wstring());
}

}  // namespace velmora::win
