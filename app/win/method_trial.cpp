#include "app/win/method_trial.h"

#include "app/method_trial_text.h"
#include "engine/win/text_encoding.h"
#include "engine/win/win_idioms.h"

namespace velmora::win {
namespace {

// The measuring runs write here; the file goes when the trial ends, however
// the runs went.
class TempMovie {
 public:
  TempMovie() {
    wchar_t dir[MAX_PATH + 1] = {};
    wchar_t name[MAX_PATH + 1] = {};
    const DWORD length = GetTempPathW(MAX_PATH + 1, dir);
    if (length > 0 && length <= MAX_PATH && GetTempFileNameW(dir, L"vmt", 0, name) != 0)
      path_ = name;
  }
  ~TempMovie() {
    if (!path_.empty()) ForceDelete(path_);
  }
  TempMovie(const TempMovie&) = delete;
  TempMovie& operator=(const TempMovie&) = delete;
  // Empty when no temporary name could be made.
  std::string Utf8() const { return Narrow(path_); }

 private:
  std::wstring path_;
};

// The window as the trial finds it comes back afterwards: its caption, and
// input, which is shut off so a click cannot start a second run inside the
// message loop of this one.
class WindowDuringTrial {
 public:
  explicit WindowDuringTrial(HWND window) : window_(window) {
    const int length = GetWindowTextLengthW(window);
    caption_.resize(static_cast<size_t>(length) + 1);
    caption_.resize(static_cast<size_t>(GetWindowTextW(window, caption_.data(), length + 1)));
    wasEnabled_ = EnableWindow(window, FALSE) == 0;
  }
  ~WindowDuringTrial() {
    SetWindowTextW(window_, caption_.c_str());
    if (wasEnabled_) EnableWindow(window_, TRUE);
  }
  WindowDuringTrial(const WindowDuringTrial&) = delete;
  WindowDuringTrial& operator=(const WindowDuringTrial&) = delete;

 private:
  HWND window_;
  std::wstring caption_;
  bool wasEnabled_ = false;
};

class CaptionHooks final : public RecordingRunHooks {
 public:
  CaptionHooks(HWND window, int32_t method) : window_(window), method_(method) {}
  void FrameRecorded(int32_t frameNumber, double, int32_t, bool) override {
    SetWindowTextW(window_, Widen(MethodTrialCaption(method_, frameNumber)).c_str());
  }
  // An engine error is told by the method's failure line; no box per run.
  void ShowError(const std::string&) override {}

 private:
  HWND window_;
  int32_t method_;
};

}  // namespace

std::string TryCaptureMethods(const RecordingJob& settings, HWND window) {
  WindowDuringTrial restore(window);
  const TempMovie movie;
  std::string lines;
  for (int32_t method = 0; method <= 2; ++method) {
    RecordingJob job = settings;
    job.method = method;
    job.seconds = 2;
    job.movieFile = movie.Utf8();
    job.sound = SoundJob{};
    RecordingOutcome outcome;
    if (job.movieFile.empty()) {
      outcome.result = -1;  // nowhere to write: the failure line
    } else {
      CaptionHooks hooks(window, method);
      outcome = RunRecording(job, hooks);
    }
    lines += MethodTrialLine(method, outcome.result, TrialFrameMs(outcome.stats),
                             outcome.stats.Drops(), job.fps);
  }
  return lines;
}

}  // namespace velmora::win
