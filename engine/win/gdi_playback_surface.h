// Playback's drawing surface on Windows: Type1/Type2 frames are drawn into the
// caller's device context as device-independent bits, Type0 frames are set
// as the bits of the caller's bitmap. Decode-only Type0 frames pass through a
// screen-compatible bitmap to come out as bottom-up device-independent rows.
#pragma once
#include <windows.h>

#include <vector>

#include "engine/playback.h"
#include "engine/win/handles.h"

namespace velmora::win {

class GdiPlaybackSurface final : public PlaybackSurface {
 public:
  // Takes ownership of `targetBitmap` in Begin, once the movie was accepted:
  // playback then deletes it when it ends, so the caller must not keep it
  // selected into a device context. A refused movie leaves it to the caller.
  GdiPlaybackSurface(HDC targetDc, HBITMAP targetBitmap, int32_t drawX, int32_t drawY);

  void Begin(const MovieHeader& header, int64_t frameBytes) override;
  void Show(const uint8_t* frame) override;
  uint8_t* ToDeviceIndependent(const uint8_t* frame) override;
  void End() override;

 private:
  // Movie rows carry no padding, device-independent rows are padded to 4
  // bytes: where the two differ, rows go through `padded_` so that GDI never
  // reads or writes past a frame.
  const uint8_t* PaddedRows(const uint8_t* frame);
  void UnpadRows(uint8_t* frame) const;

  struct DibInfo {
    BITMAPINFOHEADER header;
    RGBQUAD colours[256];
  };

  HDC targetDc_;
  HBITMAP offeredBitmap_;
  UniqueBitmap targetBitmap_;
  int32_t drawX_, drawY_;
  MovieHeader header_{};
  int64_t frameBytes_ = 0;
  DibInfo info_{};
  std::vector<uint8_t> converted_;
  std::vector<uint8_t> padded_;  // empty when movie rows are whole 4-byte units
  size_t rowBytes_ = 0;          // one movie row
  size_t stride_ = 0;            // one device-independent row
  bool drawable_ = false;        // a bit count GDI can take
  WindowDc screen_;
  UniqueMemoryDc memory_;
  UniqueBitmap compatible_;
  SelectGuard selection_;
};

}  // namespace velmora::win
