// velmora.exe /record with sound, end to end: the recorder is started beside
// the program, a 1 kHz tone plays into the private PulseAudio sink while the
// screen is recorded (the test runs inside with_tone.sh), and the wave file
// beside the movie must hold the tone for the whole length in the chosen
// format.
#include <gtest/gtest.h>
#include <windows.h>

#include <cmath>
#include <filesystem>
#include <utility>
#include <vector>

#include "app/capture_settings.h"
#include "app/tests/run_velmora.h"
#include "app/win/ansi.h"
#include "app/win/recording_run.h"
#include "engine/movie_reader.h"
#include "engine/result_codes.h"
#include "engine/win/text_encoding.h"
#include "engine/win/win_clock.h"
#include "sound/wav_header.h"
#include "tests/files.h"
#include "tests/temp_dir.h"

namespace velmora {
namespace {

CaptureSettings SoundSettings(const test::TempDir& dir, const std::string& base) {
  CaptureSettings s = DefaultSettings(true);
  s.Left = 0;
  s.Top = 0;
  s.Width = 64;
  s.Height = 48;
  s.Fps = 10;
  s.Seconds = 2;
  s.Method = 1;
  s.MovieFile = dir.Path(base + ".QRK");
  s.AviFile.clear();  // movie and wave only: the AVI steps are tested on their own
  s.WaveFile = dir.Path(base + ".wav");
  s.WaveTempFile = s.WaveFile + ".wavtemp";
  s.SampleRate = 44100;
  s.BitsPerSample = 16;
  s.Channels = 1;
  return s;
}

TEST(RecordWithSound, TheWaveBesideTheMovieHoldsTheToneForTheWholeLength) {
  test::TempDir dir;
  const CaptureSettings s = SoundSettings(dir, "音声つき");
  const std::string job = dir.Path("job.QRT");
  ASSERT_EQ(WriteSettingsFile(job, s, win::SystemAnsiCodec()), 0);
  const ProgramRun run = RunVelmora(L"/record \"" + win::Widen(job) + L"\"");
  EXPECT_EQ(run.exitCode, 0u) << run.output;
  EXPECT_NE(run.output.find(" result 0 OK\r\n"), std::string::npos) << run.output;

  MovieReader reader;
  ASSERT_EQ(reader.OpenFile(s.MovieFile), 0);
  EXPECT_EQ(FrameSlots(reader.Header()), 20);

  const std::vector<uint8_t> wav = test::ReadFile(s.WaveFile);
  ASSERT_GE(wav.size(), 44u) << "no wave file beside the movie";
  const auto want = sound::EncodeWavHeader({44100, 1, 16}, 2 * 44100 * 2);
  EXPECT_TRUE(std::equal(want.begin(), want.end(), wav.begin()))
      << "header of a 2 s 44.1 kHz mono 16-bit file";
  EXPECT_EQ(wav.size(), 44u + 2 * 44100 * 2);
  EXPECT_FALSE(test::Exists(s.WaveTempFile));

  // A recorder whose device opened late put exact zeros in front, so that
  // the sound stays with the pictures. After them the tone, in every tenth of
  // a second: RMS of a half-scale sine and 1 kHz by its zero crossings (200
  // per tenth).
  const size_t samples = (wav.size() - 44) / 2;
  const auto sample = [&](size_t i) {
    return static_cast<int16_t>(wav[44 + 2 * i] | wav[45 + 2 * i] << 8);
  };
  size_t head = 0;
  while (head < samples && sample(head) == 0) ++head;
  EXPECT_LT(head, samples * 3 / 4) << "the recorder started more than 1.5 s late";
  for (size_t from = head; from + 4410 <= samples; from += 4410) {
    double sum = 0;
    int crossings = 0;
    int16_t prev = 0;
    for (size_t i = from; i < from + 4410; ++i) {
      const int16_t v = sample(i);
      sum += static_cast<double>(v) * v;
      if (i > from && (prev < 0) != (v < 0)) ++crossings;
      prev = v;
    }
    const double rms = std::sqrt(sum / 4410) / 32768;
    EXPECT_NEAR(rms, 0.354, 0.05) << "at " << from / 44.1 << " ms";
    EXPECT_NEAR(crossings, 200, 6) << "at " << from / 44.1 << " ms";
  }
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
  win::RecordingJob job;
  job.width = 64;
  job.height = 48;
  job.fps = 10;
  job.seconds = 5;
  job.movieFile = s.MovieFile;
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
    job.sound = {c.wave, {44100, 1, 16}, 0};
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
