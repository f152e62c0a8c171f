// One recording of the recorder program: from a start request to the
// finished wave file.
#pragma once
#include <windows.h>

#include "engine/clock.h"
#include "sound/recorder_protocol.h"

namespace velmora::recorder {

enum class RecordingEnd {
  kComplete,    // the wave file is written: answer 4
  kFailed,      // nothing usable: answer 6
  kParentGone,  // the application is gone: nobody to answer
};

// Serves a request that DecideStart accepted: opens the device and the
// temporary file, starts the device at `startAtMs` (at once when that has
// passed, with silence in place of the missed head), keeps the samples until
// the length is reached or the stop request says the run ended sooner, then
// waits for the stop request and writes the wave file. The block is only
// read here; the caller writes the answer.
RecordingEnd RunRecording(const sound::RecorderBlock& request, double startAtMs,
                          sound::BlockPort& block, HANDLE parent, Clock& clock);

}  // namespace velmora::recorder
