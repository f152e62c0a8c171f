// Settings strings through the Japanese ANSI code page (CP932 under the
// test prefix): the file holds Shift-JIS bytes, the record UTF-8.
#include <windows.h>

#include <gtest/gtest.h>

#include "app/capture_settings.h"
#include "app/win/ansi.h"
#include "app/win/volume_description.h"
#include "engine/byte_order.h"
#include "tests/files.h"
#include "tests/temp_dir.h"

namespace velmora {
namespace {

TEST(AnsiSettings, JapaneseMovieFileIsWrittenAsShiftJis) {
  ASSERT_EQ(GetACP(), 932u) << "the test prefix runs with the Japanese code page";
  test::TempDir dir;
  const auto path = dir.Path("設定.QRT");
  CaptureSettings s = DefaultSettings(true);
  s.MovieFile = "録画テスト.QRK";
  ASSERT_EQ(WriteSettingsFile(path, s, win::SystemAnsiCodec()), 0);
  const auto bytes = test::ReadFile(path);
  const std::vector<uint8_t> sjis{0x98, 0x5E, 0x89, 0xE6, 0x83, 0x65, 0x83,
                                  0x58, 0x83, 0x67, '.',  'Q',  'R',  'K'};
  ASSERT_EQ(bytes.size(), 86 + sjis.size() + 3);
  EXPECT_EQ(LoadLE16(bytes.data() + 36), 14);
  EXPECT_TRUE(std::equal(sjis.begin(), sjis.end(), bytes.begin() + 38));
  EXPECT_EQ(ReadSettingsFile(path, win::SystemAnsiCodec()), s);
}

TEST(AnsiSettings, VolumesAreDescribedByTheirRoot) {
  // The free space of the volume, even where the movie's folder does not exist yet.
  const VolumeDescription c = win::DescribeMovieVolume("C:\\no such folder\\m.QRK");
  EXPECT_GT(c.freeBytes, 0u);
  EXPECT_FALSE(c.fileSystem.empty());
  EXPECT_GT(c.physicalMemory, 0u);
  const VolumeDescription none = win::DescribeMovieVolume("Q:\\m.QRK");
  EXPECT_EQ(none.freeBytes, 0u) << "no drive Q: in the test prefix";
}

TEST(AnsiSettings, ConversionsRefuseWhatTheCodePageCannotHold) {
  EXPECT_EQ(win::AnsiFromUtf8("①ｱ"), std::string("\x87\x40\xB1"));
  EXPECT_EQ(win::Utf8FromAnsi("\x87\x40\xB1"), std::string("①ｱ"));
  EXPECT_FALSE(win::AnsiFromUtf8("한국어")) << "Hangul has no CP932 form";
  EXPECT_FALSE(win::AnsiFromUtf8("\xFF\xFE")) << "not UTF-8";
  EXPECT_FALSE(win::Utf8FromAnsi("\x83")) << "a lead byte without its trail";
}

}  // namespace
}  // namespace velmora
