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

constexpr int32_t kCritical = kStyleOk | kStyleIconError;

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

TEST(Startup, AnEightBitDisplayIsRefusedBeforeAnythingElse) {
  AppFolder app({{L"silent_recorder.exe", L"WaveInExe.exe"}});
  Start first(app.Exe(L"velmora.exe"));
  ASSERT_EQ(first.Run(), StartupResult::kReady);

  // The same program again, on an 8-bit display: the depth message, not the
  // instance one, and no paths, no recorder, no time spent.
  Start second(app.Exe(L"velmora.exe"), 8);
  const double before = second.clock.now;
  EXPECT_EQ(second.Run(), StartupResult::kEightBitDisplay);
  ASSERT_EQ(second.asker.asked.size(), 1u);
  EXPECT_EQ(second.asker.asked[0].first, "ディスプレイの解像度が8ビットは対応してません。");
  EXPECT_EQ(second.asker.asked[0].second, kCritical);
  EXPECT_FALSE(second.session.instanceMark);
  EXPECT_EQ(second.session.recorder, nullptr);
  EXPECT_TRUE(second.session.paths.AppDir.empty());
  EXPECT_EQ(second.session.TwipsPerPixelX, 0);
  EXPECT_EQ(second.clock.now, before);
}

TEST(Startup, OtherDepthsGoOnAndASecondInstanceOfTheSameProgramIsRefused) {
  AppFolder app({});
  Start start(app.Exe(L"velmora.exe"), 4);
  EXPECT_EQ(start.Run(), StartupResult::kReady);
  EXPECT_TRUE(start.asker.asked.empty());
  EXPECT_GT(start.session.TwipsPerPixelX, 0);
  EXPECT_GT(start.session.TwipsPerPixelY, 0);

  Start again(app.Exe(L"VELMORA.EXE"));
  EXPECT_EQ(again.Run(), StartupResult::kAlreadyRunning);
  ASSERT_EQ(again.asker.asked.size(), 1u);
  EXPECT_EQ(again.asker.asked[0].first, "既に起動しています。");
  EXPECT_EQ(again.asker.asked[0].second, kCritical);
  EXPECT_TRUE(again.session.paths.AppDir.empty());

  // Another copy of the program elsewhere is another program.
  AppFolder other({});
  EXPECT_EQ(Start(other.Exe(L"velmora.exe")).Run(), StartupResult::kReady);
}

TEST(Startup, TheRecorderIsWaitedForOnlyWhenItLiesBesideTheProgram) {
  AppFolder without({});
  Start none(without.Exe(L"velmora.exe"));
  const double before = none.clock.now;
  ASSERT_EQ(none.Run(), StartupResult::kReady);
  // The paths start from the program's own folder, and nothing is created there.
  EXPECT_EQ(none.session.paths.IniFile, without.dir.Path("QRXSetting.ini"));
  EXPECT_FALSE(test::Exists(none.session.paths.SettingsDir));
  EXPECT_EQ(none.session.recorder, nullptr);
  EXPECT_EQ(none.session.RecorderMapping(), nullptr);
  EXPECT_EQ(none.clock.now, before);

  AppFolder silent({{L"silent_recorder.exe", L"WaveInExe.exe"}});
  Start waits(silent.Exe(L"velmora.exe"));
  ASSERT_EQ(waits.Run(), StartupResult::kReady);
  EXPECT_GT(waits.clock.now - before, 5000);
  EXPECT_EQ(waits.session.RecorderMapping(), nullptr);
  EXPECT_EQ(waits.session.RecorderProcessId(), 0u);
  EXPECT_EQ(test::ProcessesOf(silent.Exe(L"WaveInExe.exe")).size(), 1u);
}

// velmora.exe (and the DLLs it loads) in a fresh folder, with or without a recorder.
struct Installed : AppFolder {
  explicit Installed(const wchar_t* recorder = nullptr)
      : AppFolder({{L"velmora.exe", L"velmora.exe"},
                   {L"QRX.dll", L"QRX.dll"},
                   {L"AVI5.DLL", L"AVI5.DLL"}}) {
    if (recorder) {
      fs::copy_file(test::BesideThisProgram(recorder), TempDir::Fs(dir.Path("WaveInExe.exe")));
    }
  }
  // Starts the program and waits for its window.
  HWND StartAndWait(UniqueHandleObj& process) {
    process = test::Launch(Exe(L"velmora.exe"), L"");
    return process ? test::WaitForWindow(process.get(), L"#32770", 15000) : nullptr;
  }
};

// Sound can be chosen exactly when the recorder answered.
bool SoundOffered(HWND wnd) { return IsWindowEnabled(GetDlgItem(wnd, IDC_CHECK3_SOUND)); }

void CloseAndWait(HWND wnd, const UniqueHandleObj& process) {
  PostMessageW(wnd, WM_CLOSE, 0, 0);
  EXPECT_EQ(test::ExitCodeWithin(process, 10000), 0u);
}

TEST(VelmoraStart, WithTheRecorderBesideItTheRecorderRunsForThisProcess) {
  Installed app(L"WaveInExe.exe");
  UniqueHandleObj process;
  HWND wnd = app.StartAndWait(process);
  ASSERT_NE(wnd, nullptr);
  EXPECT_TRUE(SoundOffered(wnd));

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
  // ...and the recorder follows the process id it was given: ours ending ends it.
  UniqueHandleObj recorder(
      OpenProcess(SYNCHRONIZE | PROCESS_QUERY_INFORMATION, FALSE, recorders[0]));
  CloseAndWait(wnd, process);
  EXPECT_NE(test::ExitCodeWithin(recorder, 5000), static_cast<DWORD>(STILL_ACTIVE));
}

TEST(VelmoraStart, ASecondStartShowsTheInstanceMessageAndEnds) {
  Installed app;
  UniqueHandleObj first, second;
  HWND wnd = app.StartAndWait(first);
  ASSERT_NE(wnd, nullptr);
  second = test::Launch(app.Exe(L"velmora.exe"), L"");
  HWND box = test::WaitForWindow(second.get(), kMessageBoxClass, 10000);
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(Narrow(test::WindowTextW(GetDlgItem(box, kPromptId))), "既に起動しています。");
  PostMessageW(box, WM_COMMAND, kFirstButtonId, 0);
  EXPECT_EQ(test::ExitCodeWithin(second, 10000), 0u);
  EXPECT_EQ(test::ExitCodeWithin(first, 0), static_cast<DWORD>(STILL_ACTIVE));
  CloseAndWait(wnd, first);
}

}  // namespace
}  // namespace velmora::win
