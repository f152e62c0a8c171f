// The system's open and save file dialogs (Unicode), set up through a few
// properties. Names come back in UTF-8; an empty result means the user
// cancelled or the dialog failed, and nothing else changed.
#pragma once
#include <windows.h>

#include <string>
#include <vector>

#include "ui/file_dialog_options.h"

namespace velmora::win {

class FileDialog {
 public:
  std::string DefaultDirectory;  // folder the dialog opens in
  std::string Filter;            // "label|pattern|label|pattern"
  std::string Title;
  FileDialogFlags flags;

  std::string ShowOpenSingle(HWND owner = nullptr, const std::string& defaultName = {});
  std::string ShowSave(HWND owner = nullptr, const std::string& defaultName = {});
  std::vector<std::string> ShowOpenMulti(HWND owner = nullptr);

  static std::string CurDir();
  // Changes the current directory, drive included; false when it cannot.
  static bool ChDir(const std::string& folder);

  // The file-name and file-title buffers, in characters.
  static constexpr size_t kBufferChars = 2600;

 private:
  // Runs one dialog; the raw buffer (UTF-8, NULs kept) or empty on cancel.
  std::string Run(FileDialogKind kind, HWND owner, const std::string& defaultName,
                  uint32_t* filterIndex);
};

}  // namespace velmora::win
