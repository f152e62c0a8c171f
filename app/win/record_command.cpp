#include "app/win/record_command.h"

#include <windows.h>

#include "app/capture_settings.h"
#include "app/recording_stats.h"
#include "app/window_positions.h"
#include "app/win/ansi.h"
#include "app/win/console.h"
#include "app/win/recording_run.h"
#include "app/win/save_step.h"
#include "engine/result_codes.h"
#include "engine/win/capture.h"
#include "engine/win/win_clock.h"
#include "engine/win/text_encoding.h"

namespace velmora::win {
namespace {

RecordingJob JobFromSettings(const CaptureSettings& s) {
  RecordingJob job;
  job.left = s.Left;
  job.top = s.Top;
  job.width = s.Width;
  job.height = s.Height;
  job.fps = s.Fps;
  job.seconds = s.Seconds;
  job.method = s.Method;
  job.cpuReleaseCount = s.CpuReleaseCount;
  job.cpuReleaseTime = s.CpuReleaseTime;
  job.drawMouse = IsTrue16(s.DrawMouse);
  job.followMouse = IsTrue16(s.FollowMouse);
  job.asyncWrite = IsTrue16(s.AsyncWrite);
  job.priorityClass = s.PriorityClass;
  job.movieFile = s.MovieFile;
  job.sound.waveFile = s.WaveFile;
  job.sound.format = {s.SampleRate, s.Channels, s.BitsPerSample};
  job.sound.recordingLine = s.RecordingLine;
  return job;
}

SaveJob SaveJobFromSettings(const CaptureSettings& s) {
  SaveJob job;
  job.movieFile = s.MovieFile;
  job.aviFile = s.AviFile;
  job.waveFile = s.WaveFile;
  job.keepMovie = IsTrue16(s.KeepMovie);
  job.avi24 = IsTrue16(s.Avi24Bit);
  job.deleteWave = IsTrue16(s.DeleteWave);
  return job;  // a settings file brings no compressor back: uncompressed
}

// Nobody to ask on the command line: no cancel, the engine's message goes
// into the summary line, the recorder's complaints are printed before it.
class UnattendedHooks final : public RecordingRunHooks {
 public:
  void ShowRecorderMessage(const std::string& utf8Text) override { PrintLine(utf8Text); }
};

// The recorder lies beside the program and is started for this process, as
// the application does at start-up.
void StartRecorder(RecorderControl& recorder) {
  const std::wstring exe = Widen(ResolveInApplicationFolder("WaveInExe.exe"));
  if (GetFileAttributesW(exe.c_str()) != INVALID_FILE_ATTRIBUTES) recorder.StartRecorder(exe);
  if (!recorder.RecorderMapping()) PrintLine("sound unavailable: recording pictures only");
}

}  // namespace

VerbResult RunRecordCommand(const std::vector<std::wstring>& args) {
  if (args.size() != 1) return std::nullopt;
  const std::string path = Narrow(args[0]);
  const CaptureSettings settings = ReadSettingsFile(path, SystemAnsiCodec());
  if (settings.Width == 0 && settings.Height == 0) {
    const int32_t code = MakeResultCode(kErrCannotOpen);
    PrintLine(path + ": " + GetError(code));
    return code;
  }
  UnattendedHooks hooks;
  const RecordingJob job = JobFromSettings(settings);
  WinClock clock;
  RecorderControl recorder(clock);
  if (!job.sound.waveFile.empty()) StartRecorder(recorder);
  const RecordingOutcome out = RunRecording(job, hooks, &recorder);
  PrintLine(SummaryLine(out.stats, out.result, out.resultText));
  if (out.filesDeleted) return out.result;
  // The progress window shows; every question takes its default answer and
  // is printed.
  DefaultAsker asker([](const std::string& text) { PrintLine(text); });
  // The progress window opens where the windowed program last left it, and
  // a move made during this conversion is remembered the same way.
  const std::string iniFile = ResolveInApplicationFolder("QRXSetting.ini");
  WindowPositions positions;
  const bool remembered = LoadWindowPositions(iniFile, SystemAnsiCodec(), positions) == 0;
  std::optional<POINT> corner;
  if (remembered) corner = POINT{positions.AviWindowX, positions.AviWindowY};
  const SaveOutcome saved = RunSaveStep(SaveJobFromSettings(settings), out.result, asker, corner);
  if (remembered && saved.progressPosition) {
    positions.AviWindowX = saved.progressPosition->x;
    positions.AviWindowY = saved.progressPosition->y;
    SaveWindowPositions(iniFile, positions, SystemAnsiCodec());
  }
  return saved.result;
}

}  // namespace velmora::win
