// The decisions of the open and save file dialogs that do not need the
// dialogs themselves: the flag word for each dialog, the filter text in the
// system's form, the extension a save adds, and the paths of a multiple
// selection. Texts are UTF-8.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace velmora {

// Each switch counts only when it is exactly 1.
struct FileDialogFlags {
  int32_t Flag_Save_AddExt = 0;  // 0 appends the filter's extension to a bare name
  int32_t Flag_NoChangeDir_Destroy = 0;
  int32_t Flag_Open_CreatePrompt = 0;
  int32_t Flag_RestoreDirectory = 0;
  int32_t Flag_Open_CreatePromptToError = 0;
  int32_t Flag_Open_LinkThuru = 0;
  int32_t Flag_Open_NoReadToMsg_Destroy = 0;
  int32_t Flag_Save_Overwriteprompt = 0;
};

enum class FileDialogKind { kOpenSingle, kSave, kOpenMulti };

// The system's open-file-name flag word for one call of a dialog.
uint32_t FileDialogFlagWord(FileDialogKind kind, const FileDialogFlags& flags);

// "label|pattern|label|pattern" as the system wants it: every "|" a NUL and
// the whole ended by two NULs (the returned string holds them).
std::string SystemFilter(const std::string& filter);

// The extension of the `index`th filter (1-based, as the dialog reports the
// selection), from the first of its ";"-separated patterns: "*.QRK" -> "QRK".
// Empty when that pattern has no usable extension ("*", "*.*") or there is
// no such filter.
std::string FilterExtension(const std::string& filter, uint32_t index);

// A saved name after the extension rule: unless Flag_Save_AddExt is 1, a name
// without "." (the folder does not count) gets "." and the selected
// filter's extension appended.
std::string SavedName(const std::string& path, const std::string& filter, uint32_t filterIndex,
                      int32_t addExtFlag);

// The paths of a multiple selection from the dialog's buffer (UTF-8, up to
// its double NUL): one entry is a full path; folder, NUL, names gives
// folder + "\" + name for each name.
std::vector<std::string> SelectedPaths(const std::string& buffer);

}  // namespace velmora
