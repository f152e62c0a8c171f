// The recording loop: validates the session, writes the movie header, waits
// for the planned start and then, for every frame slot, drops the frame or
// grabs, compresses and writes it, pauses, paces and reports to the owner.
// The platform is reached only through Clock, FrameSource, MovieSink and
// CaptureListener, so the whole schedule runs exactly against a fake clock.
#pragma once
#include <cstdint>
#include <string>

#include "engine/capture_interfaces.h"

namespace velmora {

// What Init and Init_Capture store, plus the display depth. The loop moves
// x/y when a CP_Capture handler changes them and restores bitCount at the end.
struct RecordingSession {
  int32_t x = 0;
  int32_t y = 0;
  int32_t width = 0;
  int32_t height = 0;
  int32_t fps = 0;
  int32_t sec = 0;
  int32_t method = 0;
  int32_t maxSizeMB = 0;        // kept for the interface; no size limit is enforced
  int32_t cpuReleaseCount = 0;  // CPU release count: 1 pauses after writing, 2 also after grabbing
  int32_t cpuReleaseTime = 0;   // ms per pause; 0 gives up the time slice only
  bool drawMouse = false;
  int32_t bitCount = 0;  // display depth; a user-capture handler may change it per recording
};

// The per-call arguments of Rec / Rec1.
struct RecordingRequest {
  // Movie path (UTF-8), handed to the sink unchanged. The loop never changes
  // the current directory: the Windows Capture class resolves a relative
  // path against the application folder before calling the loop.
  std::string path;
  bool userCapture = false;
  // The planned start: the low 32 bits of whole ms on the engine clock
  // (engine/clock_low32.h); the loop busy-waits until the clock is past it.
  // 0 starts at once.
  int32_t waitForStartTime = 0;
  // The start time, rounded half to even, as the clock's low 32 bits.
  int32_t* retFirstCaptureTime = nullptr;
};

// The platform pieces one recording runs against. `source` may be null in
// user-capture mode (the owner fills every frame through CP_UserCaptureSetDATA).
struct RecordingPorts {
  Clock& clock;
  FrameSource* source;
  MovieSink& sink;
  CaptureListener& listener;
  CompressFn compress;
};

// Runs one recording. Returns 0 or a packed result code:
//   -1 a session field out of range, -9 user capture with a method other than
//   Type1 (both before anything is opened; session.bitCount is then 0),
//   -2/-6/-10 from the sink's Open, -7 with parameter 0 (cancel at
//   CP_StartCapture) or the number of slots done (cancel at CP_Capture),
//   -10 from a failed write or window slide (the sink keeps the complete
//   records), -5 when the compressor reports more than its output buffer.
// The sink is closed and the source released on every path after opening.
int32_t RunRecordingLoop(RecordingSession& session, const RecordingRequest& request,
                         const RecordingPorts& ports);

// Size of the compressor's output buffer for frames of `frameBytes`: the
// established 1.5 x F, but never less than the encoder's proven worst case.
size_t CompressOutputBytes(int64_t frameBytes);

}  // namespace velmora
