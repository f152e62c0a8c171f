#include "engine/win/gdi_playback_surface.h"

#include <cstring>

namespace velmora::win {

GdiPlaybackSurface::GdiPlaybackSurface(HDC targetDc, HBITMAP targetBitmap, int32_t drawX,
                                       int32_t drawY)
    : targetDc_(targetDc), targetBitmap_(targetBitmap), drawX_(drawX), drawY_(drawY) {}

void GdiPlaybackSurface::Begin(const MovieHeader& header, int64_t frameBytes) {
  header_ = header;
  frameBytes_ = frameBytes;
  converted_.assign(static_cast<size_t>(frameBytes), 0);
  info_ = {};
  info_.header.biSize = sizeof(BITMAPINFOHEADER);
  info_.header.biWidth = header.width;
  info_.header.biHeight = header.height;  // bottom row first
  info_.header.biPlanes = 1;
  info_.header.biBitCount = static_cast<WORD>(header.bitCount);
  info_.header.biCompression = BI_RGB;
  screen_ = WindowDc::Get(nullptr);
  memory_.reset(CreateCompatibleDC(screen_.get()));
  compatible_.reset(CreateCompatibleBitmap(screen_.get(), header.width, header.height));
  selection_ = SelectGuard(memory_.get(), compatible_.get());
}

void GdiPlaybackSurface::Show(const uint8_t* frame) {
  const auto* info = reinterpret_cast<const BITMAPINFO*>(&info_);
  const int w = header_.width, h = header_.height;
  switch (header_.method) {
    case 0:
      SetBitmapBits(targetBitmap_.get(), static_cast<DWORD>(frameBytes_), frame);
      break;
    case 1:
      if (header_.bitCount == 8) {
        std::memcpy(info_.colours, frame + frameBytes_ - sizeof info_.colours, sizeof info_.colours);
      }
      SetDIBitsToDevice(targetDc_, 0, 0, w, h, 0, 0, 0, h, frame, info, DIB_RGB_COLORS);
      break;
    default:
      SetDIBitsToDevice(targetDc_, drawX_, drawY_, w, h, 0, 0, 0, h, frame, info, DIB_RGB_COLORS);
      break;
  }
}

uint8_t* GdiPlaybackSurface::ToDeviceIndependent(const uint8_t* frame) {
  // GetDIBits wants the bitmap out of any device context while it reads.
  selection_.reset();
  SetBitmapBits(compatible_.get(), static_cast<DWORD>(frameBytes_), frame);
  GetDIBits(memory_.get(), compatible_.get(), 0, static_cast<UINT>(header_.height),
            converted_.data(), reinterpret_cast<BITMAPINFO*>(&info_), DIB_RGB_COLORS);
  selection_ = SelectGuard(memory_.get(), compatible_.get());
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
