// Plays the application's part against a real WaveInExe.exe:
//   recorder_driver <WaveInExe.exe> <label 1..12> <seconds> <wave file> [lead ms]
// start-up handshake, a start request for the planned start `lead` ms ahead,
// a wait for the length, then stop-and-wait. Prints key=value lines; the
// planned start is also given as Unix milliseconds so that a script can play
// a tone at a known instant relative to it.
#include <windows.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "engine/clock_low32.h"
#include "engine/win/text_encoding.h"
#include "engine/win/win_clock.h"
#include "sound/recorder_block.h"
#include "sound/sound_formats.h"
#include "sound/win/recorder_control.h"

using namespace velmora;

namespace {

double UnixMsNow() {
  FILETIME ft;
  GetSystemTimePreciseAsFileTime(&ft);
  const uint64_t t = (uint64_t{ft.dwHighDateTime} << 32) | ft.dwLowDateTime;
  return static_cast<double>(t) / 10000.0 - 11644473600000.0;
}

void WaitUntil(Clock& clock, double ms) {
  while (clock.NowMs() < ms) {
    clock.PumpMessages();
    clock.SleepMs(5);
  }
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  setvbuf(stdout, nullptr, _IONBF, 0);
  if (argc < 5) {
    std::puts("usage: recorder_driver <WaveInExe.exe> <label 1..12> <seconds> <wave> [lead]");
    return 2;
  }
  const int label = _wtoi(argv[2]);
  const int seconds = _wtoi(argv[3]);
  const std::string wave = win::Narrow(argv[4]);
  const double lead = argc > 5 ? _wtof(argv[5]) : 350;
  if (label < 1 || label > 12) return 2;

  win::WinClock clock;
  win::RecorderControl control(clock);
  if (!control.StartRecorder(argv[1])) {
    std::puts("hello=timeout");
    return 10;
  }
  std::printf("recorder_pid=%u\n", control.RecorderProcessId());

  const sound::SoundFormat format = sound::ParseSoundLabel(sound::kSoundFormatLabels[label - 1]);
  const double now = clock.NowMs();
  const double unixNow = UnixMsNow();
  const double planned = std::round(now + lead);
  sound::RecorderBlock request;
  const auto refused = win::PrepareStartRequest(format, seconds, wave,
                                                Low32Ms(static_cast<int64_t>(planned)), request);
  if (refused != sound::StartRequestError::kNone) {
    std::printf("refused=%s\n", sound::StartRequestErrorText(refused).c_str());
    return 11;
  }
  control.SetStartRequest(request);
  std::printf("planned_unix_ms=%.1f\n", unixNow + (planned - now));
  control.WriteStartRequest();  // where the engine reports that grabbing begins

  WaitUntil(clock, planned + seconds * 1000.0);
  const auto outcome = control.StopAndWait(
      [](const std::string& text) { std::printf("message=%s\n", text.c_str()); });
  const char* names[] = {"complete", "failed", "no_answer"};
  std::printf("outcome=%s\n", names[static_cast<int>(outcome)]);
  return outcome == sound::StopOutcome::kComplete ? 0 : 20 + static_cast<int>(outcome);
}
