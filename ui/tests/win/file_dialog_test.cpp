// The real save and open dialogs answered by typing names, as a user would:
// the extension a save adds, the paths of a multiple selection, and the
// current folder put back.
#include <gtest/gtest.h>

#include <fstream>

#include "engine/win/text_encoding.h"
#include "tests/temp_dir.h"
#include "tests/win/window_actor.h"
#include "ui/win/file_dialog.h"

namespace velmora::win {
namespace {

// Types `name` into the dialog's file-name box and presses its OK button.
void TypeNameAndConfirm(HWND dialog, const std::wstring& name) {
  // The dialog's only edit box, however deep its combo boxes nest it.
  HWND edit = nullptr;
  EnumChildWindows(
      dialog,
      [](HWND c, LPARAM out) -> BOOL {
        wchar_t cls[16] = {};
        GetClassNameW(c, cls, 16);
        if (lstrcmpiW(cls, L"Edit") != 0) return TRUE;
        *reinterpret_cast<HWND*>(out) = c;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&edit));
  SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name.c_str()));
  SendMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
}

TEST(ComD6, SaveAndOpenAnsweredByTypedNames) {
  test::TempDir dir;
  for (const char* name : {"a.QRK", "b c.QRK"})
    std::ofstream(test::TempDir::Fs(dir.Path(name))) << "x";
  const std::string folder = dir.Path("");
  const std::string before = ComD6::CurDir();

  ComD6 dialog;
  dialog.DefaultDirectory = folder;
  dialog.Filter = "Velmoraファイル|*.QRK|すべてのファイル|*.*";
  dialog.Title = "保存先";
  dialog.flags.Flag_RestoreDirectory = 1;
  std::wstring shownTitle;
  auto typed = [&](const std::wstring& name) {
    return test::WindowActor(L"#32770", [&shownTitle, name](HWND d) {
      shownTitle = test::WindowTextW(d);
      TypeNameAndConfirm(d, name);
    });
  };
  std::string saved;
  {
    auto actor = typed(L"clip");
    saved = dialog.ShowSave();
  }
  EXPECT_EQ(saved, dir.Path("clip.QRK"));
  EXPECT_EQ(Narrow(shownTitle), "保存先");
  EXPECT_EQ(ComD6::CurDir(), before);

  std::vector<std::string> opened;
  {
    auto actor = typed(L"\"a.QRK\" \"b c.QRK\"");
    opened = dialog.ShowOpenMulti();
  }
  EXPECT_EQ(opened, (std::vector<std::string>{dir.Path("a.QRK"), dir.Path("b c.QRK")}));
  EXPECT_EQ(ComD6::CurDir(), before);
}

}  // namespace
}  // namespace velmora::win
