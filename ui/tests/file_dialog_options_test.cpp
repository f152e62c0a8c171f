// Flag words of the three dialogs, the extension a save adds, the filter in
// the system's form and the paths of a multiple selection.
#include <gtest/gtest.h>

#include "ui/file_dialog_options.h"

namespace velmora {
namespace {

TEST(FileDialogOptions, FlagWords) {
  using K = FileDialogKind;
  FileDialogFlags none, noChange, all = {1, 1, 1, 1, 1, 1, 1, 1};
  noChange.Flag_NoChangeDir_Destroy = 1;
  const FileDialogFlags twos = {2, 2, 2, 2, 2, 2, 2, 2};  // only exactly 1 counts
  struct Case {
    K kind;
    FileDialogFlags flags;
    uint32_t word;
  } cases[] = {
      {K::kOpenSingle, none, 0x008A0004},
      {K::kOpenMulti, none, 0x008A0204},
      {K::kOpenSingle, noChange, 0x008A000C},
      {K::kOpenSingle, all, 0x008A000C | 0x2000 | 0x1000 | 0x100000 | 0x8000},
      {K::kOpenMulti, all, 0x008A020C | 0x2000 | 0x1000 | 0x100000 | 0x8000},
      {K::kSave, all, 0x008A000C | 0x2000 | 0x1000 | 0x2},
      {K::kSave, twos, 0x008A0004},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(FileDialogFlagWord(c.kind, c.flags), c.word) << std::hex << c.word;
  }
}

TEST(FileDialogOptions, SavedNameAndFilters) {
  const std::string movie = "Velmoraファイル|*.QRK";
  const std::string two = "設定|*.QRT;*.TXT|すべて|*.*";
  struct Case {
    std::string path, filter;
    uint32_t index;
    int32_t addExt;
    std::string saved;
  } cases[] = {
      {"C:\\v\\clip", movie, 1, 0, "C:\\v\\clip.QRK"},
      {"C:\\v\\clip", movie, 1, 1, "C:\\v\\clip"},  // 1 switches appending off
      {"C:\\v\\clip", movie, 1, 2, "C:\\v\\clip.QRK"},
      {"C:\\v\\clip.take", movie, 1, 0, "C:\\v\\clip.take"},
      {"C:\\my.dir\\clip", movie, 1, 0,
       "C:\\my.dir\\clip.QRK"},                       // a dot in the folder does not count
      {"C:\\v\\設定", two, 1, 0, "C:\\v\\設定.QRT"},  // first of several patterns
      {"C:\\v\\clip", two, 2, 0, "C:\\v\\clip"},      // "*.*" has no extension to add
      {"C:\\v\\clip", two, 3, 0, "C:\\v\\clip"},      // no such filter
      {"C:\\v\\clip", "", 1, 0, "C:\\v\\clip"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(SavedName(c.path, c.filter, c.index, c.addExt), c.saved) << c.path << " " << c.index;
  }
  EXPECT_EQ(SystemFilter(two), std::string("設定\0*.QRT;*.TXT\0すべて\0*.*\0\0", 34));
}

TEST(FileDialogOptions, MultipleSelectionPaths) {
  using V = std::vector<std::string>;
  EXPECT_EQ(SelectedPaths("C:\\v\\one.QRK"), V{"C:\\v\\one.QRK"});
  EXPECT_EQ(SelectedPaths(std::string("C:\\v\0a.QRK\0b c.QRK\0", 19)),
            (V{"C:\\v\\a.QRK", "C:\\v\\b c.QRK"}));
  EXPECT_EQ(SelectedPaths(std::string("C:\\\0a.QRK\0b.QRK", 15)), (V{"C:\\a.QRK", "C:\\b.QRK"}));
  EXPECT_EQ(SelectedPaths(""), V{});
}

}  // namespace
}  // namespace velmora
