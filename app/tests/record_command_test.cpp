// velmora.exe /record failing: unknown verbs, missing jobs and movies that
// cannot be opened end with the engine's code and text. Successful runs are
// in record_save_modes_test.cpp.
#include <gtest/gtest.h>
#include <windows.h>

#include "app/capture_settings.h"
#include "app/tests/run_velmora.h"
#include "app/win/ansi.h"
#include "engine/result_codes.h"
#include "engine/win/text_encoding.h"
#include "tests/temp_dir.h"

namespace velmora {
namespace {

TEST(RecordCommand, FailuresEndWithTheEngineCodeAndText) {
  const ProgramRun unknown = RunVelmora(L"/recrod x.QRT");
  EXPECT_EQ(unknown.exitCode, 2u);
  EXPECT_EQ(unknown.output.rfind("usage: velmora.exe", 0), 0u) << unknown.output;

  test::TempDir dir;
  const ProgramRun missing = RunVelmora(L"/record \"" + win::Widen(dir.Path("none.QRT")) + L"\"");
  EXPECT_EQ(static_cast<int32_t>(missing.exitCode), MakeResultCode(kErrCannotOpen));
  EXPECT_NE(missing.output.find("ファイルをオープンできません。"), std::string::npos);

  CaptureSettings s = DefaultSettings(true);
  s.Width = 64;
  s.Height = 48;
  s.Seconds = 1;
  s.MovieFile = dir.Path("no/such/folder/x.QRK");
  const std::string job = dir.Path("bad.QRT");
  ASSERT_EQ(WriteSettingsFile(job, s, win::SystemAnsiCodec()), 0);
  const ProgramRun unopenable = RunVelmora(L"/record \"" + win::Widen(job) + L"\"");
  EXPECT_EQ(static_cast<int32_t>(unopenable.exitCode), MakeResultCode(kErrCannotOpen));
  EXPECT_EQ(unopenable.output, "frames 0, drops 0, average capture 0.00 ms, result " +
                                   std::to_string(MakeResultCode(kErrCannotOpen)) +
                                   " ファイルをオープンできません。\r\n");
}

}  // namespace
}  // namespace velmora
