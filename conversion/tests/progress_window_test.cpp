// ProgressWindow driven as a user would: its title and strip texts read while frames
// arrive, the Close entry gone while converting, cancel posted to its button
// and the keep-or-delete question answered through the real system box, and
// the sound merge's title. What each answer does to the files is the save
// step's to check.
#include <gtest/gtest.h>

#include <regex>
#include <thread>

#include "conversion/win/progress_window.h"
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

TEST(ProgressWindow, ReencodingShowsProgressAndCannotBeClosed) {
  t::TempDir dir;
  ScriptedAsker asker(kAnswerYes);
  ProgressWindow form(asker);
  const std::string src = t::WriteMovie(dir, "m.qrk", t::MakeMovie(1, 32, 64, 32, 40));
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
}

TEST(ProgressWindow, ConversionShowsTheSoundMergesTitle) {
  t::TempDir dir;
  const std::string qrk = t::WriteMovie(dir, "m.qrk", t::MakeMovie(1, 32, 64, 32, 20));
  const std::string avi = dir.Path("出力.avi"), wave = dir.Path("s.wav");
  t::WriteFile(wave, avi::test::WaveImage(8000, 1, 16, 8000));
  ScriptedAsker asker(kAnswerYes);
  ProgressWindow form(asker);
  std::vector<std::string> titles;
  form.onProgress = [&](int64_t, int64_t) { titles.push_back(Title(form.Window())); };
  ASSERT_EQ(form.ShowConversion(qrk, avi, wave), 0);
  ASSERT_GT(titles.size(), 20u);
  EXPECT_EQ(titles[19], "100% AVI Recorded");
  const std::regex merge(R"(\d+/\d+ Rest:-?[0-9.e+-]*sec\.)");
  EXPECT_TRUE(std::regex_match(titles.back(), merge)) << titles.back();
}

// A cancel asks through the real system box, answered here by another
// thread; the AVI written so far is kept.
TEST(ProgressWindow, CancelledConversionAsksThroughTheRealBoxAndKeepsTheAvi) {
  t::TempDir dir;
  const std::string qrk = t::WriteMovie(dir, "m.qrk", t::MakeMovie(1, 16, 64, 32, 20));
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
      PostMessageW(box, WM_COMMAND, IDYES, 0);
    }
  });
  form.onProgress = [&](int64_t i, int64_t) {
    if (i == 3) PostMessageW(form.Window(), WM_COMMAND, ProgressWindow::kCancelButtonId, 0);
  };
  EXPECT_EQ(form.ShowConversion(qrk, avi), 0);
  answerer.join();
  EXPECT_EQ(text, "キャンセルしました。AVIファイルは残しておきますか？");
  const t::AviFrames got = t::ReadAvi(avi);
  EXPECT_EQ(got.status, avi::kAviOk);
  // The click is seen while frame 4 is shown; no frame is added after it.
  EXPECT_EQ(got.frames.size(), 5u);
}

}  // namespace
}  // namespace velmora::win
