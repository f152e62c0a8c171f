// velmora.exe /record with each save mode: a short recording of the painted
// pattern, then which files exist, what the movie's header says and what
// the AVI holds. With VELMORA_KEEP_AVIS set to a folder the AVIs are copied
// there as MODE-FRAMES.avi for the ffprobe check (tests/avi_tools_check.sh).
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "app/capture_settings.h"
#include "app/tests/pattern_job.h"
#include "app/tests/run_velmora.h"
#include "app/win/ansi.h"
#include "engine/movie_reader.h"
#include "engine/win/text_encoding.h"
#include "tests/conversion_movies.h"
#include "tests/temp_dir.h"
#include "tests/win/pattern_window.h"

namespace velmora {
namespace {

struct Mode {
  const char* name;
  int32_t method;
  bool avi, keepMovie, avi24, mapped;
};

TEST(RecordSaveModes, EachModeLeavesItsFiles) {
  test::TempDir dir;
  // Apart from the other /record tests' window: the two may run together.
  test::PatternWindow window(1150, 600, 64, 48);
  window.Show(5);
  const Mode modes[] = {
      {"both", 1, true, true, false, false},      // "AVIとQRKを作成"
      {"avionly", 2, true, false, false, false},  // "AVIだけ作成"
      {"qrkonly", 2, false, true, false, true},   // "QRKだけ作成", through the mapped writer
      {"type0to24", 0, true, true, true, false},  // "24bitでAVIを保存する" re-encodes Type0
  };
  for (const Mode& m : modes) {
    SCOPED_TRACE(m.name);
    CaptureSettings s =
        test::PatternJob(m.method, dir.Path(std::string("保存") + m.name + ".QRK"), 1150, 600);
    s.AviFile = m.avi ? dir.Path(std::string("保存") + m.name + ".avi") : "";
    s.KeepMovie = Bool16(m.keepMovie);
    s.Avi24Bit = Bool16(m.avi24);
    s.AsyncWrite = Bool16(m.mapped);
    const std::string job = dir.Path("保存.QRT");
    ASSERT_EQ(WriteSettingsFile(job, s, win::SystemAnsiCodec()), 0);

    const ProgramRun run = RunVelmora(L"/record \"" + win::Widen(job) + L"\"");
    EXPECT_EQ(run.exitCode, 0u) << run.output;
    EXPECT_EQ(run.output.rfind("frames 20, drops ", 0), 0u) << run.output;
    EXPECT_NE(run.output.find(" result 0 OK\r\n"), std::string::npos) << run.output;

    const bool movieThere = test::Exists(s.MovieFile);
    EXPECT_EQ(movieThere, m.keepMovie);
    if (movieThere) {
      MovieReader reader;
      ASSERT_EQ(reader.OpenFile(s.MovieFile), 0);
      EXPECT_EQ(reader.Header(),
                (MovieHeader{m.avi24 ? 1 : m.method, m.avi24 ? 24 : 32, 64, 48, 20, 1}));
      const auto want = test::ExpectedFrame(64, 48, 5, m.method != 0);
      int frames = 0;
      for (; !m.avi24 && reader.Next() == 0; ++frames)
        ASSERT_EQ(test::FirstDifferentPixel(reader.Current(), want.data(), 64 * 48), -1) << frames;
      EXPECT_EQ(frames, m.avi24 ? 0 : 20);
    }
    if (!m.avi) {
      EXPECT_FALSE(std::filesystem::exists(
          test::TempDir::Fs(dir.Path(std::string("保存") + m.name + ".avi"))));
      continue;
    }
    // The pictures themselves are the save step's (tested in-process); here
    // the AVI has every frame at the depth the mode asks for.
    const test::AviFrames avi = test::ReadAvi(s.AviFile);
    ASSERT_EQ(avi.frames.size(), 20u);
    EXPECT_EQ(avi.video.strf[14], m.avi24 ? 24 : 32);
    test::KeepForTools(s.AviFile, m.name, avi.frames.size());
  }
}

}  // namespace
}  // namespace velmora
