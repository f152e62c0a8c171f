// The capture frame window driving real recordings under Wine: its texts,
// the band round the region (seen on the screen, never in the movie), cancel
// by button and by hotkey answered in the real message box, a log-off, the
// move mode, follow-mouse, and the run's own failures.
#include "app/win/capture_frame_window.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>
#include <vector>

#include "app/region_band.h"
#include "app/win/main_window_ids.h"
#include "engine/movie_reader.h"
#include "engine/result_codes.h"
#include "tests/temp_dir.h"
#include "tests/win/launch.h"
#include "tests/win/pattern_window.h"
#include "tests/win/scripted_asker.h"
#include "engine/win/text_encoding.h"
#include "ui/message_style.h"
#include "ui/win/message_box.h"

namespace velmora {
namespace {

constexpr int32_t kLeft = 900, kTop = 300, kW = 64, kH = 48;

std::string TextOf(HWND w) { return win::Narrow(test::WindowTextW(w)); }

HWND PictureText(HWND panel, int id) {
  return GetDlgItem(GetDlgItem(panel, IDC_FORM1_PICTURE1), id);
}

// The frame window with a test's action after every frame it shows.
struct DrivenWindow final : win::CaptureFrameWindow {
  using CaptureFrameWindow::CaptureFrameWindow;
  std::function<void(int32_t frame)> afterFrame;
  std::string messageAtGrabStart;
  void GrabbingBegins() override {
    messageAtGrabStart = TextOf(PictureText(Window(), IDC_FORM1_MESSAGE));
    CaptureFrameWindow::GrabbingBegins();
  }
  void FrameRecorded(int32_t n, double ms, int32_t drops, bool isDrop) override {
    CaptureFrameWindow::FrameRecorded(n, ms, drops, isDrop);
    if (afterFrame) afterFrame(n);
  }
};

// 10 frames a second for 3 seconds of the pattern window, without cursor.
win::RecordingJob Job(const std::string& path) {
  return {.left = kLeft,
          .top = kTop,
          .width = kW,
          .height = kH,
          .fps = 10,
          .seconds = 3,
          .drawMouse = false,
          .movieFile = path};
}

bool ScreenShowsBand(int x, int y) {
  return test::ScreenShows(
      {x, y, x + 1, y + 1},
      uint32_t(kBandColour.red << 16 | kBandColour.green << 8 | kBandColour.blue));
}

void PressStopHotkey() {
  const WORD keys[] = {VK_CONTROL, VK_SHIFT, VK_F9};
  INPUT in[6] = {};
  for (int i = 0; i < 3; ++i) {
    in[i].type = in[5 - i].type = INPUT_KEYBOARD;
    in[i].ki.wVk = in[5 - i].ki.wVk = keys[i];
    in[5 - i].ki.dwFlags = KEYEVENTF_KEYUP;
  }
  SendInput(6, in, sizeof(INPUT));
}

TEST(CaptureFrameWindow, StatisticsBandAndCancelWithEitherAnswer) {
  test::TempDir dir;
  test::PatternWindow pattern(kLeft, kTop, kW, kH);
  pattern.Show(3);
  const struct {
    bool byHotkey;
    int32_t answer;
  } cases[] = {{false, kAnswerYes}, {true, kAnswerNo}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.byHotkey ? "hotkey" : "button");
    WindowPositions positions{100, 100, 0, 0};
    DrivenWindow panel(GetModuleHandleW(nullptr), positions);
    ASSERT_NE(panel.Window(), nullptr);
    std::string frameText, aveText;
    bool bandSeen = false;
    panel.afterFrame = [&](int32_t n) {
      if (n != 12) return;
      frameText = TextOf(PictureText(panel.Window(), IDC_FORM1_FRAME));
      aveText = TextOf(PictureText(panel.Window(), IDC_FORM1_CAPTURE_AVE));
      bandSeen = test::WaitUntil(
          [] {
            return ScreenShowsBand(kLeft - 1, kTop + kH / 2) &&
                   ScreenShowsBand(kLeft + kW, kTop + kH);
          },
          3000);
      if (c.byHotkey)
        PressStopHotkey();
      else
        PostMessageW(GetDlgItem(panel.Window(), IDC_FORM1_COMMAND1_CANCEL), BM_CLICK, 0, 0);
    };
    const std::string path = dir.Path("frame.QRK");
    // An older, longer file must not leave its tail behind the new movie.
    std::ofstream(test::TempDir::Fs(path), std::ios::binary) << std::string(300000, 'x');
    std::string prompt;
    std::thread answerer([&] {
      if (HWND box = test::WaitForWindow(GetCurrentProcess(), win::kMessageBoxClass, 20000)) {
        prompt = TextOf(GetDlgItem(box, win::kPromptId));
        const int button = win::kFirstButtonId + (c.answer == kAnswerYes ? 0 : 1);  // Yes, No
        PostMessageW(GetDlgItem(box, button), BM_CLICK, 0, 0);
      }
    });
    const auto out = win::RunRecording(Job(path), panel);
    answerer.join();

    EXPECT_EQ(panel.messageAtGrabStart, "Please wait for initialize ... ");
    EXPECT_EQ(frameText, "Frame 10/30");
    EXPECT_EQ(aveText.rfind("CaptureAve ", 0), 0u) << aveText;
    EXPECT_TRUE(bandSeen) << "the band must stand just outside the region";
    EXPECT_EQ(prompt,
              "キャンセルしました。\r\nこのまま作業を続行しますか？\r\n\r\n"
              "続行しない場合はQRK、wavファイルは削除します。");
    EXPECT_FALSE(IsWindowVisible(panel.Window()));
    EXPECT_FALSE(IsWindowVisible(panel.BandWindow()));
    if (c.answer == kAnswerNo) {
      EXPECT_TRUE(out.filesDeleted);
      EXPECT_FALSE(std::filesystem::exists(test::TempDir::Fs(path)));
      continue;
    }
    ASSERT_EQ(out.result, 0);
    MovieReader reader;
    ASSERT_EQ(reader.OpenFile(path), 0);
    EXPECT_EQ(reader.Header().sec, 2);  // asked at frame 12: stops at 20
    // Every frame is the pattern alone: not one pixel of the band in it.
    const auto want = test::ExpectedFrame(kW, kH, 3, true);
    int frames = 0;
    while (reader.Next() == 0) {
      ++frames;
      ASSERT_EQ(test::FirstDifferentPixel(reader.Current(), want.data(), kW * kH), -1)
          << "frame " << frames;
    }
    EXPECT_EQ(frames, 20);
    EXPECT_LT(std::filesystem::file_size(test::TempDir::Fs(path)), 300000u);
  }
}

// While another program holds Ctrl+Shift+F9, which costs the runs nothing
// and is told once, not before every run: a log-off stops a run at its next
// whole second with no question, keeps the movie and still remembers where
// the panel stood; in follow-mouse mode the first frame comes from the job's
// corner, every later one from round the cursor, with the band going along.
TEST(CaptureFrameWindow, LogOffAndFollowMouseWithTheHotkeyTakenElsewhere) {
  win::UniqueWindow taker(CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr,
                                          GetModuleHandleW(nullptr), nullptr));
  ASSERT_TRUE(RegisterHotKey(taker.get(), 7, MOD_CONTROL | MOD_SHIFT | MOD_NOREPEAT, VK_F9));
  test::ScriptedAsker told(kAnswerNo);
  test::TempDir dir;
  {
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    WindowPositions positions{-50, 99999, 0, 0};
    DrivenWindow panel(GetModuleHandleW(nullptr), positions, &told);
    const WindowSize size = panel.Size();
    POINT placed{};
    LRESULT answer = 1;
    panel.afterFrame = [&](int32_t n) {
      if (n != 3) return;
      RECT r{};
      GetWindowRect(panel.Window(), &r);
      placed = {r.left, r.top};
      answer = SendMessageW(panel.Window(), WM_QUERYENDSESSION, 0, ENDSESSION_LOGOFF);
      SetWindowPos(panel.Window(), nullptr, 150, 120, 0, 0,
                   SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    };
    const std::string path = dir.Path("logoff.QRK");
    EXPECT_EQ(win::RunRecording(Job(path), panel).result, 0);
    EXPECT_EQ(placed.x, 0);
    EXPECT_EQ(placed.y, work.bottom - size.height);
    EXPECT_EQ(answer, FALSE) << "the log-off waits for the files";
    MovieReader reader;
    ASSERT_EQ(reader.OpenFile(path), 0);
    EXPECT_EQ(reader.Header().sec, 1);
    EXPECT_EQ(positions, (WindowPositions{150, 120, 0, 0}));
  }
  test::PointerLock pointer;
  test::PatternWindow pattern(kLeft, kTop, kW, kH);
  pattern.Show(7);
  SetCursorPos(kLeft + kW / 2, kTop + kH / 2);
  WindowPositions positions{100, 100, 0, 0};
  DrivenWindow panel(GetModuleHandleW(nullptr), positions, &told);
  RECT band{};
  panel.afterFrame = [&](int32_t n) {
    if (n == 5) GetWindowRect(panel.BandWindow(), &band);
  };
  auto job = Job(dir.Path("follow.QRK"));
  job.left = job.top = 0;
  job.seconds = 1;
  job.followMouse = true;
  ASSERT_EQ(win::RunRecording(job, panel).result, 0);
  UnregisterHotKey(taker.get(), 7);
  ASSERT_EQ(told.asked.size(), 1u) << "no question at the log-off, and the hotkey told once";
  EXPECT_NE(told.asked[0].first.find("Ctrl+Shift+F9"), std::string::npos) << told.asked[0].first;
  // The band is the 3 pixels round the region.
  EXPECT_EQ(std::vector<LONG>({band.left, band.top, band.right, band.bottom}),
            std::vector<LONG>({kLeft - 3, kTop - 3, kLeft + kW + 3, kTop + kH + 3}));
  MovieReader reader;
  ASSERT_EQ(reader.OpenFile(job.movieFile), 0);
  const auto want = test::ExpectedFrame(kW, kH, 7, true);
  ASSERT_EQ(reader.Next(), 0);
  EXPECT_NE(test::FirstDifferentPixel(reader.Current(), want.data(), kW * kH), -1);
  ASSERT_EQ(reader.Next(), 0);
  EXPECT_EQ(test::FirstDifferentPixel(reader.Current(), want.data(), kW * kH), -1);
}

// "非表示にする": the next left click places the panel's corner where it
// was clicked; a right click ends the mode without moving. Cancel is off
// meanwhile.
TEST(CaptureFrameWindow, MoveModePlacesThePanelAtTheNextClick) {
  WindowPositions positions{200, 150, 0, 0};
  win::CaptureFrameWindow panel(GetModuleHandleW(nullptr), positions);
  panel.MoveMe();
  ShowWindow(panel.Window(), SW_SHOWNOACTIVATE);
  HWND cancel = GetDlgItem(panel.Window(), IDC_FORM1_COMMAND1_CANCEL);
  HWND move = GetDlgItem(panel.Window(), IDC_FORM1_COMMAND1_MOVE);
  EXPECT_EQ(TextOf(move), "非表示にする");
  const struct {
    UINT button;
    POINT click, placed;
  } cases[] = {{WM_RBUTTONDOWN, {40, 30}, {200, 150}}, {WM_LBUTTONDOWN, {-20, 35}, {180, 185}}};
  for (const auto& c : cases) {
    SendMessageW(move, BM_CLICK, 0, 0);
    EXPECT_TRUE(panel.Moving());
    EXPECT_FALSE(IsWindowEnabled(cancel));
    SendMessageW(panel.Window(), c.button, 0, MAKELPARAM(c.click.x, c.click.y));
    EXPECT_FALSE(panel.Moving());
    EXPECT_TRUE(IsWindowEnabled(cancel));
    panel.SaveMe();
    EXPECT_EQ(positions.CaptureWindowX, c.placed.x);
    EXPECT_EQ(positions.CaptureWindowY, c.placed.y);
  }
  EXPECT_EQ(TextOf(move), "非表示にする") << "the button keeps its caption";
}

// A run the engine cannot start shows the engine's text through the hooks.
TEST(RecordingRun, EngineFailuresReachTheHooksWithTheirText) {
  struct Errors final : win::RecordingRunHooks {
    std::string shown;
    void ShowError(const std::string& text) override { shown = text; }
  } hooks;
  test::TempDir dir;
  const auto out = win::RunRecording(Job(dir.Path("no/such/folder/x.QRK")), hooks);
  EXPECT_EQ(ResultNumber(out.result), kErrCannotOpen);
  EXPECT_EQ(hooks.shown, "ファイルをオープンできません。");
}

}  // namespace
}  // namespace velmora
