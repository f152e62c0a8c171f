#include "ui/file_dialog_options.h"

namespace velmora {
namespace {

// The system's open-file-name flag bits.
constexpr uint32_t kReadOnlyHidden = 0x4;
constexpr uint32_t kNoChangeDir = 0x8;
constexpr uint32_t kOverwritePrompt = 0x2;
constexpr uint32_t kMultipleSelection = 0x200;
constexpr uint32_t kFileMustExist = 0x1000;
constexpr uint32_t kCreatePrompt = 0x2000;
constexpr uint32_t kNoReadOnlyReturn = 0x8000;
constexpr uint32_t kNoNetworkButton = 0x20000;
constexpr uint32_t kExplorer = 0x80000;
constexpr uint32_t kNoDereferenceLinks = 0x100000;
constexpr uint32_t kResizable = 0x800000;

bool On(int32_t flag) { return flag == 1; }

}  // namespace

uint32_t FileDialogFlagWord(FileDialogKind kind, const FileDialogFlags& f) {
  uint32_t word = kResizable | kExplorer | kNoNetworkButton | kReadOnlyHidden;
  if (On(f.Flag_NoChangeDir_Destroy)) word |= kNoChangeDir;
  if (kind == FileDialogKind::kOpenMulti) word |= kMultipleSelection;
  // The save dialog honours the two create switches of the open side too,
  // and the open dialogs ignore the overwrite switch.
  if (On(f.Flag_Open_CreatePrompt)) word |= kCreatePrompt;
  if (On(f.Flag_Open_CreatePromptToError)) word |= kFileMustExist;
  if (kind == FileDialogKind::kSave) {
    if (On(f.Flag_Save_Overwriteprompt)) word |= kOverwritePrompt;
  } else {
    if (On(f.Flag_Open_LinkThuru)) word |= kNoDereferenceLinks;
    if (On(f.Flag_Open_NoReadToMsg_Destroy)) word |= kNoReadOnlyReturn;
  }
  return word;
}

std::string SystemFilter(const std::string& filter) {
  std::string out = filter;
  for (char& c : out) {
    if (c == '|') c = '\0';
  }
  out.append(2, '\0');
  return out;
}

std::string FilterExtension(const std::string& filter, uint32_t index) {
  // Fields alternate label, pattern: the index-th pattern is field 2*index-1.
  if (index == 0) return {};
  size_t begin = 0;
  for (uint32_t field = 0; field < 2 * index - 1; ++field) {
    begin = filter.find('|', begin);
    if (begin == std::string::npos) return {};
    ++begin;
  }
  std::string pattern = filter.substr(begin, filter.find('|', begin) - begin);
  pattern = pattern.substr(0, pattern.find(';'));
  const size_t dot = pattern.rfind('.');
  if (dot == std::string::npos) return {};
  const std::string ext = pattern.substr(dot + 1);
  return ext.find_first_of("*?") == std::string::npos ? ext : std::string();
}

std::string SavedName(const std::string& path, const std::string& filter, uint32_t filterIndex,
                      int32_t addExtFlag) {
  if (addExtFlag == 1) return path;
  const size_t nameStart = path.find_last_of("\\/");
  const std::string name = nameStart == std::string::npos ? path : path.substr(nameStart + 1);
  const std::string ext = FilterExtension(filter, filterIndex);
  if (name.find('.') != std::string::npos || ext.empty()) return path;
  return path + "." + ext;
}

std::vector<std::string> SelectedPaths(const std::string& buffer) {
  std::vector<std::string> parts;
  for (size_t begin = 0; begin < buffer.size();) {
    const size_t end = buffer.find('\0', begin);
    const size_t stop = end == std::string::npos ? buffer.size() : end;
    if (stop == begin) break;  // the double NUL
    parts.push_back(buffer.substr(begin, stop - begin));
    begin = stop + 1;
  }
  if (parts.size() <= 1) return parts;
  std::string folder = parts.front();
  // A drive root comes back as "C:\"; do not double its separator.
  if (folder.back() != '\\') folder += '\\';
  std::vector<std::string> paths;
  for (size_t i = 1; i < parts.size(); ++i) paths.push_back(folder + parts[i]);
  return paths;
}

}  // namespace velmora
