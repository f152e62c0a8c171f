#include "conversion/avi5/win/vfw_compressor.h"

#include <cstddef>

#include "conversion/avi5/comp_vars.h"

namespace velmora::win {

// The portable code reads the record by these offsets.
static_assert(sizeof(COMPVARS) == avi::kCompVarsBytes);
static_assert(offsetof(COMPVARS, fccHandler) == avi::kCompVarsHandlerOffset);
static_assert(offsetof(COMPVARS, lKey) == avi::kCompVarsKeyOffset);
static_assert(offsetof(COMPVARS, lQ) == avi::kCompVarsQualityOffset);

bool IsUncompressedHandler(DWORD fccHandler) {
  // The chooser names full frames 'DIB ' (any case).
  return fccHandler == 0 ||
         (fccHandler | 0x20202020u) == (mmioFOURCC('D', 'I', 'B', ' ') | 0x20202020u);
}

std::unique_ptr<VfwCompressor> VfwCompressor::FromCompVars(const COMPVARS& chosen) {
  if (IsUncompressedHandler(chosen.fccHandler)) return nullptr;
  return std::unique_ptr<VfwCompressor>(
      new VfwCompressor(chosen.fccHandler, chosen.lKey, chosen.lQ, chosen.lDataRate));
}

VfwCompressor::VfwCompressor(DWORD handler, LONG key, LONG quality, LONG dataRate)
    : handler_(handler), key_(key), dataRate_(dataRate), quality_(quality) {}

VfwCompressor::~VfwCompressor() { End(); }

avi::AviStatus VfwCompressor::Start(std::span<const uint8_t> inputFormat, int32_t fps,
                                    std::vector<uint8_t>& outputFormat, uint32_t& handler) {
  (void)fps;
  cv_ = COMPVARS{};
  cv_.cbSize = sizeof(COMPVARS);
  cv_.dwFlags = ICMF_COMPVARS_VALID;
  cv_.fccType = ICTYPE_VIDEO;
  cv_.fccHandler = handler_;
  cv_.lKey = key_;
  cv_.lQ = quality_;
  cv_.lDataRate = dataRate_;
  // The record we were given may hold a compressor handle from another
  // call; open our own so its lifetime is ours.
  cv_.hic = ICOpen(ICTYPE_VIDEO, handler_, ICMODE_COMPRESS);
  if (!cv_.hic) return avi::kAviCompressorMissing;
  open_ = true;
  input_.assign(inputFormat.begin(), inputFormat.end());
  auto* in = reinterpret_cast<BITMAPINFO*>(input_.data());
  const LRESULT formatBytes = ICCompressGetFormatSize(cv_.hic, in);
  if (formatBytes < LRESULT(sizeof(BITMAPINFOHEADER)) || !ICSeqCompressFrameStart(&cv_, in)) {
    End();
    return avi::kAviCompressorMissing;
  }
  started_ = true;
  const auto* out = reinterpret_cast<const uint8_t*>(cv_.lpbiOut);
  if (!out) {
    End();
    return avi::kAviCompressorMissing;
  }
  outputFormat.assign(out, out + formatBytes);
  handler = handler_;
  return avi::kAviOk;
}

avi::AviStatus VfwCompressor::Compress(const uint8_t* pixels, std::span<const uint8_t>& out,
                                       bool& keyFrame) {
  if (!started_) return avi::kAviNotOpen;
  BOOL key = FALSE;
  LONG size = 0;  // no size target per frame
  const void* data = ICSeqCompressFrame(&cv_, 0, const_cast<uint8_t*>(pixels), &key, &size);
  if (!data || size < 0) return avi::kAviCompressFailed;
  out = {static_cast<const uint8_t*>(data), size_t(size)};
  keyFrame = key != FALSE;
  return avi::kAviOk;
}

void VfwCompressor::End() {
  if (started_) ICSeqCompressFrameEnd(&cv_);
  started_ = false;
  if (open_) ICCompressorFree(&cv_);  // closes the handle we opened
  open_ = false;
}

}  // namespace velmora::win
