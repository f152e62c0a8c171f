// The save step in-process, with movies written by the tests: the save
// modes' deletions, the sound merge, the 24-bit re-encoding (and its
// stand-in for widths it cannot handle), cancel clicked on the progress
// window in both conversions with both answers, and a re-encoding error.
#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <filesystem>
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
#include "ui/message_style.h"

namespace velmora::win {
namespace {

namespace t = velmora::test;

using test::ScriptedAsker;

// Clicks this process's progress window's cancel button once its title
// ends in `marker` (other programs on the display may show theirs).
class CancelClicker {
 public:
  explicit CancelClicker(std::wstring marker)
      : marker_(std::move(marker)), thread_([this] {
          while (!stop_ && EnumWindows(&CancelClicker::Visit, reinterpret_cast<LPARAM>(this))) {
            Sleep(5);
          }
        }) {}
  ~CancelClicker() {
    stop_ = true;
    thread_.join();
  }

 private:
  // Returns FALSE (stop enumerating) once it has clicked.
  static BOOL CALLBACK Visit(HWND wnd, LPARAM self) {
    const auto* me = reinterpret_cast<CancelClicker*>(self);
    DWORD pid = 0;
    GetWindowThreadProcessId(wnd, &pid);
    wchar_t cls[32] = {}, title[128] = {};
    GetClassNameW(wnd, cls, 32);
    if (pid != GetCurrentProcessId() || std::wstring(cls) != L"VelmoraForm5") return TRUE;
    GetWindowTextW(wnd, title, 128);
    const std::wstring text(title), &m = me->marker_;
    if (text.size() <= m.size() || text.compare(text.size() - m.size(), m.size(), m) != 0)
      return TRUE;
    PostMessageW(wnd, WM_COMMAND, ProgressWindow::kCancelButtonId, 0);
    return FALSE;
  }

  std::wstring marker_;
  std::atomic<bool> stop_{false};
  std::thread thread_;
};

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

TEST(SaveStep, CancelledReencodingAsksWhetherToGoOn) {
  for (const int32_t answer : {kAnswerYes, kAnswerNo}) {
    Files f(0, 32);
    f.job.avi24 = true;
    f.job.keepMovie = false;
    ScriptedAsker asker(answer);
    SaveOutcome out;
    {
      CancelClicker click(L"% QRK Modified");
      out = RunSaveStep(f.job, 0, asker);
    }
    ASSERT_EQ(asker.asked.size(), 1u);
    EXPECT_EQ(asker.asked[0].first, "QRK変換中にキャンセルされました。\r\n処理を続行しますか？");
    EXPECT_EQ(asker.asked[0].second, 20);
    EXPECT_FALSE(t::Exists(f.job.tempFile));
    EXPECT_FALSE(out.reencoded);
    if (answer == kAnswerYes) {
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

TEST(SaveStep, CancelledConversionKeepsTheSources) {
  for (const int32_t answer : {kAnswerYes, kAnswerNo}) {
    Files f(1, 32);
    f.job.keepMovie = false;
    ScriptedAsker asker(answer);
    SaveOutcome out;
    {
      CancelClicker click(L"% AVI Recorded");
      out = RunSaveStep(f.job, 0, asker);
    }
    ASSERT_EQ(asker.asked.size(), 1u);
    EXPECT_EQ(asker.asked[0].first, "キャンセルしました。AVIファイルは残しておきますか？");
    EXPECT_FALSE(out.aviMade);
    EXPECT_TRUE(t::Exists(f.job.movieFile));
    EXPECT_EQ(t::Exists(f.job.aviFile), answer == kAnswerYes);
    if (answer == kAnswerYes) {
      EXPECT_LT(t::ReadAvi(f.job.aviFile).frames.size(), 20u);
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
