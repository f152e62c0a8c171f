// The save step in-process, on movies the tests write.
#include <gtest/gtest.h>
#include <windows.h>

#include <thread>

#include "app/win/save_step.h"
#include "conversion/win/progress_window.h"
#include "engine/movie_reader.h"
#include "engine/result_codes.h"
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

MovieHeader HeaderOf(const std::string& path) {
  MovieReader reader;
  EXPECT_EQ(reader.OpenFile(path), 0) << path;
  return reader.Header();
}

struct Files {
  t::TempDir dir;
  SaveJob job;
  t::Movie movie;
  // A 32-bit movie: the depth that Type0 records and the 24-bit switch re-encodes.
  explicit Files(int32_t method, int32_t w = 64) {
    movie = t::MakeMovie(method, 32, w, 32, 20);
    job.movieFile = t::WriteMovie(dir, "録画.QRK", movie);
    job.aviFile = dir.Path("録画.avi");
    job.tempFile = dir.Path("temp.temp");
  }
};

// AVI only with the wave deleted, AVI and movie, and a failed recording
// that leaves every source where it was.
TEST(SaveStep, SaveModesDeleteWhatTheyShould) {
  const struct {
    bool keepMovie, deleteWave;
    int32_t runResult;
  } cases[] = {{false, true, 0}, {true, false, 0}, {false, true, MakeResultCode(kErrApi, 5)}};
  for (const auto& c : cases) {
    Files f(1);
    f.job.waveFile = f.dir.Path("録画.wav");
    t::WriteFile(f.job.waveFile, avi::test::WaveImage(8000, 1, 16, 8000));
    f.job.keepMovie = c.keepMovie;
    f.job.deleteWave = c.deleteWave;
    ScriptedAsker asker(kAnswerYes);
    // The progress window opens at the remembered corner and reports where it closed.
    const SaveOutcome out = RunSaveStep(f.job, c.runResult, asker, POINT{37, 53});
    const bool made = c.runResult == 0;
    EXPECT_EQ(out.aviMade, made);
    EXPECT_EQ(t::Exists(f.job.aviFile), made);
    EXPECT_EQ(out.movieDeleted, !t::Exists(f.job.movieFile));
    EXPECT_EQ(out.movieDeleted, made && !c.keepMovie);
    EXPECT_EQ(out.waveDeleted, !t::Exists(f.job.waveFile));
    EXPECT_EQ(out.waveDeleted, made && c.deleteWave);
    EXPECT_TRUE(asker.asked.empty());
    if (!made) continue;
    const POINT at = out.progressPosition.value_or(POINT{});
    EXPECT_EQ(std::pair(at.x, at.y), (std::pair<LONG, LONG>(37, 53)));
    EXPECT_EQ(t::ReadAvi(f.job.aviFile).frames.size(), 20u);
    const auto bytes = t::ReadFile(f.job.aviFile);
    EXPECT_NE(std::string(bytes.begin(), bytes.end()).find("auds"), std::string::npos);
  }
  Files f(1);  // movie only: no conversion and no progress window
  f.job.aviFile.clear();
  ScriptedAsker asker(kAnswerYes);
  const SaveOutcome none = RunSaveStep(f.job, 0, asker);
  EXPECT_FALSE(none.aviMade || none.progressPosition.has_value());
}

TEST(SaveStep, TwentyFourBitsReencodesType0AndLeavesDeepType1Alone) {
  Files type0(0);
  type0.job.avi24 = true;
  ScriptedAsker asker(kAnswerYes);
  SaveOutcome out = RunSaveStep(type0.job, 0, asker);
  EXPECT_TRUE(out.reencoded && out.aviMade);
  EXPECT_EQ(HeaderOf(type0.job.movieFile), (MovieHeader{1, 24, 64, 32, 20, 1}));
  EXPECT_FALSE(t::Exists(type0.job.tempFile));
  t::AviFrames avi = t::ReadAvi(type0.job.aviFile);
  EXPECT_EQ(avi.video.strf[14], 24);
  EXPECT_EQ(avi.frames.size(), 20u);

  Files type1(1);
  type1.job.avi24 = true;
  out = RunSaveStep(type1.job, 0, asker);
  EXPECT_FALSE(out.reencoded);
  EXPECT_EQ(t::ReadAvi(type1.job.aviFile).video.strf[14], 32);

  // 30-byte rows at 24 bits: the movie stays, the AVI is drawn at 24 bits.
  Files narrow(0, 10);
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
// the AVI conversion, answered either way; every run is AVI only.
TEST(SaveStep, CancelledStepsAskWhetherToGoOn) {
  using Question = std::pair<std::string, int32_t>;
  const Question reencoding{"QRK変換中にキャンセルされました。\r\n処理を続行しますか？", 20};
  const Question conversion{"キャンセルしました。AVIファイルは残しておきますか？", 36};
  const struct {
    bool reencoding;
    int32_t answer, resultNumber;
    bool aviKept, movieKept;
  } cases[] = {
      // Going on makes the AVI from the original movie, which then goes.
      {true, kAnswerYes, 0, true, false},
      {true, kAnswerNo, kErrCancelled, false, true},
      // A cancelled conversion leaves the sources; its AVI so far only when asked to.
      {false, kAnswerYes, 0, true, true},
      {false, kAnswerNo, 0, false, true},
  };
  for (const auto& c : cases) {
    Files f(c.reencoding ? 0 : 1);
    f.job.avi24 = c.reencoding;
    f.job.keepMovie = false;
    ScriptedAsker asker(c.answer);
    std::thread click([] {
      HWND w = t::WaitForWindow(GetCurrentProcess(), L"VelmoraProgressWindow", 20000);
      // A percentage in the title: the work is under way and hears the click.
      while (w && IsWindowVisible(w) && t::WindowTextW(w).find(L'%') == std::wstring::npos)
        Sleep(5);
      if (w) PostMessageW(w, WM_COMMAND, ProgressWindow::kCancelButtonId, 0);
    });
    const SaveOutcome out = RunSaveStep(f.job, 0, asker);
    click.join();
    SCOPED_TRACE(c.reencoding ? "re-encoding" : "conversion");
    EXPECT_EQ(asker.asked, (std::vector{c.reencoding ? reencoding : conversion}));
    EXPECT_EQ(out.result == 0 ? 0 : ResultNumber(out.result), c.resultNumber);
    EXPECT_FALSE(out.reencoded || t::Exists(f.job.tempFile));
    EXPECT_EQ(out.aviMade, c.reencoding && c.aviKept);
    EXPECT_EQ(t::Exists(f.job.aviFile), c.aviKept);
    EXPECT_EQ(t::Exists(f.job.movieFile), c.movieKept);
    if (c.movieKept) {
      EXPECT_EQ(HeaderOf(f.job.movieFile).method, c.reencoding ? 0 : 1);
    }
    if (!c.aviKept) continue;
    const t::AviFrames avi = t::ReadAvi(f.job.aviFile);
    EXPECT_EQ(avi.video.strf.at(14), 32);
    EXPECT_EQ(avi.frames.size() < 20u, !c.reencoding);
  }
}

TEST(SaveStep, ReencodingErrorIsShownAndNoAviIsMade) {
  Files f(0);
  auto bytes = t::EncodeMovie(f.movie.header, f.movie.frames);
  bytes[kMovieHeaderBytes] = 'X';  // the first record's tag
  t::WriteFile(f.job.movieFile, bytes);
  f.job.avi24 = true;
  ScriptedAsker asker(kAnswerOk);
  const SaveOutcome out = RunSaveStep(f.job, 0, asker);
  EXPECT_EQ(ResultNumber(out.result), kErrNoFrameHeader);
  EXPECT_EQ(
      asker.asked,
      (std::vector<std::pair<std::string, int32_t>>{
          {"QRK変換中に、\r\nフレームヘッダが見つかりません。のエラーが発生しました。", 16}}));
  EXPECT_FALSE(t::Exists(f.job.aviFile));
  EXPECT_FALSE(t::Exists(f.job.tempFile));
  EXPECT_EQ(t::ReadFile(f.job.movieFile), bytes);
}

}  // namespace
}  // namespace velmora::win
