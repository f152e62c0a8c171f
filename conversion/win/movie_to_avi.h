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

#include "conversion/conversion_listener.h"
#include "conversion/win/avi_library.h"
#include "engine/playback.h"
#include "engine/win/capture.h"
#include "engine/win/handles.h"

namespace velmora::win {

class MovieToAvi final : private PlaybackListener {
 public:
  explicit MovieToAvi(ConversionListener* listener = nullptr) : listener_(listener) {}

  // Returns 0, or the header query's code (then no AVI is made). Later
  // failures are not reported; the AVI is left as the library left it.
  int32_t Convert(const std::string& qrkFile, const std::string& aviFile,
                  const uint8_t* compressorSettings, bool modifyAVI24bit);
  // Seen at the next drawing notification; no frame is added after it.
  void Cancel() { cancel_ = true; }
  // Always 0: a failed merge leaves the AVI without sound and says nothing.
  int32_t MergeWave(const std::string& waveFile, const std::string& aviFile, intptr_t callBack = 0);

  // Statuses of the last conversion, for callers that want to know more
  // than the contract tells (the command line): frames added, first failure.
  int64_t FramesAdded() const { return framesAdded_; }
  int32_t LastLibraryStatus() const { return libraryStatus_; }

 private:
  void CP_Decode(uint8_t* data, int64_t bytes, int64_t frameIndex, int64_t frameCount) override;
  void CP_Drawing(int64_t frameIndex, int64_t frameCount, double frameMs, bool& isCancel) override;
  void Add(const uint8_t* bits, int64_t frameIndex, int64_t frameCount);
  void Note(int32_t status);

  ConversionListener* listener_;
  std::unique_ptr<AviLibrary> aviLibrary_;
  bool cancel_ = false;
  bool path24_ = false;
  double startMs_ = 0;
  Capture* capture_ = nullptr;
  int64_t framesAdded_ = 0;
  int32_t libraryStatus_ = 0;
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
