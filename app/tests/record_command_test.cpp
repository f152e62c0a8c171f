// velmora.exe /record end to end: a settings file written with the settings
// writer, the program run as a user would, its exit code, summary line and
// movie checked.
#include <gtest/gtest.h>
#include <windows.h>

#include "app/capture_settings.h"
#include "app/tests/pattern_job.h"
#include "app/tests/run_velmora.h"
#include "app/win/ansi.h"
#include "engine/movie_reader.h"
#include "engine/result_codes.h"
#include "engine/tests/temp_dir.h"
#include "engine/tests/win/pattern_window.h"
#include "engine/win/handles.h"
#include "engine/win/text_encoding.h"

namespace velmora {
namespace {

TEST(RecordCommand, RecordsFromASettingsFileAndReportsOnOneLine) {
  test::TempDir dir;
  test::PatternWindow window(1000, 420, 64, 48);
  window.Show(3);
  for (const int32_t method : {0, 1, 2}) {
    SCOPED_TRACE(method);
    CaptureSettings s =
        test::PatternJob(method, dir.Path("ジョブ" + std::to_string(method) + ".QRK"), 1000, 420);
    s.AsyncWrite = method == 2 ? kTrue16 : kFalse16;
    const std::string job = dir.Path("ジョブ.QRT");
    ASSERT_EQ(WriteSettingsFile(job, s, win::SystemAnsiCodec()), 0);

    const ProgramRun run = RunVelmora(L"/record \"" + win::Widen(job) + L"\"");
    EXPECT_EQ(run.exitCode, 0u) << run.output;
    EXPECT_EQ(run.output.rfind("frames 20, drops ", 0), 0u) << run.output;
    EXPECT_NE(run.output.find(" result 0 OK\r\n"), std::string::npos) << run.output;

    MovieReader reader;
    ASSERT_EQ(reader.OpenFile(s.MovieFile), 0);
    EXPECT_EQ(reader.Header(), (MovieHeader{method, 32, 64, 48, 20, 1}));
    const auto want = test::ExpectedFrame(64, 48, 3, method != 0);
    int frames = 0;
    for (; reader.Next() == 0; ++frames) {
      ASSERT_EQ(test::FirstDifferentPixel(reader.Current(), want.data(), 64 * 48), -1) << frames;
    }
    EXPECT_EQ(frames, 20);
  }
}

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
