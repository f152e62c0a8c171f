#include "app/win/recording_run.h"

#include <windows.h>

#include "app/priority_class.h"
#include "engine/clock_low32.h"
#include "engine/numbers.h"
#include "engine/result_codes.h"
#include "engine/win/application_folder.h"
#include "engine/win/capture.h"
#include "engine/win/win_idioms.h"
#include "engine/win/text_encoding.h"

namespace velmora::win {
namespace {

// Keeps the chosen priority class (the system's value) for the length of the run.
class PriorityScope {
 public:
  explicit PriorityScope(DWORD priorityClass) {
    if (priorityClass == 0) return;
    previous_ = GetPriorityClass(GetCurrentProcess());
    changed_ = SetPriorityClass(GetCurrentProcess(), priorityClass) != 0;
  }
  ~PriorityScope() {
    if (changed_) SetPriorityClass(GetCurrentProcess(), previous_);
  }
  PriorityScope(const PriorityScope&) = delete;
  PriorityScope& operator=(const PriorityScope&) = delete;

 private:
  DWORD previous_ = 0;
  bool changed_ = false;
};

class RunListener final : public CaptureListener {
 public:
  RunListener(const RecordingJob& job, RecordingRunHooks& hooks, Capture& capture,
              RecordingStats& stats, RunSound& sound)
      : job_(job), hooks_(hooks), capture_(capture), stats_(stats), sound_(sound) {}

  // Grabbing begins: the recorder gets its start request now, so that sound
  // and pictures start together at the planned time.
  void CP_StartCapture(bool&) override {
    sound_.StartCapture();
    hooks_.GrabbingBegins();
  }

  void CP_Capture(int32_t nowFrame, double frameCaptureTime, int32_t dropCount, bool isDrop,
                  int32_t, int32_t, int32_t& captureX, int32_t& captureY, bool& isCancel) override {
    stats_.Add(frameCaptureTime, isDrop);
    hooks_.FrameRecorded(nowFrame + 1, frameCaptureTime, dropCount, isDrop);
    lastSlotEndMs_ = capture_.NowMs();
    if (job_.followMouse) {
      // The next region is centred on the cursor; parts off the screen come out black.
      POINT p{};
      GetCursorPos(&p);
      captureX = p.x - job_.width / 2;
      captureY = p.y - job_.height / 2;
      hooks_.RegionMoved(captureX, captureY);
    }
    const int32_t frameNumber = nowFrame + 1;
    if (hooks_.CancelRequested() && frameNumber % job_.fps == 0) {
      isCancel = true;
      cancelled_ = true;
    }
  }
  bool Cancelled() const { return cancelled_; }
  double LastSlotEndMs() const { return lastSlotEndMs_; }

 private:
  const RecordingJob& job_;
  RecordingRunHooks& hooks_;
  Capture& capture_;
  RecordingStats& stats_;
  RunSound& sound_;
  bool cancelled_ = false;
  double lastSlotEndMs_ = 0;
};

}  // namespace

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

RecordingOutcome RunRecording(const RecordingJob& job, RecordingRunHooks& hooks,
                              RecorderControl* recorder) {
  RecordingOutcome out;
  Capture capture;
  SoundJob soundJob = job.sound;
  soundJob.waveFile = ResolveInApplicationFolder(soundJob.waveFile);
  RunSound sound(recorder, soundJob, job.seconds);
  // A wave name the block cannot hold is refused before anything is recorded.
  if (const std::string refused = sound.Prepare(); !refused.empty()) {
    hooks.ShowError(refused);
    out.result = MakeResultCode(kErrCannotOpen);
    out.resultText = refused;
    return out;
  }

  const DWORD priorityClass = SystemPriorityClass(job.priorityClass);
  PriorityScope priority(priorityClass);
  RecorderPriority recorderPriority;
  // The recorder runs beside every recording, with sound or without.
  if (priorityClass != 0 && recorder && recorder->RecorderProcessId() != 0) {
    recorderPriority.Apply(recorder->RecorderProcessId(), priorityClass);
  }
  capture.Init(job.left, job.top, job.width, job.height);
  capture.Init_Capture(job.fps, job.seconds, job.method, 0, job.cpuReleaseCount, job.cpuReleaseTime,
                       job.drawMouse);
  RunListener listener(job, hooks, capture, out.stats, sound);
  capture.SetListener(&listener);

  // The overwrite question is answered yes: the old file goes first, so
  // nothing of it survives behind the new movie.
  const std::string movie = ResolveInApplicationFolder(job.movieFile);
  ForceDelete(movie);

  hooks.RunStarting(job);
  // The block and Rec hold the planned start as the clock's low 32 bits.
  const int32_t plannedStart = Low32Ms(RoundHalfEven(capture.NowMs() + 350));
  sound.Arm(plannedStart);
  int32_t firstCaptureTime = 0;
  out.result =
      capture.Rec(job.movieFile, 0, false, &firstCaptureTime, plannedStart, job.asyncWrite);
  sound.StopAndWait([&](const std::string& text) { hooks.ShowRecorderMessage(text); });

  out.achievedFps = AchievedFps(out.stats, firstCaptureTime, listener.LastSlotEndMs());

  if (listener.Cancelled() && ResultNumber(out.result) == kErrCancelled) {
    if (hooks.ContinueAfterCancel()) {
      // The header still holds the requested length; make it say what was written.
      int32_t fps = 0;
      if (capture.GetQRXFileData(job.movieFile, nullptr, nullptr, nullptr, &fps) == 0 && fps > 0) {
        const int32_t doneSec = ResultParameter(out.result) / fps;
        if (doneSec > 0) capture.SetQRXFileData(job.movieFile, 0, 0, 0, 0, doneSec);
      }
      // Kept: for the conversion that follows the recording succeeded.
      out.result = 0;
    } else {
      ForceDelete(movie);
      sound.DeleteWaveFile();
      out.filesDeleted = true;
    }
  } else if (out.result != 0) {
    hooks.ShowError(capture.GetErrorUtf8(out.result));
  }
  sound.RestoreLine();
  hooks.RunEnded();
  out.resultText = capture.GetErrorUtf8(out.result);
  return out;
}

}  // namespace velmora::win
