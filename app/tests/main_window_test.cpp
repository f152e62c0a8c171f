// The main window itself, in-process under Wine: built from the real dialog
// template and driven only through its control ids, with the file dialogs,
// the message box and the shell answered by the test.
#include "app/win/main_window.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "app/win/ansi.h"
#include "app/win/main_window_ids.h"
#include "app/win/main_window_tips.h"
#include "app/win/startup.h"
#include "conversion/tests/scripted_asker.h"
#include "engine/tests/temp_dir.h"
#include "engine/tests/win/launch.h"
#include "engine/win/text_encoding.h"
#include "engine/win/handles.h"
#include "ui/message_style.h"

namespace velmora::win {
namespace {

namespace fs = std::filesystem;
using test::TempDir;

constexpr int32_t kCritical = kStyleOk | kStyleIconError;

std::string FileBytes(const std::string& utf8Path) {
  std::ifstream in(TempDir::Fs(utf8Path), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

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
    window = std::make_unique<MainWindow>(std::move(setup));
    wnd = window->Open(GetModuleHandleW(nullptr), SW_SHOWNOACTIVATE);
  }
  ~Window() {
    window.reset();
    // The window's end asks the thread to quit; later tests pump messages.
    MSG msg;
    PeekMessageW(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
  }
  void Click(int id) { SendMessageW(wnd, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), LPARAM(GetDlgItem(wnd, id))); }
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
  bool Checked(int id) const { return IsDlgButtonChecked(wnd, id) == BST_CHECKED; }
  bool Enabled(int id) const { return IsWindowEnabled(GetDlgItem(wnd, id)); }
  int Selected(int id) const { return int(SendDlgItemMessageW(wnd, id, CB_GETCURSEL, 0, 0)); }

  // What every control shows: text, check state, selection and scroll position.
  std::map<int, std::string> Snapshot() const {
    std::map<int, std::string> shown;
    for (HWND c = GetWindow(wnd, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT)) {
      const int id = GetDlgCtrlID(c);
      shown[id] = Narrow(test::WindowTextW(c)) + "|" + std::to_string(IsDlgButtonChecked(wnd, id)) + "|" +
                  std::to_string(Selected(id)) + "|" + std::to_string(GetScrollPos(c, SB_CTL));
    }
    return shown;
  }

  TempDir dir;
  StartupPaths paths;
  WindowPositions positions{-5, 7, 300, 200};
  test::ScriptedAsker asker{kAnswerOk};
  std::string answer;  // what the next file dialog returns
  std::vector<std::string> opened;  // shell opens, "file|parameters"
  std::unique_ptr<MainWindow> window;
  HWND wnd = nullptr;
};

TEST(MainWindow, SaveThenLoadBringsBackEveryControlButDeleteWaveAndSoundFormat) {
  Window w(/*sound=*/true);
  ASSERT_NE(w.wnd, nullptr);
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
  EXPECT_EQ(w.Text(IDC_TEXT1_HEIGHT), "4");
  EXPECT_EQ(w.Text(IDC_LABEL5_SECONDS), "1:05");
  EXPECT_NE(w.Text(IDC_PICTURE2_INFO).find("キャプチャ領域 (-10,0 - 310,4)\r\n"), std::string::npos)
      << w.Text(IDC_PICTURE2_INFO);
  const auto saved = w.Snapshot();

  w.answer = w.dir.Path("settings\\mine.QRT");
  w.Click(IDC_COMMAND7_SAVE);
  w.Click(IDC_COMMAND9_RESTORE);
  EXPECT_NE(w.Snapshot(), saved);
  w.Check(IDC_CHECK4_DELETE_WAVE, false);
  w.Select(IDC_COMBO1_SOUND_FORMAT, 5);
  w.Click(IDC_COMMAND10_LOAD);
  EXPECT_TRUE(w.asker.asked.empty());

  // Never restored from a file; set back by hand, the rest must match.
  EXPECT_FALSE(w.Checked(IDC_CHECK4_DELETE_WAVE));
  EXPECT_EQ(w.Selected(IDC_COMBO1_SOUND_FORMAT), 5);
  w.Check(IDC_CHECK4_DELETE_WAVE, true);
  w.Select(IDC_COMBO1_SOUND_FORMAT, 3);
  EXPECT_EQ(w.Text(IDC_TEXT2_MOVIE_FILE), "C:\\録画\\映像.QRK");
  SetDlgItemTextW(w.wnd, IDC_TEXT2_MOVIE_FILE, L"C:\\録画\\映像.avi");
  w.Click(IDC_COMMAND6_REDRAW);
  auto loaded = w.Snapshot();
  for (const auto& [id, shown] : saved) EXPECT_EQ(loaded[id], shown) << "control " << id;
  EXPECT_EQ(w.Text(IDC_LABEL11_COMPRESSOR_NAME), "未圧縮");
}

TEST(MainWindow, FailedLoadsAndSavesSaySoAndRestoreTouchesNoFile) {
  CaptureSettings mine = DefaultSettings(true);
  mine.Left = 33;
  mine.Fps = 12;
  Window w(false, &mine);
  EXPECT_EQ(w.Text(IDC_TEXT1_LEFT), "33");  // default.QRT applied at start-up
  const std::string before = FileBytes(w.paths.DefaultSettingsFile);

  w.Click(IDC_COMMAND10_LOAD);  // cancelled: nothing asked, nothing changed
  EXPECT_TRUE(w.asker.asked.empty());
  EXPECT_EQ(w.Text(IDC_TEXT1_LEFT), "33");

  w.Click(IDC_COMMAND9_RESTORE);
  EXPECT_EQ(w.Text(IDC_TEXT1_LEFT), std::to_string(DefaultSettings(true).Left));
  EXPECT_EQ(w.Text(IDC_LABEL5_FPS), "30fps");
  EXPECT_EQ(FileBytes(w.paths.DefaultSettingsFile), before);
  EXPECT_EQ(std::distance(fs::directory_iterator(TempDir::Fs(w.paths.SettingsDir)), {}), 1);

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
  using Asked = std::vector<std::pair<std::string, int32_t>>;
  EXPECT_EQ(w.asker.asked, (Asked{{"読み込みに失敗しました。", kCritical},
                                  {"読み込みに失敗しました。", kCritical},
                                  {"保存に失敗しました。", kCritical}}));
}

TEST(MainWindow, StartsFromDefaultsWhenDefaultQrtIsMissingOrHasNoSize) {
  CaptureSettings noSize = DefaultSettings(true);
  noSize.Left = 99;
  noSize.Height = 0;
  Window broken(false, &noSize);
  Window none;
  for (const Window* w : {&broken, &none}) {
    EXPECT_EQ(w->Text(IDC_TEXT1_LEFT), std::to_string(DefaultSettings(true).Left));
    EXPECT_EQ(w->Text(IDC_TEXT1_HEIGHT), std::to_string(DefaultSettings(true).Height));
    EXPECT_TRUE(w->asker.asked.empty());
  }
}

TEST(MainWindow, SoundIsOfferedOnlyWhenTheRecorderAnsweredAndEveryControlHasATip) {
  Window without;
  Window with(/*sound=*/true);
  EXPECT_FALSE(without.Enabled(IDC_CHECK3_SOUND));
  EXPECT_EQ(SendDlgItemMessageW(without.wnd, IDC_COMBO1_SOUND_FORMAT, CB_GETCOUNT, 0, 0), 0);
  EXPECT_TRUE(with.Enabled(IDC_CHECK3_SOUND));
  EXPECT_EQ(SendDlgItemMessageW(with.wnd, IDC_COMBO1_SOUND_FORMAT, CB_GETCOUNT, 0, 0), 12);
  EXPECT_EQ(with.Selected(IDC_COMBO1_SOUND_FORMAT), 0);
  // The sound options follow the sound box.
  with.Check(IDC_CHECK3_SOUND, true);
  EXPECT_TRUE(with.Enabled(IDC_COMBO1_SOUND_FORMAT));
  with.Check(IDC_CHECK3_SOUND, false);
  EXPECT_FALSE(with.Enabled(IDC_CHECK4_DELETE_WAVE));

  for (const Window* w : {&without, &with}) {
    HWND tip = FindWindowExW(nullptr, nullptr, TOOLTIPS_CLASSW, nullptr);
    while (tip && GetWindow(tip, GW_OWNER) != w->wnd) tip = FindWindowExW(nullptr, tip, TOOLTIPS_CLASSW, nullptr);
    ASSERT_NE(tip, nullptr);
    int controls = 0;
    for (HWND c = GetWindow(w->wnd, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT)) ++controls;
    EXPECT_EQ(SendMessageW(tip, TTM_GETTOOLCOUNT, 0, 0), controls);
  }
}

TEST(MainWindow, BoxesButtonsAndLayoutDoWhatTheyShow) {
  Window w;
  w.Type(IDC_TEXT1_LEFT, "12abc");
  w.Type(IDC_TEXT1_TOP, "-3.6");
  w.Type(IDC_TEXT1_WIDTH, "2.5");
  EXPECT_EQ(w.Text(IDC_TEXT1_LEFT), "12");
  EXPECT_EQ(w.Text(IDC_TEXT1_TOP), "-4");
  EXPECT_EQ(w.Text(IDC_TEXT1_WIDTH), "2");

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
  EXPECT_EQ(w.opened, (std::vector<std::string>{w.paths.PlayerExe + "|" + w.answer, w.paths.HelpFile + "|"}));

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

TEST(MainWindow, ClosingOrEndingTheSessionWritesThePositionsThatTheNextStartReads) {
  const std::string expected =
      "//Velmora Setting\r\n//順番は変更不可です。\r\n-5 //キャプチャウィンドウのX\r\n"
      "7 //キャプチャウィンドウのY\r\n300 //AVIウィンドウのX\r\n200 //AVIウィンドウのY\r\n";
  Window ended;
  SendMessageW(ended.wnd, WM_ENDSESSION, TRUE, 0);
  EXPECT_EQ(FileBytes(ended.paths.IniFile), AnsiFromUtf8(expected).value());

  Window closed;
  HWND other = CreateWindowW(L"STATIC", L"other", WS_OVERLAPPED | WS_VISIBLE, 0, 0, 50, 50, nullptr,
                             nullptr, nullptr, nullptr);
  SendMessageW(closed.wnd, WM_CLOSE, 0, 0);
  EXPECT_FALSE(IsWindow(closed.wnd));
  EXPECT_FALSE(IsWindow(other));  // every other window goes with the main one
  EXPECT_EQ(FileBytes(closed.paths.IniFile), AnsiFromUtf8(expected).value());
  Session next;
  next.paths = closed.paths;
  EXPECT_EQ(LoadOrDefaultWindowPositions(next), closed.positions);
}

}  // namespace
}  // namespace velmora::win
