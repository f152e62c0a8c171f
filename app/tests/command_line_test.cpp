// velmora.exe /record and /convert started as a user would: the ways each
// ends with the engine's code and text, and the good run of /convert (the
// good /record run has sound and is with the sound tests). The recording and
// save behind /record are the start button's, tested with the main window;
// the AVI formats are checked with ffprobe by the conversion's tests.
#include <gtest/gtest.h>
#include <windows.h>

#include "app/capture_settings.h"
#include "app/tests/pattern_job.h"
#include "app/tests/run_velmora.h"
#include "app/win/ansi.h"
#include "engine/result_codes.h"
#include "engine/win/text_encoding.h"
#include "tests/conversion_movies.h"
#include "tests/temp_dir.h"

namespace velmora {
namespace {

std::wstring Quoted(const std::string& utf8) { return L"\"" + win::Widen(utf8) + L"\""; }

TEST(RecordCommand, EndsWithTheEngineCodeAndTextOrTheUsage) {
  test::TempDir dir;
  const CaptureSettings s = test::PatternJob(1, dir.Path("no/such/folder/x.QRK"), 1150, 600);
  const std::string job = dir.Path("保存.QRT");
  ASSERT_EQ(WriteSettingsFile(job, s, win::SystemAnsiCodec()), 0);
  const ProgramRun unopenable = RunVelmora(L"/record " + Quoted(job));
  EXPECT_EQ(static_cast<int32_t>(unopenable.exitCode), MakeResultCode(kErrCannotOpen));
  EXPECT_EQ(unopenable.output, "frames 0, drops 0, average capture 0.00 ms, result " +
                                   std::to_string(MakeResultCode(kErrCannotOpen)) +
                                   " ファイルをオープンできません。\r\n");

  const ProgramRun missing = RunVelmora(L"/record " + Quoted(dir.Path("none.QRT")));
  EXPECT_EQ(static_cast<int32_t>(missing.exitCode), MakeResultCode(kErrCannotOpen));
  EXPECT_NE(missing.output.find("ファイルをオープンできません。"), std::string::npos);

  const ProgramRun unknown = RunVelmora(L"/recrod x.QRT");
  EXPECT_EQ(unknown.exitCode, 2u);
  EXPECT_EQ(unknown.output.rfind("usage: velmora.exe", 0), 0u) << unknown.output;
}

// With /24 a Type0 32-bit movie comes out at 24 bits (the pictures are the
// re-encoding's tests) and no temporary movie is left behind.
TEST(ConvertCommand, TwentyFourBitSwitchOrUsage) {
  test::TempDir dir;
  const test::Movie m = test::MakeMovie(0, 32, 64, 32, 20);
  const std::string avi = dir.Path("先.avi");
  const ProgramRun to24 = RunVelmora(L"/convert " + Quoted(test::WriteMovie(dir, "元.qrk", m)) +
                                     L" " + Quoted(avi) + L" /24");
  ASSERT_EQ(to24.exitCode, 0u) << to24.output;
  EXPECT_NE(to24.output.find(": 20 frames"), std::string::npos) << to24.output;
  const test::AviFrames got = test::ReadAvi(avi);
  EXPECT_EQ(got.video.strf[14], 24);
  EXPECT_EQ(got.frames.size(), 20u);
  EXPECT_FALSE(test::Exists(avi + ".qrk24"));

  const ProgramRun usage = RunVelmora(L"/convert a.qrk /24");
  EXPECT_EQ(static_cast<int32_t>(usage.exitCode), MakeResultCode(kErrNotInitialised));
  EXPECT_NE(usage.output.find("[/24]"), std::string::npos) << usage.output;
}

}  // namespace
}  // namespace velmora
