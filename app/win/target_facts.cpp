#include "app/win/target_facts.h"

#include <windows.h>

#include "engine/win/text_encoding.h"
#include "engine/win/handles.h"

namespace velmora::win {
namespace {

// A folder that exists may still refuse files (read-only media, rights):
// only making one tells. The probe goes when its handle closes.
bool FolderTakesNewFile(const std::string& utf8Folder) {
  std::wstring folder = Widen(utf8Folder);
  const DWORD attributes = GetFileAttributesW(folder.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_DIRECTORY))
    return false;
  if (folder.back() != L'\\') folder += L'\\';
  const std::wstring probe =
      folder + L"velmora-" + std::to_wstring(GetCurrentProcessId()) + L".probe";
  UniqueFile file(CreateFileW(probe.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                              FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
  return file.get() != INVALID_HANDLE_VALUE;
}

}  // namespace

TargetFacts GatherTargetFacts(const std::string& utf8MovieFile) {
  TargetFacts facts;
  const std::string folder = TargetFolder(utf8MovieFile);
  facts.folderWritable = !folder.empty() && FolderTakesNewFile(folder);
  facts.nameConverts = AnsiFromUtf8(utf8MovieFile).has_value();
  return facts;
}

bool FileExists(const std::string& utf8Path) {
  return GetFileAttributesW(Widen(utf8Path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

}  // namespace velmora::win
