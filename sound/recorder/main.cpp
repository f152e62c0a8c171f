// WaveInExe.exe <application process id>: the sound recorder. It answers the
// application's requests in the recorder block until the application's
// process is gone. It shows no window.
#include <windows.h>

#include <optional>
#include <string>

#include "engine/win/handles.h"
#include "sound/recorder/recording.h"
#include "sound/recording_schedule.h"
#include "engine/win/win_clock.h"
#include "sound/win/shared_block.h"

namespace velmora::recorder {
namespace {

using namespace velmora::sound;

constexpr DWORD kIdlePollMs = 2;
constexpr double kFindBlockMs = 5000;

// Two equal reads in a row: the application copies the block in one go, but
// a read may still fall in the middle of that copy.
RecorderBlock ReadSettled(BlockPort& block) {
  BlockBytes a{}, b{};
  block.Read(a);
  for (int tries = 0; tries < 5; ++tries) {
    Sleep(1);
    block.Read(b);
    if (a == b) break;
    a = b;
  }
  return DecodeRecorderBlock(a);
}

void Answer(BlockPort& block, int32_t state, const int32_t* processId = nullptr) {
  BlockBytes bytes{};
  block.Read(bytes);
  RecorderBlock b = DecodeRecorderBlock(bytes);
  b.state = state;
  if (processId) b.bitsOrProcessId = *processId;
  block.Write(EncodeRecorderBlock(b));
}

// The recorder must not outlive the application: if a device call hangs
// after the application is gone, this ends the process anyway.
DWORD WINAPI Watchdog(void* parent) {
  WaitForSingleObject(static_cast<HANDLE>(parent), INFINITE);
  Sleep(3000);
  ExitProcess(5);
}

int Run(const wchar_t* commandLine) {
  const DWORD appId = ParseApplicationProcessId(commandLine);
  if (appId == 0) return 2;
  win::UniqueHandleObj parent(OpenProcess(SYNCHRONIZE, FALSE, appId));
  if (!parent) return 3;
  win::UniqueHandleObj watchdog(CreateThread(nullptr, 0, Watchdog, parent.get(), 0, nullptr));

  win::WinClock clock;
  win::SharedBlock block;
  for (const double begin = clock.NowMs(); !block.IsOpen(); Sleep(10)) {
    block = win::SharedBlock::Open(kRecorderBlockName);
    if (!block.IsOpen() && clock.NowMs() - begin > kFindBlockMs) return 4;
  }

  const auto ownId = static_cast<int32_t>(GetCurrentProcessId());
  std::optional<RecorderBlock> lastServed;
  while (WaitForSingleObject(parent.get(), kIdlePollMs) == WAIT_TIMEOUT) {
    BlockBytes bytes{};
    block.Read(bytes);
    const int32_t state = DecodeRecorderBlock(bytes).state;
    if (state == kStateHello) {
      Answer(block, kStateIdle, &ownId);
    } else if (state == kStateStart) {
      const RecorderBlock request = ReadSettled(block);
      if (request.state != kStateStart) continue;
      const StartDecision start =
          DecideStart(request, lastServed ? &*lastServed : nullptr, clock.NowMs());
      if (start.refusal != StartRefusal::kNone) {
        Answer(block, kStateFailed);
        continue;
      }
      lastServed = request;
      const RecordingEnd end = RunRecording(request, start.startAtMs, block, parent.get(), clock);
      if (end == RecordingEnd::kParentGone) break;
      Answer(block, end == RecordingEnd::kComplete ? kStateComplete : kStateFailed);
    }
  }
  return 0;
}

}  // namespace
}  // namespace velmora::recorder

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR commandLine, int) {
  return velmora::recorder::Run(commandLine);
}
