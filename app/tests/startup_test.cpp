// The windowed start: the entry procedure in-process with a stand-in
// display, folder and clock, then velmora.exe copied into a fresh
// application folder and started as a user would.
#include "app/win/startup.h"

#include <gtest/gtest.h>

#include "app/win/main_window_ids.h"
#include "ui/win/message_box.h"

#include <filesystem>

#include "engine/win/text_encoding.h"
#include "sound/win/shared_block.h"
#include "tests/fake_clock.h"
#include "tests/temp_dir.h"
#include "tests/win/launch.h"
#include "tests/win/scripted_asker.h"
#include "ui/message_style.h"

namespace velmora::win {
namespace {

namespace fs = std::filesystem;
using test::TempDir;

// A fresh application folder; `programs` are copied into it from the build.
struct AppFolder {
  explicit AppFolder(std::initializer_list<std::pair<const wchar_t*, const wchar_t*>> programs) {
    for (const auto& [from, as] : programs) {
      fs::copy_file(test::BesideThisProgram(from), TempDir::Fs(dir.Path("")) / as);
    }
  }
  // Recorders started for a test end with it, so the folder can go.
  ~AppFolder() {
    for (DWORD pid : test::ProcessesOf(Exe(L"WaveInExe.exe"))) test::Kill(pid);
  }
  std::wstring Exe(const wchar_t* name) const { return Widen(dir.Path(Narrow(name))); }

  TempDir dir;
};

struct Start {
  explicit Start(std::wstring exe, int32_t bits = 24) : exePath(std::move(exe)), depth(bits) {}
  StartupResult Run() {
    return RunStartup(
        StartupDeps{asker, clock, [this] { return depth; }, exePath, L"velmora-startup-test-block"},
        session);
  }
  std::wstring exePath;
  int32_t depth;
  test::ScriptedAsker asker{kAnswerOk};
  test::FakeClock clock;
  Session session;
};

TEST(Startup, DepthFirstThenOneInstancePerProgramThenTheRecorderOnlyWhenBesideIt) {
  AppFolder app({{L"silent_recorder.exe", L"WaveInExe.exe"}});
  // An 8-bit display is refused before anything else: no instance mark, no
  // paths, no recorder, no time spent.
  Start eightBit(app.Exe(L"velmora.exe"), 8);
  const double before = eightBit.clock.now;
  EXPECT_EQ(eightBit.Run(), StartupResult::kEightBitDisplay);
  EXPECT_EQ(eightBit.asker.asked,
            (test::Asked{{"ディスプレイの解像度が8ビットは対応してません。", test::kCritical}}));
  EXPECT_FALSE(eightBit.session.instanceMark);
  EXPECT_EQ(eightBit.session.recorder, nullptr);
  EXPECT_TRUE(eightBit.session.paths.AppDir.empty());
  EXPECT_EQ(eightBit.clock.now, before);

  // A recorder that never answers is waited for, then sound is left off.
  Start waits(app.Exe(L"velmora.exe"), 4);  // any depth but 8 goes on
  ASSERT_EQ(waits.Run(), StartupResult::kReady);
  EXPECT_TRUE(waits.asker.asked.empty());
  EXPECT_GT(waits.session.TwipsPerPixelX, 0);
  EXPECT_GT(waits.session.TwipsPerPixelY, 0);
  EXPECT_GT(waits.clock.now - before, 5000);
  EXPECT_EQ(waits.session.RecorderMapping(), nullptr);
  EXPECT_EQ(waits.session.RecorderProcessId(), 0u);
  EXPECT_EQ(test::ProcessesOf(app.Exe(L"WaveInExe.exe")).size(), 1u);

  // Another copy elsewhere is another program; without a recorder beside
  // it no time is spent. The paths start from its own folder, and nothing
  // is created there.
  AppFolder other({});
  Start none(other.Exe(L"velmora.exe"));
  ASSERT_EQ(none.Run(), StartupResult::kReady);
  EXPECT_EQ(none.session.paths.IniFile, other.dir.Path("QRXSetting.ini"));
  EXPECT_FALSE(test::Exists(none.session.paths.SettingsDir));
  EXPECT_EQ(none.session.recorder, nullptr);
  EXPECT_EQ(none.clock.now, before);
}

// velmora.exe (and the DLLs it loads) in a fresh folder with the recorder:
// the recorder runs for this process, and a second start is refused.
TEST(VelmoraStart, TheRecorderRunsForThisProcessAndASecondStartEnds) {
  AppFolder app({{L"velmora.exe", L"velmora.exe"},
                 {L"QRX.dll", L"QRX.dll"},
                 {L"AVI5.DLL", L"AVI5.DLL"},
                 {L"WaveInExe.exe", L"WaveInExe.exe"}});
  UniqueHandleObj first = test::Launch(app.Exe(L"velmora.exe"), L"");
  HWND wnd = test::WaitForWindow(first.get(), L"#32770", 15000);
  ASSERT_NE(wnd, nullptr);
  // Sound can be chosen exactly when the recorder answered.
  EXPECT_TRUE(IsWindowEnabled(GetDlgItem(wnd, IDC_CHECK3_SOUND)));

  // The block answers with the recorder's own process id...
  SharedBlock block = SharedBlock::Open(sound::kRecorderBlockName);
  ASSERT_TRUE(block.IsOpen());
  sound::BlockBytes bytes{};
  block.Read(bytes);
  const sound::RecorderBlock answer = sound::DecodeRecorderBlock(bytes);
  EXPECT_EQ(answer.state, sound::kStateIdle);
  const auto recorders = test::ProcessesOf(app.Exe(L"WaveInExe.exe"));
  ASSERT_EQ(recorders.size(), 1u);
  EXPECT_EQ(static_cast<DWORD>(answer.bitsOrProcessId), recorders[0]);

  UniqueHandleObj second = test::Launch(app.Exe(L"velmora.exe"), L"");
  HWND box = test::WaitForWindow(second.get(), kMessageBoxClass, 10000);
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(Narrow(test::WindowTextW(GetDlgItem(box, kPromptId))), "既に起動しています。");
  PostMessageW(box, WM_COMMAND, kFirstButtonId, 0);
  EXPECT_EQ(test::ExitCodeWithin(second, 10000), 0u);

  // ...and the recorder follows the process id it was given: ours ending ends it.
  UniqueHandleObj recorder(
      OpenProcess(SYNCHRONIZE | PROCESS_QUERY_INFORMATION, FALSE, recorders[0]));
  PostMessageW(wnd, WM_CLOSE, 0, 0);
  EXPECT_EQ(test::ExitCodeWithin(first, 10000), 0u);
  EXPECT_NE(test::ExitCodeWithin(recorder, 5000), static_cast<DWORD>(STILL_ACTIVE));
}

}  // namespace
}  // namespace velmora::win
