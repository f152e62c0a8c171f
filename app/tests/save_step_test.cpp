// The save step in-process, with movies written by the tests: the save
// modes' deletions, the sound merge, the 24-bit re-encoding (and its
// stand-in for widths it cannot handle), cancel clicked on the progress
// window in both conversions with both answers, and a re-encoding error.
#include <gtest/gtest.h>
#include <windows.h>

#include <thread>

#include "app/win/save_step.h"
#include "conversion/win/progress_window.h"
#include "engine/movie_reader.h"
#include "engine/result_codes.h"
#include "engine/win/text_encoding.h"
#include "tests/avi_bytes.h"
#include "tests/conversion_movies.h"
#include "tests/files.h"
#include "tests/movie_bytes.h"
#include "tests/win/scripted_asker.h"
#include "tests/win/launch.h"
#include "ui/message_style.h"

namespace velmora::win {
namespace {

namespace t = velmora::test;

using test::ScriptedAsker;

// Runs the save step and clicks cancel on its progress window.
SaveOutcome RunAndCancel(const SaveJob& job, Asker& asker) {
  std::thread click([] {
    HWND w = t::WaitForWindow(GetCurrentProcess(), L"VelmoraProgressWindow", 20000);
    // A percentage in the title: the work is under way and hears the click.
    while (w && IsWindowVisible(w) && t::WindowTextW(w).find(L'%') == std::wstring::npos) Sleep(5);
    if (w) PostMessageW(w, WM_COMMAND, ProgressWindow::kCancelButtonId, 0);
  });
  const SaveOutcome out = RunSaveStep(job, 0, asker);
  click.join();
  return out;
}

MovieHeader HeaderOf(const std::string& path) {
  MovieReader reader;
  EXPECT_EQ(reader.OpenFile(path), 0) << path;
  return reader.Header();
}

struct Files {
  t::TempDir dir;
  SaveJob job;
  t::Movie movie;
  Files(int32_t method, int32_t bits, int32_t w = 64) {
    movie = t::MakeMovie(method, bits, w, 32, 20, 1);
    job.movieFile = t::WriteMovie(dir, "録画.QRK", movie);
    job.aviFile = dir.Path("録画.avi");
    job.tempFile = dir.Path("temp.temp");
  }
};

TEST(SaveStep, SaveModesDeleteWhatTheyShould) {
  {
    Files f(1, 32);
    f.job.waveFile = f.dir.Path("録画.wav");
    t::WriteFile(f.job.waveFile, avi::test::WaveImage(8000, 1, 16, 8000));
    f.job.keepMovie = false;
    f.job.deleteWave = true;
    ScriptedAsker asker(kAnswerYes);
    const SaveOutcome out = RunSaveStep(f.job, 0, asker);
    EXPECT_EQ(out.result, 0);
    EXPECT_TRUE(out.aviMade && out.movieDeleted && out.waveDeleted);
    EXPECT_FALSE(t::Exists(f.job.movieFile));
    EXPECT_FALSE(t::Exists(f.job.waveFile));
    EXPECT_EQ(t::ReadAvi(f.job.aviFile).frames.size(), 20u);
    const auto bytes = t::ReadFile(f.job.aviFile);
    EXPECT_NE(std::string(bytes.begin(), bytes.end()).find("auds"), std::string::npos);
    EXPECT_TRUE(asker.asked.empty());
  }
  {
    Files f(1, 32);  // AVI and movie; the wave stays when not asked to go
    f.job.waveFile = f.dir.Path("録画.wav");
    t::WriteFile(f.job.waveFile, avi::test::WaveImage(8000, 1, 16, 8000));
    ScriptedAsker asker(kAnswerYes);
    // The progress window opens at the remembered corner and reports where it closed.
    const SaveOutcome out = RunSaveStep(f.job, 0, asker, POINT{37, 53});
    EXPECT_TRUE(out.aviMade);
    ASSERT_TRUE(out.progressPosition.has_value());
    EXPECT_EQ(out.progressPosition->x, 37);
    EXPECT_EQ(out.progressPosition->y, 53);
    EXPECT_TRUE(t::Exists(f.job.movieFile) && t::Exists(f.job.waveFile) &&
                t::Exists(f.job.aviFile));
  }
  {
    Files f(1, 32);  // movie only; a failed recording makes no AVI either
    ScriptedAsker asker(kAnswerYes);
    const std::string avi = f.job.aviFile;
    f.job.aviFile.clear();
    const SaveOutcome none = RunSaveStep(f.job, 0, asker);
    EXPECT_FALSE(none.aviMade || none.progressPosition.has_value());
    f.job.aviFile = avi;
    EXPECT_FALSE(RunSaveStep(f.job, MakeResultCode(kErrApi, 5), asker).aviMade);
    EXPECT_FALSE(t::Exists(avi));
    EXPECT_TRUE(t::Exists(f.job.movieFile));
  }
}

TEST(SaveStep, TwentyFourBitsReencodesType0AndLeavesDeepType1Alone) {
  Files type0(0, 32);
  type0.job.avi24 = true;
  ScriptedAsker asker(kAnswerYes);
  SaveOutcome out = RunSaveStep(type0.job, 0, asker);
  EXPECT_TRUE(out.reencoded && out.aviMade);
  EXPECT_EQ(HeaderOf(type0.job.movieFile), (MovieHeader{1, 24, 64, 32, 20, 1}));
  EXPECT_FALSE(t::Exists(type0.job.tempFile));
  t::AviFrames avi = t::ReadAvi(type0.job.aviFile);
  EXPECT_EQ(avi.video.strf[14], 24);
  ASSERT_EQ(avi.frames.size(), 20u);
  EXPECT_EQ(avi.frames[7], t::As24Bit(type0.movie, type0.movie.frames[7]));

  Files type1(1, 32);
  type1.job.avi24 = true;
  out = RunSaveStep(type1.job, 0, asker);
  EXPECT_FALSE(out.reencoded);
  EXPECT_EQ(t::ReadAvi(type1.job.aviFile).video.strf[14], 32);

  // 30-byte rows at 24 bits: the movie stays, the AVI is drawn at 24 bits.
  Files narrow(0, 32, 10);
  narrow.job.avi24 = true;
  out = RunSaveStep(narrow.job, 0, asker);
  EXPECT_FALSE(out.reencoded);
  EXPECT_EQ(HeaderOf(narrow.job.movieFile).method, 0);
  avi = t::ReadAvi(narrow.job.aviFile);
  EXPECT_EQ(avi.video.strf[14], 24);
  EXPECT_EQ(avi.frames.size(), 20u);
  EXPECT_TRUE(asker.asked.empty());
}

// Cancel clicked in the re-encoding (a Type0 movie for a 24-bit AVI) or in
// the AVI conversion, answered either way.
TEST(SaveStep, CancelledStepsAskWhetherToGoOn) {
  const struct {
    bool reencoding;
    std::pair<std::string, int32_t> question;
  } steps[] = {{true, {"QRK変換中にキャンセルされました。\r\n処理を続行しますか？", 20}},
               {false, {"キャンセルしました。AVIファイルは残しておきますか？", 36}}};
  for (const auto& step : steps) {
    for (const int32_t answer : {kAnswerYes, kAnswerNo}) {
      Files f(step.reencoding ? 0 : 1, 32);
      f.job.avi24 = step.reencoding;
      f.job.keepMovie = false;
      ScriptedAsker asker(answer);
      const SaveOutcome out = RunAndCancel(f.job, asker);
      EXPECT_EQ(asker.asked, (std::vector{step.question}));
      EXPECT_FALSE(t::Exists(f.job.tempFile));
      EXPECT_FALSE(out.reencoded);
      const bool yes = answer == kAnswerYes;
      if (!step.reencoding) {
        // The sources stay; the AVI so far only when asked to.
        EXPECT_FALSE(out.aviMade);
        EXPECT_TRUE(t::Exists(f.job.movieFile));
        EXPECT_EQ(t::Exists(f.job.aviFile), yes);
        if (yes) {
          EXPECT_LT(t::ReadAvi(f.job.aviFile).frames.size(), 20u);
        }
      } else if (yes) {
        // Made from the original movie, at its own depth; AVI only removes it.
        EXPECT_EQ(out.result, 0);
        EXPECT_EQ(t::ReadAvi(f.job.aviFile).video.strf[14], 32);
        EXPECT_FALSE(t::Exists(f.job.movieFile));
      } else {
        EXPECT_EQ(ResultNumber(out.result), kErrCancelled);
        EXPECT_FALSE(t::Exists(f.job.aviFile));
        EXPECT_EQ(HeaderOf(f.job.movieFile).method, 0);
      }
    }
  }
}

TEST(SaveStep, ReencodingErrorIsShownAndNoAviIsMade) {
  Files f(0, 32);
  auto bytes = t::EncodeMovie(f.movie.header, f.movie.frames);
  bytes[kMovieHeaderBytes] = 'X';  // the first record's tag
  t::WriteFile(f.job.movieFile, bytes);
  f.job.avi24 = true;
  ScriptedAsker asker(kAnswerOk);
  const SaveOutcome out = RunSaveStep(f.job, 0, asker);
  EXPECT_EQ(ResultNumber(out.result), kErrNoFrameHeader);
  ASSERT_EQ(asker.asked.size(), 1u);
  EXPECT_EQ(asker.asked[0].first,
            "QRK変換中に、\r\nフレームヘッダが見つかりません。のエラーが発生しました。");
  EXPECT_EQ(asker.asked[0].second, 16);
  EXPECT_FALSE(t::Exists(f.job.aviFile));
  EXPECT_FALSE(t::Exists(f.job.tempFile));
  EXPECT_EQ(t::ReadFile(f.job.movieFile), bytes);
}

}  // namespace
}  // namespace velmora::win
