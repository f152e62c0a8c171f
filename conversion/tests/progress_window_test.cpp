// ProgressWindow driven as a user would: its title and strip texts read while frames
// arrive, the Close entry gone while converting, cancel posted to its button
// in both conversions, the keep-or-delete question answered yes by a script
// and no through the real system box, and the sound merge's title.
#include <gtest/gtest.h>

#include <regex>
#include <thread>

#include "conversion/win/progress_window.h"
#include "engine/result_codes.h"
#include "engine/win/text_encoding.h"
#include "tests/avi_bytes.h"
#include "tests/conversion_movies.h"
#include "tests/files.h"
#include "tests/win/launch.h"
#include "tests/win/scripted_asker.h"
#include "ui/message_style.h"

namespace velmora::win {
namespace {

namespace t = velmora::test;

using test::ScriptedAsker;

std::string Title(HWND wnd) { return Narrow(t::WindowTextW(wnd)); }

// Runs with the cancel button clicked from outside at frame 3.
struct CancelRun {
  int32_t rc;
  int64_t lastFrame = -1;
};
CancelRun ConvertAndCancel(ProgressWindow& form, const std::string& qrk, const std::string& avi,
                           bool reencode) {
  CancelRun run{};
  form.onProgress = [&](int64_t i, int64_t) {
    run.lastFrame = i;
    if (i == 3) PostMessageW(form.Window(), WM_COMMAND, ProgressWindow::kCancelButtonId, 0);
  };
  run.rc = reencode ? form.ShowReencoding(qrk, avi, 24, 1) : form.ShowConversion(qrk, avi);
  form.onProgress = nullptr;
  return run;
}

TEST(ProgressWindow, ReencodingShowsProgressCannotBeClosedAndStopsOnCancel) {
  t::TempDir dir;
  ScriptedAsker asker(kAnswerYes);
  ProgressWindow form(asker, POINT{40, 30});
  EXPECT_EQ(form.Position().x, 40);
  EXPECT_EQ(form.Position().y, 30);
  const std::string src = t::WriteMovie(dir, "m.qrk", t::MakeMovie(1, 32, 64, 32, 40, 1));
  std::vector<std::string> titles;
  std::vector<StripTexts> strips;
  form.onProgress = [&](int64_t i, int64_t) {
    titles.push_back(Title(form.Window()));
    strips.push_back(form.LastView().strip);
    EXPECT_EQ(GetMenuState(GetSystemMenu(form.Window(), FALSE), SC_CLOSE, MF_BYCOMMAND), UINT(-1));
    if (i == 5) SendMessageW(form.Window(), WM_CLOSE, 0, 0);
    EXPECT_TRUE(IsWindowVisible(form.Window())) << i;
  };
  ASSERT_EQ(form.ShowReencoding(src, dir.Path("t.qrk"), 24, 1), 0);
  // The texts themselves are ProgressText's; here the window's title and
  // strip follow each frame, the title counting the finished one, and the
  // window's clock reaches the ring (times shown once 30 frames are in).
  ASSERT_EQ(titles.size(), 40u);
  EXPECT_EQ(titles[0], "2% QRK Modified");
  EXPECT_EQ(strips[10].percent, "25.0%");
  EXPECT_EQ(strips[28].total, "");
  EXPECT_TRUE(std::regex_match(strips[39].total, std::regex("Total 00:0[0-9]")))
      << strips[39].total;
  EXPECT_TRUE(std::regex_match(strips[39].rest, std::regex("Rest 00:0[0-9]"))) << strips[39].rest;
  EXPECT_FALSE(IsWindowVisible(form.Window()));
  EXPECT_NE(GetMenuState(GetSystemMenu(form.Window(), FALSE), SC_CLOSE, MF_BYCOMMAND), UINT(-1));

  const CancelRun run = ConvertAndCancel(form, src, dir.Path("temp.temp"), true);
  EXPECT_EQ(ResultNumber(run.rc), kErrCancelled);
  EXPECT_LT(run.lastFrame, 6);
  EXPECT_FALSE(t::Exists(dir.Path("temp.temp")));
  EXPECT_TRUE(asker.asked.empty());
}

TEST(ProgressWindow, ConversionMergesWithItsTitleAndCancelKeepsTheAvi) {
  t::TempDir dir;
  const std::string qrk = t::WriteMovie(dir, "m.qrk", t::MakeMovie(1, 32, 64, 32, 20, 1));
  const std::string avi = dir.Path("出力.avi"), wave = dir.Path("s.wav");
  t::WriteFile(wave, avi::test::WaveImage(8000, 1, 16, 8000));
  ScriptedAsker keep(kAnswerYes);
  ProgressWindow form(keep);
  std::vector<std::string> titles;
  form.onProgress = [&](int64_t, int64_t) { titles.push_back(Title(form.Window())); };
  ASSERT_EQ(form.ShowConversion(qrk, avi, wave), 0);
  ASSERT_GT(titles.size(), 20u);
  EXPECT_EQ(titles[19], "100% AVI Recorded");
  const std::regex merge(R"(\d+/\d+ Rest:-?[0-9.e+-]*sec\.)");
  EXPECT_TRUE(std::regex_match(titles.back(), merge)) << titles.back();

  const CancelRun run = ConvertAndCancel(form, qrk, avi, false);
  EXPECT_EQ(run.rc, 0);
  EXPECT_TRUE(form.Cancelled());
  ASSERT_EQ(keep.asked.size(), 1u);
  EXPECT_EQ(keep.asked[0].first, "キャンセルしました。AVIファイルは残しておきますか？");
  EXPECT_EQ(keep.asked[0].second, 36);
  const t::AviFrames got = t::ReadAvi(avi);
  EXPECT_EQ(got.status, avi::kAviOk);
  // The click is seen while frame 4 is shown; no frame is added after it.
  EXPECT_EQ(got.frames.size(), 5u);
  EXPECT_FALSE(form.AviDeleted());
}

TEST(ProgressWindow, TheRealQuestionBoxIsAnsweredNo) {
  t::TempDir dir;
  const std::string qrk = t::WriteMovie(dir, "m.qrk", t::MakeMovie(1, 16, 64, 32, 20, 1));
  const std::string avi = dir.Path("x.avi");
  SystemAsker asker;
  ProgressWindow form(asker);
  // The box is modal on this thread: another one finds it, reads it and answers.
  std::string text;
  std::thread answerer([&text] {
    if (HWND box = t::WaitForWindow(GetCurrentProcess(), L"#32770", 30000)) {
      wchar_t prompt[256] = {};
      GetDlgItemTextW(box, 0xffff, prompt, 256);
      text = Narrow(prompt);
      PostMessageW(box, WM_COMMAND, IDNO, 0);
    }
  });
  ConvertAndCancel(form, qrk, avi, false);
  answerer.join();
  EXPECT_EQ(text, "キャンセルしました。AVIファイルは残しておきますか？");
  EXPECT_TRUE(form.AviDeleted());
  EXPECT_FALSE(t::Exists(avi));
}

}  // namespace
}  // namespace velmora::win
