// The recording loop reaches the platform only through these interfaces, so
// pacing, drops, pauses and cancel run identically against a fake clock in
// tests and against the performance counter, GDI and the file system on
// Windows. Owner-side notification names follow the application's handlers.
#pragma once
#include <cstdint>
#include <string>

#include "engine/clock.h"

namespace velmora {

// What a grabber is set up for, once per recording.
struct GrabSetup {
  int32_t method = 1;  // 0 Type0, 1 Type1, 2 Type2
  int32_t width = 0;
  int32_t height = 0;
  int32_t bitCount = 0;
  int64_t frameBytes = 0;  // pixels (no row padding) + 1024 palette bytes at 8 bits
  bool drawMouse = false;
};

// One capture method (Type0/1/2). Implementations live in engine/win.
class FrameSource {
 public:
  virtual ~FrameSource() = default;
  // Creates the objects for one recording. Returns 0 or an error number.
  virtual int32_t SetUp(const GrabSetup& setup) = 0;
  // Grabs the region at (x, y) into `buffer` (frameBytes long) and returns
  // the memory that now holds the frame: `buffer` itself, or, for a source
  // that owns its pixel memory (Type2), that memory.
  virtual uint8_t* Grab(int32_t x, int32_t y, uint8_t* buffer) = 0;
  // True when Grab returns memory the source owns and that cannot move: the
  // loop must then copy the frame into its previous buffer instead of
  // swapping buffers.
  virtual bool OwnsFrameMemory() const = 0;
  virtual void Release() = 0;
};

// Where the movie's bytes go: ordinary writes, a pre-allocated mapped file,
// or memory (tests). Codes returned are packed result codes (0 = success).
class MovieSink {
 public:
  virtual ~MovieSink() = default;
  virtual int32_t Open(const std::string& utf8Path, int64_t frameBytes, int32_t fps,
                       int32_t sec) = 0;
  virtual int32_t WriteHeader(const uint8_t (&header)[32]) = 0;
  // Called at the start of every frame slot, before the drop test (the
  // mapped writer slides its window here).
  virtual int32_t BeginSlot() = 0;
  virtual int32_t WriteFrame(const uint8_t* payload, uint32_t payloadBytes) = 0;
  virtual int32_t WriteDropped(uint32_t unitsInFrame) = 0;
  virtual void Close() = 0;
};

// Notifications raised to the owner during Rec; by-reference arguments are
// the way back (cancel flags, the capture origin, the user-capture depth).
class CaptureListener {
 public:
  virtual ~CaptureListener() = default;
  virtual void CP_UserCaptureSetBitmapInfo(int32_t& /*retBitCount*/) {}
  virtual void CP_StartCapture(bool& /*isCancel*/) {}
  virtual void CP_UserCaptureSetDATA(uint8_t* /*frame*/, int32_t /*frameBytes*/) {}
  virtual void CP_Capture(int32_t /*nowFrame*/, double /*frameCaptureTime*/, int32_t /*dropCount*/,
                          bool /*isDrop*/, int32_t /*compressSize*/, int32_t /*noCompressSize*/,
                          int32_t& /*captureX*/, int32_t& /*captureY*/, bool& /*isCancel*/) {}
};

// The frame compressor as the loop calls it (QRX.dll's Compress, or the core's).
using CompressFn = int32_t (*)(uint8_t* out, const uint8_t* cur, const uint8_t* prev,
                               int32_t units);

}  // namespace velmora
