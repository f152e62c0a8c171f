// The main window itself, in-process under Wine: built from the real dialog
// template and driven only through its control ids, with the file dialogs,
// the message box and the shell answered by the test; the start button
// records a pattern window.
#include "app/win/main_window.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>
#include <regex>
#include <thread>

#include "app/win/ansi.h"
#include "app/win/main_window_ids.h"
#include "app/start_checks.h"
#include "app/tests/pattern_job.h"
#include "app/win/region_selector.h"
#include "app/win/startup.h"
#include "app/win/target_facts.h"
#include "conversion/avi5/tests/win/test_codec.h"
#include "engine/movie_reader.h"
#include "tests/win/pattern_window.h"
#include "engine/win/text_encoding.h"
#include "engine/win/handles.h"
#include "tests/files.h"
#include "tests/temp_dir.h"
#include "tests/win/launch.h"
#include "tests/win/scripted_asker.h"
#include "ui/message_style.h"
#include "tests/win/window_actor.h"

namespace velmora::win {
namespace {

namespace fs = std::filesystem;
using test::TempDir;

// An application folder with its settings folder, and the window over it.
struct Window {
  explicit Window(bool sound = false, const CaptureSettings* startup = nullptr) {
    fs::create_directories(TempDir::Fs(dir.Path("settings")));
    paths = BuildStartupPaths(dir.Path(""));
    if (startup) WriteSettingsFile(paths.DefaultSettingsFile, *startup, SystemAnsiCodec());
    MainWindowSetup setup;
    setup.paths = paths;
    setup.soundAvailable = sound;
    setup.positions = &positions;
    setup.asker = &asker;
    setup.chooseFile = [this](bool, const std::string&, const std::string&, const std::string&) {
      return answer;
    };
    setup.shellOpen = [this](const std::string& file, const std::string& parameters) {
      opened.push_back(file + "|" + parameters);
    };
    // Notes whether the main window was out of the way when the run began.
    struct Hooks final : RecordingRunHooks {
      explicit Hooks(Window& w) : w(w) {}
      void RunStarting(const RecordingJob&) override {
        w.shownDuringRun = IsWindowVisible(w.wnd) != 0;
      }
      Window& w;
    };
    setup.makeRunHooks = [this] {
      ++runs;
      return std::make_unique<Hooks>(*this);
    };
    window = std::make_unique<MainWindow>(std::move(setup));
    wnd = window->Open(GetModuleHandleW(nullptr), SW_SHOWNOACTIVATE);
  }
  ~Window() {
    window.reset();
    // The window's end asks the thread to quit; later tests pump messages.
    MSG msg;
    PeekMessageW(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
  }
  void Click(int id) {
    SendMessageW(wnd, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), LPARAM(GetDlgItem(wnd, id)));
  }
  void Type(int id, const char* utf8) {
    SetDlgItemTextW(wnd, id, Widen(utf8).c_str());
    SendMessageW(wnd, WM_COMMAND, MAKEWPARAM(id, EN_KILLFOCUS), LPARAM(GetDlgItem(wnd, id)));
  }
  void Check(int id, bool on) {
    CheckDlgButton(wnd, id, on ? BST_CHECKED : BST_UNCHECKED);
    Click(id);
  }
  void Select(int id, int index) {
    SendDlgItemMessageW(wnd, id, CB_SETCURSEL, index, 0);
    SendMessageW(wnd, WM_COMMAND, MAKEWPARAM(id, CBN_SELCHANGE), LPARAM(GetDlgItem(wnd, id)));
  }
  void Scroll(int id, int value) {
    SendMessageW(wnd, WM_HSCROLL, MAKEWPARAM(SB_THUMBPOSITION, value), LPARAM(GetDlgItem(wnd, id)));
  }
  std::string Text(int id) const { return Narrow(test::WindowTextW(GetDlgItem(wnd, id))); }
  bool Enabled(int id) const { return IsWindowEnabled(GetDlgItem(wnd, id)); }
  std::vector<std::string> Region() const {
    return {Text(IDC_TEXT1_LEFT), Text(IDC_TEXT1_TOP), Text(IDC_TEXT1_WIDTH),
            Text(IDC_TEXT1_HEIGHT)};
  }
  int Selected(int id) const { return int(SendDlgItemMessageW(wnd, id, CB_GETCURSEL, 0, 0)); }

  // What every control shows: text, check state, selection and scroll position.
  std::map<int, std::string> Snapshot() const {
    std::map<int, std::string> shown;
    for (HWND c = GetWindow(wnd, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT)) {
      const int id = GetDlgCtrlID(c);
      shown[id] = Narrow(test::WindowTextW(c)) + "|" + std::to_string(IsDlgButtonChecked(wnd, id)) +
                  "|" + std::to_string(Selected(id)) + "|" +
                  std::to_string(GetScrollPos(c, SB_CTL));
    }
    return shown;
  }

  TempDir dir;
  StartupPaths paths;
  WindowPositions positions{-5, 7, 300, 200};
  test::ScriptedAsker asker{kAnswerOk};
  std::string answer;               // what the next file dialog returns
  std::vector<std::string> opened;  // shell opens, "file|parameters"
  int runs = 0;
  bool shownDuringRun = true;
  std::unique_ptr<MainWindow> window;
  HWND wnd = nullptr;
};

// One step of the user's hand on the region selector: an xdotool command (a
// Linux program, started through Wine on the test display) and what the
// screen shows once it has taken effect, if anything. Wine reports no useful
// exit code for it, so the step waits for the effect instead.
struct HandStep {
  std::string xdotool;
  std::function<bool()> shown = nullptr;
};

uint32_t Rgb(BandColour c) { return uint32_t(c.red << 16 | c.green << 8 | c.blue); }

bool BandAt(POINT p) {
  return test::ScreenShows({p.x, p.y, p.x + 1, p.y + 1}, Rgb(kSelectorBandColour));
}

// The hint beside the pointer at `p`: the selector is on the screen (not
// only shown as far as Windows knows) and has taken the pointer's move, so
// a button pressed now reaches it.
bool HintBeside(POINT p) {
  return test::ScreenShows({p.x, p.y, p.x + 48, p.y + 48}, Rgb(kSelectorHintColour));
}

std::string At(POINT p) { return std::to_string(p.x) + " " + std::to_string(p.y); }

// Clicks Command1 and plays `steps` on the selector once it shows. Returns
// whether the main window was out of sight meanwhile.
bool SelectWithTheMouse(Window& w, const std::vector<HandStep>& steps) {
  bool mainHidden = false;
  {
    test::WindowActor hand(kRegionSelectorClass, [&](HWND) {
      mainHidden = !IsWindowVisible(w.wnd);
      for (const HandStep& step : steps) {
        // A Unix program: started by its bare path, which Wine hands to the host.
        std::wstring cmd = L"/usr/bin/xdotool " + Widen(step.xdotool);
        STARTUPINFOW si{};
        si.cb = sizeof si;
        PROCESS_INFORMATION pi{};
        ASSERT_TRUE(CreateProcessW(nullptr, cmd.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                   nullptr, &si, &pi));
        UniqueHandleObj thread(pi.hThread), process(pi.hProcess);
        EXPECT_TRUE(!step.shown || test::WaitUntil(step.shown)) << step.xdotool;
      }
    });
    w.Click(IDC_COMMAND1_BY_MOUSE);
  }
  EXPECT_TRUE(IsWindowVisible(w.wnd));
  return mainHidden;
}

// The wiring on the real screen: one drag over the frozen picture, one
// cancel, and the window under the mouse, whole or its client area. Every
// other sequence of inputs is the portable RegionDrag's.
TEST(MainWindow, CommandOneTakesTheDraggedRegionOrTheWindowUnderTheMouse) {
  test::PointerLock pointer;
  test::PatternWindow under(160, 180, 200, 120);  // something for the frozen picture to show
  Window w;
  const POINT a{100, 120}, b{420, 360};
  const HandStep toA{"mousemove " + At(a), [&] { return HintBeside(a); }},
      press{"mousedown 1", [&] { return BandAt(a); }},
      // The band over the frozen picture, which shows what the hidden main window covered.
      toB{"mousemove " + At(b), [&] {
            if (!BandAt(b) ||
                !test::ScreenShows({260, 240, 261, 241}, test::PatternColour(100, 60, 0)))
              return false;
            test::SaveScreenPicture({0, 0, 800, 440}, L"region-selector");
            return true;
          }};
  w.Type(IDC_TEXT1_LEFT, "1");
  EXPECT_TRUE(SelectWithTheMouse(w, {toA, press, toB, {"mouseup 1"}}));
  EXPECT_EQ(w.Region(), (std::vector<std::string>{"100", "120", "320", "240"}));
  EXPECT_NE(w.Text(IDC_PICTURE2_INFO).find("キャプチャ領域 (100,120 - 420,360)\r\n"),
            std::string::npos);

  w.Type(IDC_TEXT1_LEFT, "7");
  const std::vector<std::string> kept = w.Region();
  SelectWithTheMouse(w, {toA, press, toB, {"key Escape"}, {"mouseup 1"}});
  EXPECT_EQ(w.Region(), kept) << "Esc while dragging";

  test::PatternWindow target(600, 200, 240, 160);
  // A caption and a frame, so that the window and its client area differ.
  HWND t = target.Handle();
  SetWindowLongPtrW(t, GWL_STYLE, WS_POPUP | WS_VISIBLE | WS_CAPTION | WS_THICKFRAME);
  SetWindowPos(t, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_FRAMECHANGED);
  RECT client{};
  GetClientRect(t, &client);
  MapWindowPoints(t, nullptr, reinterpret_cast<POINT*>(&client), 2);
  ASSERT_GT(client.top, 200);
  w.Check(IDC_CHECK1_WINDOW, true);
  const POINT inside{720, 300};
  const struct {
    bool clientArea;
    RECT want;
  } cases[] = {{false, {600, 200, 840, 360}}, {true, client}};
  for (const auto& c : cases) {
    w.Check(IDC_CHECK1_CLIENT, c.clientArea);
    const HandStep over{"mousemove " + At(inside), [&] {
                          return BandAt({c.want.left, c.want.top});
                        }};
    SelectWithTheMouse(w, {over, {"click 1"}});
    EXPECT_EQ(w.Region(),
              (std::vector<std::string>{std::to_string(c.want.left), std::to_string(c.want.top),
                                        std::to_string(c.want.right - c.want.left),
                                        std::to_string(c.want.bottom - c.want.top)}))
        << (c.clientArea ? "client area" : "whole window");
  }
}

// Open with a default.QRT, save, restore, load, fail to load and save, end.
TEST(MainWindow, SettingsRoundTripTheirFailuresAndThePositionsAtTheEnd) {
  CaptureSettings mine = DefaultSettings(true);
  mine.Left = 33;
  Window w(/*sound=*/true, &mine);
  ASSERT_NE(w.wnd, nullptr);
  EXPECT_EQ(w.Text(IDC_TEXT1_LEFT), "33");  // default.QRT applied at start-up
  const std::vector<uint8_t> defaultBytes = test::ReadFile(w.paths.DefaultSettingsFile);
  w.Click(IDC_COMMAND10_LOAD);  // cancelled: nothing asked, nothing changed
  EXPECT_EQ(w.Text(IDC_TEXT1_LEFT), "33");

  w.Type(IDC_TEXT1_LEFT, "-10");
  w.Type(IDC_TEXT1_HEIGHT, "3.5");  // halves to even: 4
  w.Scroll(IDC_HSCROLL1_FPS, 15);
  w.Scroll(IDC_HSCROLL1_SECONDS, 65);
  w.Scroll(IDC_HSCROLL2_TIME, 7);
  w.Check(IDC_CHECK3_SOUND, true);
  w.Check(IDC_CHECK4_DELETE_WAVE, true);
  w.Check(IDC_CHECK6_AVI24, true);
  w.Check(IDC_CHECK2_DRAW_MOUSE, false);
  w.Check(IDC_CHECK7_ASYNC_WRITE, false);
  CheckRadioButton(w.wnd, IDC_OPTION1_TYPE0, IDC_OPTION1_TYPE2, IDC_OPTION1_TYPE2);
  CheckRadioButton(w.wnd, IDC_OPTION2_AVI_AND_QRK, IDC_OPTION2_QRK_ONLY, IDC_OPTION2_AVI_ONLY);
  w.Select(IDC_COMBO3_PRIORITY, 2);  // the one stored as -32768
  w.Select(IDC_COMBO1_SOUND_FORMAT, 3);
  SetDlgItemTextW(w.wnd, IDC_TEXT2_MOVIE_FILE, L"C:\\録画\\映像.avi");
  w.Click(IDC_COMMAND6_REDRAW);
  EXPECT_EQ(w.Text(IDC_LABEL5_SECONDS), "1:05");
  EXPECT_NE(w.Text(IDC_PICTURE2_INFO).find("キャプチャ領域 (-10,0 - 310,4)\r\n"), std::string::npos)
      << w.Text(IDC_PICTURE2_INFO);
  const auto saved = w.Snapshot();

  w.answer = w.dir.Path("settings\\mine.QRT");
  w.Click(IDC_COMMAND7_SAVE);
  w.Click(IDC_COMMAND9_RESTORE);
  EXPECT_EQ(w.Text(IDC_TEXT1_LEFT), std::to_string(DefaultSettings(true).Left));
  // Restoring writes no file: default.QRT as it was, beside it only the saved one.
  EXPECT_EQ(test::ReadFile(w.paths.DefaultSettingsFile), defaultBytes);
  EXPECT_EQ(std::distance(fs::directory_iterator(TempDir::Fs(w.paths.SettingsDir)), {}), 2);
  w.Select(IDC_COMBO1_SOUND_FORMAT, 5);
  w.Click(IDC_COMMAND10_LOAD);
  EXPECT_TRUE(w.asker.asked.empty());

  // The sound format is never restored from a file; set back by hand, the rest must match.
  EXPECT_EQ(w.Selected(IDC_COMBO1_SOUND_FORMAT), 5);
  w.Select(IDC_COMBO1_SOUND_FORMAT, 3);
  EXPECT_EQ(w.Text(IDC_TEXT2_MOVIE_FILE), "C:\\録画\\映像.QRK");
  SetDlgItemTextW(w.wnd, IDC_TEXT2_MOVIE_FILE, L"C:\\録画\\映像.avi");
  w.Click(IDC_COMMAND6_REDRAW);
  auto loaded = w.Snapshot();
  for (const auto& [id, shown] : saved) EXPECT_EQ(loaded[id], shown) << "control " << id;
  EXPECT_EQ(w.Text(IDC_LABEL11_COMPRESSOR_NAME), "未圧縮");

  CaptureSettings zeroWidth = mine;
  zeroWidth.Width = 0;
  w.answer = w.dir.Path("settings\\zero.QRT");
  ASSERT_EQ(WriteSettingsFile(w.answer, zeroWidth, SystemAnsiCodec()), 0);
  for (const std::string& file : {w.answer, w.dir.Path("settings\\missing.QRT")}) {
    w.answer = file;
    w.Click(IDC_COMMAND10_LOAD);
  }
  w.answer = w.dir.Path("no-such-folder\\x.QRT");
  w.Click(IDC_COMMAND7_SAVE);
  EXPECT_EQ(w.asker.asked, (test::Asked{{"読み込みに失敗しました。", test::kCritical},
                                        {"読み込みに失敗しました。", test::kCritical},
                                        {"保存に失敗しました。", test::kCritical}}));

  // The positions are written when the session may end, when it ends and at
  // the close, which takes every other window along; the next start reads them.
  Session next;
  next.paths = w.paths;
  HWND other = CreateWindowW(L"STATIC", L"other", WS_OVERLAPPED | WS_VISIBLE, 0, 0, 50, 50, nullptr,
                             nullptr, nullptr, nullptr);
  for (const UINT msg : {WM_QUERYENDSESSION, WM_ENDSESSION, WM_CLOSE}) {
    fs::remove(TempDir::Fs(w.paths.IniFile));
    const LRESULT said = SendMessageW(w.wnd, msg, TRUE, 0);
    EXPECT_TRUE(msg != WM_QUERYENDSESSION || said == TRUE) << "the session may end";
    EXPECT_EQ(LoadOrDefaultWindowPositions(next), w.positions) << msg;
  }
  EXPECT_FALSE(IsWindow(w.wnd));
  EXPECT_FALSE(IsWindow(other));
}

// A default.QRT without a size (as a missing one reads) gives the defaults;
// sound is offered only when the recorder answered; every control has a tip;
// the file boxes, buttons and layout do what they show.
TEST(MainWindow, DefaultsSoundTipsFileButtonsAndLayout) {
  CaptureSettings noSize = DefaultSettings(true);
  noSize.Left = 99;
  noSize.Height = 0;
  Window without(false, &noSize);
  EXPECT_EQ(without.Text(IDC_TEXT1_LEFT), std::to_string(DefaultSettings(true).Left));
  EXPECT_TRUE(without.asker.asked.empty());
  EXPECT_FALSE(without.Enabled(IDC_CHECK3_SOUND));
  EXPECT_EQ(SendDlgItemMessageW(without.wnd, IDC_COMBO1_SOUND_FORMAT, CB_GETCOUNT, 0, 0), 0);

  Window w(/*sound=*/true);
  EXPECT_TRUE(w.Enabled(IDC_CHECK3_SOUND));
  EXPECT_EQ(SendDlgItemMessageW(w.wnd, IDC_COMBO1_SOUND_FORMAT, CB_GETCOUNT, 0, 0), 12);
  EXPECT_EQ(w.Selected(IDC_COMBO1_SOUND_FORMAT), 0);
  // The sound options follow the sound box.
  w.Check(IDC_CHECK3_SOUND, true);
  EXPECT_TRUE(w.Enabled(IDC_COMBO1_SOUND_FORMAT));
  w.Check(IDC_CHECK3_SOUND, false);
  EXPECT_FALSE(w.Enabled(IDC_CHECK4_DELETE_WAVE));

  HWND tip = FindWindowExW(nullptr, nullptr, TOOLTIPS_CLASSW, nullptr);
  while (tip && GetWindow(tip, GW_OWNER) != w.wnd)
    tip = FindWindowExW(nullptr, tip, TOOLTIPS_CLASSW, nullptr);
  ASSERT_NE(tip, nullptr);
  int controls = 0;
  for (HWND c = GetWindow(w.wnd, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT)) ++controls;
  EXPECT_EQ(SendMessageW(tip, TTM_GETTOOLCOUNT, 0, 0), controls);

  // A chosen movie file replaces the box with the caret at its end; the
  // player gets it, the help button the help page.
  w.answer = "D:\\動画\\新しい.QRK";
  w.Click(IDC_COMMAND2_BROWSE);
  EXPECT_EQ(w.Text(IDC_TEXT2_MOVIE_FILE), w.answer);
  DWORD from = 0, to = 0;
  SendDlgItemMessageW(w.wnd, IDC_TEXT2_MOVIE_FILE, EM_GETSEL, WPARAM(&from), LPARAM(&to));
  EXPECT_EQ(from, DWORD(Widen(w.answer).size()));
  EXPECT_EQ(to, from);
  w.Click(IDC_COMMAND4_PLAYER);
  w.Click(IDC_COMMAND11_HELP);
  EXPECT_EQ(w.opened, (std::vector<std::string>{w.paths.PlayerExe + "|\"" + w.answer + "\"",
                                                w.paths.HelpFile + "|"}));

  // Moved to a monitor at twice the DPI, the controls grow with it.
  RECT before{}, after{};
  GetWindowRect(GetDlgItem(w.wnd, IDC_TEXT2_MOVIE_FILE), &before);
  RECT suggested{0, 0, 2000, 1300};
  const int dpi = GetDeviceCaps(WindowDc::Get(w.wnd).get(), LOGPIXELSY);
  SendMessageW(w.wnd, 0x02E0 /* WM_DPICHANGED */, MAKEWPARAM(2 * dpi, 2 * dpi), LPARAM(&suggested));
  GetWindowRect(GetDlgItem(w.wnd, IDC_TEXT2_MOVIE_FILE), &after);
  EXPECT_NEAR(after.right - after.left, 2 * (before.right - before.left), 1);
  EXPECT_NEAR(after.bottom - after.top, 2 * (before.bottom - before.top), 1);
}

// Every caption the window is given while a command runs.
std::vector<std::string> g_captions;
WNDPROC g_windowProc = nullptr;
LRESULT CALLBACK RecordCaptions(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  if (msg == WM_SETTEXT) g_captions.push_back(Narrow(reinterpret_cast<const wchar_t*>(lp)));
  return CallWindowProcW(g_windowProc, wnd, msg, wp, lp);
}

// Three two-second runs on a small region: one graded line per method, the
// frames counted in the caption, the throw-away movie gone afterwards.
TEST(MainWindow, TryingTheMethodsShowsOneLinePerMethodAndLeavesNothingBehind) {
  Window w;
  w.Type(IDC_TEXT1_WIDTH, "64");
  w.Type(IDC_TEXT1_HEIGHT, "48");
  w.Scroll(IDC_HSCROLL1_FPS, 10);
  const std::string temp = w.dir.Path("temp");
  fs::create_directories(TempDir::Fs(temp));
  wchar_t oldTmp[MAX_PATH] = {};
  const bool hadTmp = GetEnvironmentVariableW(L"TMP", oldTmp, MAX_PATH) > 0;
  SetEnvironmentVariableW(L"TMP", Widen(temp).c_str());
  const std::wstring caption = test::WindowTextW(w.wnd);
  g_windowProc = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(w.wnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(RecordCaptions)));
  w.Click(IDC_COMMAND3_BENCHMARK);
  SetWindowLongPtrW(w.wnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(g_windowProc));
  SetEnvironmentVariableW(L"TMP", hadTmp ? oldTmp : nullptr);

  ASSERT_EQ(w.asker.asked.size(), 1u);
  const std::string graded =
      "(◎|○|△|×) Type @ \\.\\.\\. FrameTime:[1-9]\\d*msec\\. \\d+ Fps\\. Drop:\\d+\r\n";
  std::string lines;
  for (const char* m : {"0", "1", "2"}) lines += std::regex_replace(graded, std::regex("@"), m);
  EXPECT_TRUE(std::regex_match(w.asker.asked[0].first, std::regex(lines)))
      << w.asker.asked[0].first;
  EXPECT_EQ(w.asker.asked[0].second, kStyleOk | kStyleIconInformation);
  EXPECT_EQ(w.asker.titles[0], "キャプチャ試行結果");
  EXPECT_TRUE(fs::is_empty(TempDir::Fs(temp)));
  EXPECT_EQ(test::WindowTextW(w.wnd), caption);
  EXPECT_TRUE(IsWindowEnabled(w.wnd));
  // Frames are counted from 1 and each method reaches its last one.
  for (const char* shown : {"Try Method 0 ... 1", "Try Method 1 ... 20", "Try Method 2 ... 20"}) {
    EXPECT_NE(std::find(g_captions.begin(), g_captions.end(), shown), g_captions.end()) << shown;
  }
}

// Start refuses a missing folder, an AVI without a compressor and an
// overwrite answered No; answered Yes, it records the pattern window right
// of the main window (above the frame window's corner) and saves what the
// save mode asks, through the compressor chosen.
TEST(MainWindow, StartChecksThenRecordsThePatternAndSavesWhatTheSaveModeAsks) {
  constexpr int32_t kLeft = 1180, kTop = 300, kW = 64, kH = 48;
  ASSERT_TRUE(test::InstallTestCodec());
  test::PatternWindow pattern(kLeft, kTop, kW, kH);
  pattern.Show(5);
  const struct {
    SaveMode mode;
    int32_t method;
    const wchar_t* compressor;  // the chooser's entry; null: uncompressed
  } cases[] = {
      {SaveMode::AviAndMovie, 1, nullptr},
      // A Type0 movie is re-encoded to 24 bits, which the test codec takes.
      {SaveMode::AviOnly, 0, L"検査用"},
  };
  for (const auto& c : cases) {
    const int mode = int(c.mode);
    test::TempDir dir;
    CaptureSettings s = test::PatternJob(c.method, dir.Path("録画.QRK"), kLeft, kTop);
    s.AviFile = dir.Path("録画.avi");
    s.KeepMovie = Bool16(c.mode != SaveMode::AviOnly);
    s.Avi24Bit = Bool16(c.compressor != nullptr);
    s.AsyncWrite = Bool16(c.compressor == nullptr);  // the mapped writer in one run
    Window w(false, &s);
    const test::Asked overwrite = {{"録画.QRKは存在しています。\r\n全て上書きしてよろしいですか？",
                                    kStyleYesNo | kStyleIconQuestion}};
    if (!c.compressor) {
      SetDlgItemTextW(w.wnd, IDC_TEXT2_MOVIE_FILE, Widen(dir.Path("無い\\x.QRK")).c_str());
      w.Click(IDC_COMMAND5_START);
      SetDlgItemTextW(w.wnd, IDC_TEXT2_MOVIE_FILE, Widen(s.MovieFile).c_str());
      w.Click(IDC_COMMAND5_START);
      EXPECT_EQ(w.asker.asked,
                (test::Asked{{InvalidTargetText(dir.Path("無い\\x.QRK")), test::kCritical},
                             {kNoCompressorText, test::kCritical}}));
      test::WriteFile(s.MovieFile, {'o', 'l', 'd'});
    }
    std::thread chooser(test::PressInChooser, w.wnd, IDOK, c.compressor);
    w.Click(IDC_COMMAND8_COMPRESSOR);
    chooser.join();
    if (!c.compressor) {
      w.asker = test::ScriptedAsker(kAnswerNo);
      w.Click(IDC_COMMAND5_START);
      EXPECT_EQ(w.asker.asked, overwrite);
      EXPECT_EQ(test::ReadFile(s.MovieFile), (std::vector<uint8_t>{'o', 'l', 'd'}));
      EXPECT_EQ(w.runs, 0);
    }
    w.asker = test::ScriptedAsker(kAnswerYes);
    const int compressedBefore = test::TestCodecFramesCompressed();
    w.Click(IDC_COMMAND5_START);
    EXPECT_EQ(w.asker.asked, c.compressor ? test::Asked{} : overwrite) << mode;
    EXPECT_EQ(w.runs, 1);
    EXPECT_FALSE(w.shownDuringRun);
    EXPECT_TRUE(IsWindowVisible(w.wnd));
    EXPECT_TRUE(FileExists(s.AviFile)) << mode;
    // The chosen compressor reached the conversion.
    EXPECT_EQ(test::TestCodecFramesCompressed() - compressedBefore, c.compressor ? s.Fps : 0)
        << mode;
    MovieReader reader;
    ASSERT_EQ(reader.OpenFile(s.MovieFile) == 0, c.mode != SaveMode::AviOnly) << mode;
    if (c.mode == SaveMode::AviOnly) continue;
    const auto want = test::ExpectedFrame(kW, kH, 5, true);
    for (int frame = 0; frame < s.Fps; ++frame) {
      ASSERT_EQ(reader.Next(), 0) << frame;
      ASSERT_EQ(test::FirstDifferentPixel(reader.Current(), want.data(), kW * kH), -1)
          << "frame " << frame << ", save mode " << mode;
    }
  }
  test::RemoveTestCodec();
}

}  // namespace
}  // namespace velmora::win
