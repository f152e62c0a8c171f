// Timed and decode-only playback of a .QRK movie, independent of the
// platform: the clock and the drawing surface are interfaces, so the due
// test, late frames, pacing and cancel are tested exactly with a fake clock.
#pragma once
#include <cstdint>
#include <memory>

#include "engine/byte_source.h"
#include "engine/clock.h"
#include "engine/movie_format.h"

namespace velmora {

// Where decoded frames go. The Windows one draws with GDI.
class PlaybackSurface {
 public:
  virtual ~PlaybackSurface() = default;
  // Once, after the header was accepted and before the clock starts.
  virtual void Begin(const MovieHeader& header, int64_t frameBytes) = 0;
  // Timed mode: shows one due frame (F bytes).
  virtual void Show(const uint8_t* frame) = 0;
  // Decode-only mode, Type0 movies: the frame in device-independent
  // bottom-up rows. Returns memory that stays valid until the next call.
  virtual uint8_t* ToDeviceIndependent(const uint8_t* frame) = 0;
  // Once on every return after Begin: releases what playback made and the
  // caller's target bitmap.
  virtual void End() = 0;
};

// The notifications of one playback run.
class PlaybackListener {
 public:
  virtual ~PlaybackListener() = default;
  virtual void FrameDecoded() {}
  // Decode-only mode: the frame (F bytes, device-independent rows).
  virtual void CP_Decode(uint8_t* /*data*/, int64_t /*bytes*/, int64_t /*frameIndex*/,
                         int64_t /*frameCount*/) {}
  virtual void CP_Drawing(int64_t /*frameIndex*/, int64_t /*frameCount*/, double /*frameMs*/,
                          bool& /*isCancel*/) {}
};

class Playback {
 public:
  explicit Playback(Clock& clock) : clock_(clock) {}

  // Plays a whole movie. Returns 0 (also after a cancel through CP_Drawing)
  // or the error number: -2 cannot open, -3 bad header, -4 missing or short
  // frame record, -5 bad payload, -8 8-bit movie that is not Type1.
  int32_t Play(std::unique_ptr<ByteSource> source, PlaybackSurface& surface,
               PlaybackListener& listener, bool decodeOnly);
  int32_t PlayFile(const std::string& utf8Path, PlaybackSurface& surface,
                   PlaybackListener& listener, bool decodeOnly);

  // Moves the playback clock's zero; may be called from a handler while
  // Play runs and affects the due test from the next frame on.
  void SetStartT(double startMs) { startMs_ = startMs; }

 private:
  Clock& clock_;
  double startMs_ = 0;
};

}  // namespace velmora
