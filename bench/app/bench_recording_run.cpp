// Recording through the application's own run (RunRecording), as the start
// button and velmora.exe /record drive it, under Wine on the benchmark's
// Full HD screen:
//  1. 1280x720 at 30 fps, with the hooks of /record (nothing drawn) and then
//     with the frame window (statistics every 10 frames, messages pumped):
//     drops and frame start jitter p99 of each.
//  2. The whole screen: one block copy against the grabber's banded copy;
//     then at 30 fps through the frame window, per method: the grab alone
//     (ms per grab) and the frames kept per second against what the grab
//     alone allows of those 30.
// Every slot is stamped in the run's FrameRecorded hook, for both kinds of
// hooks alike. Each recording lasts VELMORA_BENCH_SECONDS (default 60).
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "app/win/capture_frame_window.h"
#include "app/win/recording_run.h"
#include "bench/capture/grab_rate.h"
#include "bench/common/slot_timing.h"
#include "engine/win/win_clock.h"
#include "engine/win/win_idioms.h"

namespace velmora::win {
namespace {

// The run's hooks, with every slot's report time kept before the hooks see it.
template <class Hooks>
class Stamped final : public Hooks {
 public:
  using Hooks::Hooks;
  void FrameRecorded(int32_t frameNumber, double captureMs, int32_t dropCount,
                     bool isDrop) override {
    reportMs.push_back(clock_.NowMs());
    drops = dropCount;
    Hooks::FrameRecorded(frameNumber, captureMs, dropCount, isDrop);
  }
  std::vector<double> reportMs;
  int32_t drops = 0;

 private:
  WinClock clock_;
};

// The plain hooks are what /record runs with.
using RecordHooks = RecordingRunHooks;

// The frame window, its panel beside the 1280x720 region (the corner is
// made before the window that keeps a reference to it).
struct PanelCorner {
  WindowPositions positions{1400, 100, 0, 0};
};
struct WindowHooks : PanelCorner, CaptureFrameWindow {
  WindowHooks() : CaptureFrameWindow(GetModuleHandleW(nullptr), positions) {}
};

struct RunFigures {
  int32_t result = 0;
  int32_t drops = 0;
  bench::SlotTiming timing;
};

template <class Hooks>
RunFigures Record(RecordingJob job, Stamped<Hooks>& hooks) {
  hooks.reportMs.reserve(static_cast<size_t>(job.fps) * (job.seconds + 1));
  const RecordingOutcome out = RunRecording(job, hooks);
  ForceDelete(job.movieFile);
  return {out.result, hooks.drops,
          bench::MeasureSlots(hooks.reportMs, hooks.drops, 1000.0 / job.fps)};
}

void PrintRun(const char* what, const RecordingJob& job, const RunFigures& f) {
  std::printf(
      "%-14s %4dx%-4d Type%d %2d fps %3d s: drops %3d, kept %5.1f fps, jitter p99 %6.3f ms%s\n",
      what, job.width, job.height, job.method, job.fps, job.seconds, f.drops, f.timing.sustainedFps,
      f.timing.jitterP99Ms, f.result ? "  (recording failed)" : "");
  std::fflush(stdout);
}

int Main() {
  const char* env = std::getenv("VELMORA_BENCH_SECONDS");
  const int32_t seconds = env && std::atoi(env) > 0 ? std::atoi(env) : 60;
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  // The default settings' method, CPU release and asynchronous writing.
  RecordingJob job;
  job.movieFile = std::string(temp) + "velmora_bench_run.QRK";
  job.fps = 30;
  job.seconds = seconds;
  job.width = 1280;
  job.height = 720;
  const int32_t screenW = GetSystemMetrics(SM_CXSCREEN), screenH = GetSystemMetrics(SM_CYSCREEN);
  std::printf("screen %dx%d; recordings of %d s (VELMORA_BENCH_SECONDS)\n", screenW, screenH,
              seconds);

  {
    // The first recording of a process pays for what is made once (the
    // compressor's tables, the writer's thread, the file system's caches).
    RecordingJob warmUp = job;
    warmUp.seconds = 1;
    Stamped<RecordHooks> first;
    Record(warmUp, first);
    Stamped<RecordHooks> plain;
    const RunFigures record = Record(job, plain);
    PrintRun("/record", job, record);
    Stamped<WindowHooks> window;
    const RunFigures frame = Record(job, window);
    PrintRun("frame window", job, frame);
  }

  job.width = screenW;
  job.height = screenH;
  // The grabbers read a tall area in bands; one block copy of it is the
  // plain way, and the reason for the bands.
  const double oneBlock = OneBlockCopyRate(screenW, screenH, 1000);
  const double banded = CaptureOnlyRate(2, screenW, screenH, 1000);
  std::printf("whole screen, one block copy %6.1f ms, Type2 in bands %6.1f ms: %.1f x as fast\n",
              1000.0 / oneBlock, 1000.0 / banded, banded / oneBlock);
  for (job.method = 0; job.method <= 2; ++job.method) {
    // The machine is shared: the grab alone is measured just before and just
    // after the recording, and the mean is the reference.
    const double before = CaptureOnlyRate(job.method, screenW, screenH, 1000);
    Stamped<WindowHooks> window;
    const RunFigures f = Record(job, window);
    const double grab = (before + CaptureOnlyRate(job.method, screenW, screenH, 1000)) / 2;
    PrintRun("frame window", job, f);
    // The recording cannot keep more than its 30 fps.
    std::printf("%-14s grab alone %6.1f ms (%5.1f /s); kept / min(grab rate, %d) = %.3f\n", "",
                1000.0 / grab, grab, job.fps,
                f.timing.sustainedFps / std::min(grab, double(job.fps)));
    std::fflush(stdout);
  }
  return 0;
}

}  // namespace
}  // namespace velmora::win

int main() { return velmora::win::Main(); }
