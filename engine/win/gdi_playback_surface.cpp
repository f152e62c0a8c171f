#include "engine/win/gdi_playback_surface.h"

#include <cstring>
#include <utility>

#include "engine/win/win_idioms.h"

namespace velmora::win {

GdiPlaybackSurface::GdiPlaybackSurface(HDC targetDc, HBITMAP targetBitmap, int32_t drawX,
                                       int32_t drawY)
    : targetDc_(targetDc), offeredBitmap_(targetBitmap), drawX_(drawX), drawY_(drawY) {}

void GdiPlaybackSurface::Begin(const MovieHeader& header, int64_t frameBytes) {
  targetBitmap_.reset(std::exchange(offeredBitmap_, nullptr));
  header_ = header;
  frameBytes_ = frameBytes;
  converted_.assign(static_cast<size_t>(frameBytes), 0);
  const int32_t bits = header.bitCount;
  drawable_ = bits == 8 || bits == 16 || bits == 24 || bits == 32;
  rowBytes_ = static_cast<size_t>(header.width) * static_cast<size_t>(bits) / 8;
  stride_ = (static_cast<size_t>(header.width) * static_cast<size_t>(bits) + 31) / 32 * 4;
  padded_.clear();
  if (drawable_ && stride_ != rowBytes_)
    padded_.assign(stride_ * static_cast<size_t>(header.height), 0);
  info_ = {};
  info_.header = DibHeader(header.width, header.height, header.bitCount);  // bottom row first
  screen_ = WindowDc::Get(nullptr);
  memory_.reset(CreateCompatibleDC(screen_.get()));
  compatible_.reset(CreateCompatibleBitmap(screen_.get(), header.width, header.height));
  selection_ = SelectGuard(memory_.get(), compatible_.get());
}

const uint8_t* GdiPlaybackSurface::PaddedRows(const uint8_t* frame) {
  if (padded_.empty()) return frame;
  for (size_t row = 0; row < static_cast<size_t>(header_.height); ++row)
    std::memcpy(padded_.data() + row * stride_, frame + row * rowBytes_, rowBytes_);
  return padded_.data();
}

void GdiPlaybackSurface::UnpadRows(uint8_t* frame) const {
  for (size_t row = 0; row < static_cast<size_t>(header_.height); ++row)
    std::memcpy(frame + row * rowBytes_, padded_.data() + row * stride_, rowBytes_);
}

void GdiPlaybackSurface::Show(const uint8_t* frame) {
  const auto* info = reinterpret_cast<const BITMAPINFO*>(&info_);
  const int w = header_.width, h = header_.height;
  if (header_.method == 0) {
    SetBitmapBits(targetBitmap_.get(), static_cast<DWORD>(frameBytes_), frame);
    return;
  }
  if (!drawable_) return;
  if (header_.method == 1 && header_.bitCount == 8) {
    std::memcpy(info_.colours, frame + frameBytes_ - sizeof info_.colours, sizeof info_.colours);
  }
  const int x = header_.method == 1 ? 0 : drawX_, y = header_.method == 1 ? 0 : drawY_;
  SetDIBitsToDevice(targetDc_, x, y, w, h, 0, 0, 0, h, PaddedRows(frame), info, DIB_RGB_COLORS);
}

uint8_t* GdiPlaybackSurface::ToDeviceIndependent(const uint8_t* frame) {
  // GetDIBits wants the bitmap out of any device context while it reads.
  if (!drawable_) return converted_.data();
  selection_.reset();
  SetBitmapBits(compatible_.get(), static_cast<DWORD>(frameBytes_), frame);
  uint8_t* rows = padded_.empty() ? converted_.data() : padded_.data();
  GetDIBits(memory_.get(), compatible_.get(), 0, static_cast<UINT>(header_.height), rows,
            reinterpret_cast<BITMAPINFO*>(&info_), DIB_RGB_COLORS);
  selection_ = SelectGuard(memory_.get(), compatible_.get());
  if (!padded_.empty()) UnpadRows(converted_.data());
  return converted_.data();
}

void GdiPlaybackSurface::End() {
  selection_.reset();
  compatible_.reset();
  memory_.reset();
  screen_.reset();
  // The caller's target bitmap ends with playback.
  targetBitmap_.reset();
}

}  // namespace velmora::win
