// The seam between the AVI writer and a platform's video compressors, so the
// compressed path is driven by the same session code natively (with a test
// compressor) and on Windows (through the Video for Windows compressors).
#pragma once
#include <cstdint>
#include <span>
#include <vector>

#include "conversion/avi5/avi_status.h"

namespace velmora::avi {

class FrameCompressor {
 public:
  virtual ~FrameCompressor() = default;
  // Prepares a sequence for input frames of `inputFormat` (BITMAPINFOHEADER
  // plus colour table) at `fps`; fills the output format that becomes the
  // stream's 'strf' and the compressor's code for 'strh'.
  virtual AviStatus Start(std::span<const uint8_t> inputFormat, int32_t fps,
                          std::vector<uint8_t>& outputFormat, uint32_t& handler) = 0;
  // Compresses one frame of pixels; `out` stays valid until the next call.
  virtual AviStatus Compress(const uint8_t* pixels, std::span<const uint8_t>& out,
                             bool& keyFrame) = 0;
  virtual void End() = 0;
  virtual int32_t Quality() const { return -1; }
};

}  // namespace velmora::avi
