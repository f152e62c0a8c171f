// The application's side against real processes: WaveInExe.exe and a
// recorder that never answers.
// Needs the private PulseAudio (the test runs through run_with_pulse.sh).
#include "sound/win/recorder_control.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "engine/clock_low32.h"
#include "engine/win/text_encoding.h"
#include "engine/win/win_clock.h"
#include "tests/fake_clock.h"
#include "tests/temp_dir.h"
#include "tests/win/launch.h"

namespace velmora::win {
namespace {

using namespace velmora::sound;
using test::ExitCodeWithin;
using test::Kill;
using test::Launch;

std::wstring BinFile(const char* name) { return test::BesideThisProgram(Widen(name).c_str()); }

// The five-second limits pass at once: time moves only by the control's sleeps.
using test::FakeClock;

// Sound is unavailable alike when the shell cannot start the recorder (the
// block closes at once) and when the recorder never answers: the wait runs
// out, later reads and writes do nothing and the stop wait ends with its message.
TEST(RecorderStartUp, WithoutAnAnswerSoundIsUnavailableForTheRun) {
  for (const char* exe : {"no_such_recorder.exe", "silent_recorder.exe"}) {
    FakeClock clock;
    RecorderControl control(clock);
    EXPECT_FALSE(control.StartRecorder(BinFile(exe))) << exe;
    EXPECT_EQ(control.RecorderMapping(), nullptr) << exe;
    EXPECT_EQ(control.RecorderProcessId(), 0u) << exe;
    control.WriteStartRequest();
    std::vector<std::string> shown;
    EXPECT_EQ(control.StopAndWait([&](const std::string& t) { shown.push_back(t); }),
              StopOutcome::kNoAnswer);
    EXPECT_EQ(shown, std::vector<std::string>{StopOutcomeMessage(StopOutcome::kNoAnswer)}) << exe;
  }
}

class WithRecorder : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(control.StartRecorder(BinFile("WaveInExe.exe")));
    pid = control.RecorderProcessId();
  }
  void TearDown() override { Kill(pid); }

  RecorderBlock Request(int32_t seconds, const std::string& utf8Wave, double leadMs = 200) {
    RecorderBlock r;
    const int32_t planned = Low32Ms(std::llround(clock.NowMs() + leadMs));
    EXPECT_EQ(PrepareStartRequest({11025, 1, 8}, seconds, utf8Wave, planned, r),
              StartRequestError::kNone);
    return r;
  }
  StopOutcome StartAndStop(const RecorderBlock& r, double afterMs,
                           std::vector<std::string>& shown) {
    control.SetStartRequest(r);
    control.WriteStartRequest();
    const double until = clock.NowMs() + afterMs;
    while (clock.NowMs() < until) clock.SleepMs(10);
    return control.StopAndWait([&](const std::string& t) { shown.push_back(t); });
  }
  WinClock clock;
  RecorderControl control{clock};
  uint32_t pid = 0;
  test::TempDir dir;
};

// The hello is answered with the recorder's own process id. A request the
// recorder cannot carry out (a folder the system refuses, a wave file it
// cannot replace at the end) or refuses (a stale repeat; every refusal is
// decided natively) is answered with failure, and the recorder keeps serving.
TEST_F(WithRecorder, AnswersHelloThenFailsBadRequestsAndKeepsServing) {
  EXPECT_NE(control.RecorderMapping(), nullptr);
  const std::vector<DWORD> recorders = test::ProcessesOf(BinFile("WaveInExe.exe"));
  EXPECT_NE(std::find(recorders.begin(), recorders.end(), pid), recorders.end());

  const std::string wave = dir.Path("served.wav"), locked = dir.Path("locked.wav");
  UniqueFile held(CreateFileW(Widen(locked).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
  ASSERT_TRUE(held);
  for (const std::string& failing : {std::string("Z:\\no\\such\\folder\\x.wav"), locked}) {
    std::vector<std::string> shown;
    EXPECT_EQ(StartAndStop(Request(1, failing), 1200, shown), StopOutcome::kFailed) << failing;
    EXPECT_EQ(shown, std::vector<std::string>{StopOutcomeMessage(StopOutcome::kFailed)}) << failing;
  }
  EXPECT_FALSE(test::Exists(locked + ".wavtemp"));
  // A sound request after all that works, once. Written again within its
  // length (a run without sound does that), it is stale.
  std::vector<std::string> shown;
  const RecorderBlock served = Request(3, wave);
  EXPECT_EQ(StartAndStop(served, 1200, shown), StopOutcome::kComplete);
  EXPECT_EQ(StartAndStop(served, 0, shown), StopOutcome::kFailed);
  EXPECT_TRUE(test::Exists(wave)) << "the served recording stays";
}

TEST(RecorderProcess, EndsWhenTheApplicationIsGoneAndRefusesABadCommandLine) {
  SharedBlock block = SharedBlock::Create(kRecorderBlockName);
  ASSERT_TRUE(block.IsOpen());
  // An "application" that lives as long as this test lets it.
  UniqueHandleObj app =
      Launch(BinFile("silent_recorder.exe"), std::to_wstring(GetCurrentProcessId()));
  ASSERT_TRUE(app);
  UniqueHandleObj recorder =
      Launch(BinFile("WaveInExe.exe"), std::to_wstring(GetProcessId(app.get())));
  ASSERT_TRUE(recorder);
  EXPECT_EQ(ExitCodeWithin(recorder, 300), static_cast<DWORD>(STILL_ACTIVE));
  TerminateProcess(app.get(), 0);
  EXPECT_EQ(ExitCodeWithin(recorder, 3000), 0u);

  // Which command lines are refused is decided natively; here the refusals' exit codes.
  EXPECT_EQ(ExitCodeWithin(Launch(BinFile("WaveInExe.exe"), L"12x"), 3000), 2u);
  EXPECT_EQ(ExitCodeWithin(Launch(BinFile("WaveInExe.exe"), L"4000000000"), 3000), 3u);
}

TEST(AnsiNames, FittingIsMeasuredInCodePageBytes) {
  // 126 kanji are 252 bytes in code page 932 (378 in UTF-8): with ".wavtemp" exactly 260.
  std::string name;
  for (int i = 0; i < 126; ++i) name += "音";
  RecorderBlock r;
  ASSERT_EQ(PrepareStartRequest({11025, 1, 8}, 1, name, 0, r), StartRequestError::kNone);
  EXPECT_EQ(Utf8FromAnsi(NameFieldText(r.tempName)), name + ".wavtemp");
  EXPECT_EQ(PrepareStartRequest({11025, 1, 8}, 1, name + "音", 0, r),
            StartRequestError::kNameTooLong);
  // A character code page 932 cannot write is refused, not replaced by '?'.
  EXPECT_EQ(PrepareStartRequest({11025, 1, 8}, 1, "caf\xC3\xA9\xF0\x9F\x8E\xB5.wav", 0, r),
            StartRequestError::kNameNotInCodePage);
}

}  // namespace
}  // namespace velmora::win
