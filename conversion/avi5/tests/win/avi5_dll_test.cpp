// AVI5.DLL's entries as a caller sees them: ANSI status texts,
// refusals in the wrong order or with impossible values, and a one-file
// state that survives a caller who never closed.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>

#include "conversion/avi5/avi5_api.h"
#include "conversion/avi5/avi_status.h"
#include "engine/win/text_encoding.h"
#include "tests/conversion_movies.h"
#include "tests/temp_dir.h"

namespace velmora::avi {
namespace {

TEST(Avi5Dll, ErrorTextsAreShiftJisAndEndInsideTheBuffer) {
  ASSERT_EQ(GetACP(), 932u);  // the prefix's code page: the texts must be Shift_JIS bytes
  char text[260];
  std::memset(text, 'x', sizeof text);
  EXPECT_EQ(AVIGetError(kAviWaveNotPcm, text), 0);
  const wchar_t* wide = L"PCM形式以外のWAVEファイルは結合できません。";
  char sjis[260] = {};
  WideCharToMultiByte(932, 0, wide, -1, sjis, sizeof sjis, nullptr, nullptr);
  EXPECT_STREQ(text, sjis);
}

TEST(Avi5Dll, RefusesNullsCallsOutOfOrderAndImpossibleValues) {
  EXPECT_EQ(AVIAddWaveToAVI(nullptr, "x.wav", 0), kAviCannotOpenAvi);
  EXPECT_EQ(AVIAddWaveToAVI("x.avi", nullptr, 0), kAviCannotOpenWave);
  char name[260] = "前の名前";
  EXPECT_EQ(GetAVICompressor(0, nullptr, name), 0);
  EXPECT_STREQ(name, "前の名前");
  // Without a name buffer the chooser must not even show (it would wait for a user).
  uint8_t cv[96] = {};
  EXPECT_EQ(GetAVICompressor(0, cv, nullptr), 0);
  EXPECT_EQ(AVIGetError(kAviWaveNotPcm, nullptr), kAviBadParameter);

  test::TempDir dir;
  const std::string avi = win::Utf8ToAnsi(dir.Path("a.avi"));
  uint8_t frame[4 * 4 * 4] = {};
  EXPECT_EQ(AVICreateAddBitmap(frame), kAviNotOpen);
  EXPECT_EQ(AVICreateClose(), kAviNotOpen);
  EXPECT_EQ(AVICreateInit(avi.c_str(), nullptr, 4, 4, 12, 30, 1, "AVIFile"), kAviBadParameter);
  EXPECT_EQ(AVICreateInit(nullptr, nullptr, 4, 4, 32, 30, 1, "AVIFile"), kAviBadParameter);
  const std::string noFolder = win::Utf8ToAnsi(dir.Path("無い\\a.avi"));
  EXPECT_EQ(AVICreateInit(noFolder.c_str(), nullptr, 4, 4, 32, 30, 1, "AVIFile"), kAviCannotCreate);

  // A second create finishes the file the caller left open.
  ASSERT_EQ(AVICreateInit(avi.c_str(), nullptr, 4, 4, 32, 30, 1, "AVIFile"), kAviOk);
  ASSERT_EQ(AVICreateAddBitmap(frame), kAviOk);
  EXPECT_EQ(AVICreateAddBitmap(nullptr), kAviBadParameter);
  const std::string b = win::Utf8ToAnsi(dir.Path("b.avi"));
  ASSERT_EQ(AVICreateInit(b.c_str(), nullptr, 4, 4, 32, 30, 1, "AVIFile"), kAviOk);
  ASSERT_EQ(AVICreateClose(), kAviOk);
  const auto first = velmora::test::ReadAvi(dir.Path("a.avi"));
  EXPECT_EQ(first.status, kAviOk);
  EXPECT_EQ(first.frames.size(), 1u);
}

}  // namespace
}  // namespace velmora::avi
