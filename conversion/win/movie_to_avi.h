// MovieToAvi: turns a finished movie into an AVI through AviLibrary, and merges a
// wave file into it as a separate step. The direct path stores frames at
// the movie's own depth as fast as they decode; the 24-bit path (for a
// movie not already at 24 bits, when asked) plays the movie at its own
// speed into a screen-compatible bitmap and reads each drawn frame back as
// 24-bit rows, so a late frame is written again as the last one drawn.
#pragma once
#include <windows.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "conversion/win/avi_library.h"
#include "conversion/win/depth_converting_reader.h"
#include "engine/playback.h"
#include "engine/win/capture.h"
#include "engine/win/handles.h"

namespace velmora::win {

class ConversionListener {
 public:
  virtual ~ConversionListener() = default;
  // After each frame has been added: its index, the movie's frame count, and
  // whole milliseconds since the conversion started.
  virtual void Decoding(int64_t frameIndex, int64_t frameCount, int32_t ms) = 0;
};

class MovieToAvi final : private PlaybackListener, private CaptureListener {
 public:
  explicit MovieToAvi(ConversionListener* listener = nullptr) : listener_(listener) {}

  // Returns 0, or the header query's code (then no AVI is made). Later
  // failures are not reported; the AVI is left as the library left it.
  int32_t Convert(const std::string& qrkFile, const std::string& aviFile, const uint8_t* compressorSettings,
                   bool modifyAVI24bit);
  // Seen at the next drawing notification; no frame is added after it.
  void Cancel() { cancel_ = true; }
  // Re-encodes a movie into `targetFile` at `targetBits` bits through a recording
  // session in user-capture mode (only Type1 is accepted there: other types
  // give -9), at the movie's frame rate and length. Returns 0 or a packed
  // code: the reader's (-2, -3, -8, -1 from DepthConvertingReader::Init; -4, -5 for a
  // damaged record, which stops the session at the next frame slot), or the
  // session's (-7 after Cancel). An existing `targetFile` is replaced only
  // once the session starts writing; a failure after that deletes it, so no
  // half-written movie stays behind, and one before leaves it untouched.
  // `Decoding` is raised per frame.
  int32_t Reencode(const std::string& sourceFile, const std::string& targetFile, int32_t targetBits,
                   int32_t targetType);
  // Always 0: a failed merge leaves the AVI without sound and says nothing.
  int32_t MergeWave(const std::string& waveFile, const std::string& aviFile, intptr_t callBack = 0);

  // Statuses of the last conversion, for callers that want to know more
  // than the contract tells (the command line): frames added, first failure.
  int64_t FramesAdded() const { return framesAdded_; }
  int32_t LastLibraryStatus() const { return libraryStatus_; }

 private:
  void CP_Decode(uint8_t* data, int64_t bytes, int64_t frameIndex, int64_t frameCount) override;
  void CP_Drawing(int64_t frameIndex, int64_t frameCount, double frameMs, bool& isCancel) override;
  void CP_UserCaptureSetBitmapInfo(int32_t& retBitCount) override;
  void CP_UserCaptureSetDATA(uint8_t* frame, int32_t frameBytes) override;
  void CP_Capture(int32_t, double, int32_t, bool, int32_t, int32_t, int32_t&, int32_t&,
                  bool& isCancel) override;
  void Add(const uint8_t* bits, int64_t frameIndex, int64_t frameCount);
  void DeleteTarget() const;
  void Note(int32_t status);

  ConversionListener* listener_;
  std::unique_ptr<AviLibrary> aviLibrary_;
  bool cancel_ = false;
  bool path24_ = false;
  double startMs_ = 0;
  double clockNow_ = 0;
  Capture* capture_ = nullptr;
  int64_t framesAdded_ = 0;
  int32_t libraryStatus_ = 0;
  // Re-encoding: the reader, the depth it delivers, the frames handed over.
  velmora::win::DepthConvertingReader* reader_ = nullptr;
  int32_t targetBits_ = 24;
  int64_t reencodeFrames_ = 0;
  int64_t reencoded_ = 0;
  std::string pendingTarget_;  // as the caller named it
  std::string target_;         // set once the session has taken it: this run wrote it
  int32_t width_ = 0, height_ = 0, bitCount_ = 0;
  // Direct path: a frame with padded rows (empty when rows need no padding).
  std::vector<uint8_t> dibFrame_;
  // 24-bit path: the frame drawn by playback and its 24-bit read-back.
  HDC memoryDc_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ emptyBitmap_ = nullptr;  // what a new memory context holds
  BITMAPINFOHEADER header24_{};
  std::vector<uint8_t> frame24_;
};

}  // namespace velmora::win
