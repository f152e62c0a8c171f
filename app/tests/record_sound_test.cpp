// Recording with sound: a 1 kHz tone plays into the private PulseAudio sink
// all the while (the tests run inside with_tone.sh).
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <utility>
#include <vector>

#include "app/tests/pattern_job.h"
#include "app/tests/run_velmora.h"
#include "app/win/ansi.h"
#include "app/win/recording_run.h"
#include "engine/result_codes.h"
#include "engine/win/text_encoding.h"
#include "engine/win/win_clock.h"
#include "sound/wav_header.h"
#include "tests/conversion_movies.h"
#include "tests/files.h"
#include "tests/temp_dir.h"

namespace velmora {
namespace {

// Two seconds of 64 x 48 at 10 fps, movie and wave only.
CaptureSettings SoundSettings(const test::TempDir& dir, const std::string& base) {
  CaptureSettings s = test::PatternJob(1, dir.Path(base + ".QRK"), 0, 0);
  s.Fps = 10;
  s.Seconds = 2;
  s.WaveFile = dir.Path(base + ".wav");
  s.WaveTempFile = s.WaveFile + ".wavtemp";
  s.SampleRate = 44100;
  s.BitsPerSample = 16;
  s.Channels = 1;
  return s;
}

// velmora.exe /record as a user runs it, saving an AVI as well.
TEST(RecordWithSound, TheWaveBesideTheMovieHoldsTheToneForTheWholeLength) {
  test::TempDir dir;
  CaptureSettings s = SoundSettings(dir, "音声つき");
  s.AviFile = dir.Path("音声つき.avi");
  const std::string job = dir.Path("job.QRT");
  ASSERT_EQ(WriteSettingsFile(job, s, win::SystemAnsiCodec()), 0);
  const ProgramRun run = RunVelmora(L"/record \"" + win::Widen(job) + L"\"");
  EXPECT_EQ(run.exitCode, 0u) << run.output;
  EXPECT_NE(run.output.find("frames 20, drops "), std::string::npos) << run.output;
  EXPECT_NE(run.output.find(" result 0 OK\r\n"), std::string::npos) << run.output;
  EXPECT_EQ(test::ReadAvi(s.AviFile).frames.size(), 20u);

  const std::vector<uint8_t> wav = test::ReadFile(s.WaveFile);
  ASSERT_GE(wav.size(), 44u) << "no wave file beside the movie";
  const auto want = sound::EncodeWavHeader({44100, 1, 16}, 2 * 44100 * 2);
  EXPECT_TRUE(std::equal(want.begin(), want.end(), wav.begin()))
      << "header of a 2 s 44.1 kHz mono 16-bit file";
  EXPECT_EQ(wav.size(), 44u + 2 * 44100 * 2);
  EXPECT_FALSE(test::Exists(s.WaveTempFile));

  // A recorder whose device opened late put exact zeros in front, so that
  // the sound stays with the pictures; after them the tone (its pitch, level
  // and gaps are the recorder's own tests), not silence.
  const size_t samples = (wav.size() - 44) / 2;
  const auto sample = [&](size_t i) {
    return static_cast<int16_t>(wav[44 + 2 * i] | wav[45 + 2 * i] << 8);
  };
  size_t head = 0;
  while (head < samples && sample(head) == 0) ++head;
  EXPECT_LT(head, samples * 3 / 4) << "the recorder started more than 1.5 s late";
}

// The priority classes of this program and of the process `pid`.
std::pair<DWORD, DWORD> PriorityClasses(uint32_t pid) {
  win::UniqueHandleObj p(OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, pid));
  return {GetPriorityClass(GetCurrentProcess()), p ? GetPriorityClass(p.get()) : 0};
}

// The run in this process with its own recorder: a cancelled run that is not
// kept loses its wave file with the movie; one that is kept has sound up to
// the cancel. "やや高" holds both processes above normal for the run, with
// sound or without. A wave name the recorder cannot take stops the run first.
TEST(RecordWithSound, ACancelledRunKeepsOrDeletesTheWaveWithTheMovie) {
  struct CancelAtOnce final : win::RecordingRunHooks {
    bool keep = true;
    uint32_t recorderPid = 0;
    std::pair<DWORD, DWORD> classes;  // this program's and the recorder's, during the run
    std::vector<std::string> shown;   // the recorder's messages and the run's errors
    bool CancelRequested() override {
      classes = PriorityClasses(recorderPid);
      return true;  // takes effect after one second
    }
    bool ContinueAfterCancel() override { return keep; }
    void ShowRecorderMessage(const std::string& t) override { shown.push_back(t); }
    void ShowError(const std::string& t) override { shown.push_back(t); }
  };
  const std::wstring recorderExe = test::BesideThisProgram(L"WaveInExe.exe");
  win::WinClock clock;
  win::RecorderControl recorder(clock);
  ASSERT_TRUE(recorder.StartRecorder(recorderExe));

  test::TempDir dir;
  const CaptureSettings s = SoundSettings(dir, "取消");
  win::RecordingJob job = win::JobFromSettings(s);
  job.seconds = 5;
  job.priorityClass = -32768;  // "やや高"
  const std::pair<DWORD, DWORD> aboveNormal{ABOVE_NORMAL_PRIORITY_CLASS,
                                            ABOVE_NORMAL_PRIORITY_CLASS};
  const std::pair<DWORD, DWORD> normal{NORMAL_PRIORITY_CLASS, NORMAL_PRIORITY_CLASS};
  const struct {
    const char* what;
    std::string wave;  // none: the recorder still runs beside the recording
    bool keep;
  } cases[] = {
      {"without sound", "", true}, {"kept", s.WaveFile, true}, {"not kept", s.WaveFile, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    job.sound.waveFile = c.wave;
    CancelAtOnce hooks;
    hooks.keep = c.keep;
    hooks.recorderPid = recorder.RecorderProcessId();
    const auto out = win::RunRecording(job, hooks, &recorder);
    if (c.keep)
      EXPECT_EQ(out.result, 0) << "a kept cancel is a success";
    else
      EXPECT_EQ(ResultNumber(out.result), kErrCancelled);
    EXPECT_TRUE(hooks.shown.empty());
    EXPECT_EQ(hooks.classes, aboveNormal);
    EXPECT_EQ(PriorityClasses(recorder.RecorderProcessId()), normal);
    if (c.wave.empty()) continue;
    if (c.keep) {
      std::error_code ec;
      const auto bytes = std::filesystem::file_size(test::TempDir::Fs(s.WaveFile), ec);
      EXPECT_GT(bytes, 44u + 88200u * 9 / 10) << "about one second of sound";
      EXPECT_LT(bytes, 44u + 88200u * 2);
    } else {
      EXPECT_TRUE(out.filesDeleted);
      EXPECT_FALSE(test::Exists(s.WaveFile));
      EXPECT_FALSE(test::Exists(s.MovieFile));
    }
  }

  // 200 kanji are 400 bytes in the ANSI code page: more than the block's 260.
  std::string longName;
  for (int i = 0; i < 200; ++i) longName += "音";
  job.sound.waveFile = dir.Path(longName + ".wav");
  CancelAtOnce refused;
  const auto out = win::RunRecording(job, refused, &recorder);
  EXPECT_EQ(out.result, MakeResultCode(kErrCannotOpen));
  EXPECT_EQ(out.resultText.rfind("wavファイル名が長すぎるため録音できません。", 0), 0u);
  EXPECT_EQ(refused.shown, std::vector<std::string>{out.resultText});
  EXPECT_FALSE(test::Exists(s.MovieFile));
  win::UniqueHandleObj p(OpenProcess(PROCESS_TERMINATE, FALSE, recorder.RecorderProcessId()));
  if (p) TerminateProcess(p.get(), 0);
}

}  // namespace
}  // namespace velmora
