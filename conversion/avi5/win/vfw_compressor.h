// A Video for Windows compressor driven through the ICSeqCompressFrame
// family, behind the core's FrameCompressor seam. Owns the compressor it
// opens and the sequence it starts; both end with the object.
#pragma once
#include <windows.h>
#include <vfw.h>

#include <memory>

#include "conversion/avi5/frame_compressor.h"

namespace velmora::win {

class VfwCompressor final : public avi::FrameCompressor {
 public:
  // From a chooser's record: null when it names no compressor (all zero,
  // or the chooser's full-frames entry), that is, uncompressed.
  static std::unique_ptr<VfwCompressor> FromCompVars(const COMPVARS& chosen);
  ~VfwCompressor() override;
  VfwCompressor(const VfwCompressor&) = delete;
  VfwCompressor& operator=(const VfwCompressor&) = delete;

  avi::AviStatus Start(std::span<const uint8_t> inputFormat, int32_t fps,
                       std::vector<uint8_t>& outputFormat, uint32_t& handler) override;
  avi::AviStatus Compress(const uint8_t* pixels, std::span<const uint8_t>& out,
                          bool& keyFrame) override;
  void End() override;
  int32_t Quality() const override { return quality_; }

 private:
  VfwCompressor(DWORD handler, LONG key, LONG quality, LONG dataRate);
  DWORD handler_;
  LONG key_, dataRate_;
  int32_t quality_;
  COMPVARS cv_{};
  std::vector<uint8_t> input_;
  bool open_ = false, started_ = false;
};

// The full-frames (uncompressed) choice of the chooser, or no choice at all.
bool IsUncompressedHandler(DWORD fccHandler);

}  // namespace velmora::win
