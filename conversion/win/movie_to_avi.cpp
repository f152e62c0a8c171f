#include "conversion/win/movie_to_avi.h"

#include <cmath>

#include "conversion/avi5/dib_format.h"
#include "engine/win/win_idioms.h"

namespace velmora::win {

namespace {
constexpr const char* kStreamName = "AVIFile";
}

void MovieToAvi::Note(int32_t status) {
  if (status != 0 && libraryStatus_ == 0) libraryStatus_ = status;
}

int32_t MovieToAvi::Convert(const std::string& qrkFile, const std::string& aviFile,
                            const uint8_t* compressorSettings, bool modifyAVI24bit) {
  Capture capture;
  capture.SetPlaybackListener(this);
  capture_ = &capture;
  aviLibrary_ = std::make_unique<AviLibrary>();
  cancel_ = false;
  framesAdded_ = 0;
  libraryStatus_ = 0;

  int32_t w = 0, h = 0, bitCount = 0, fps = 0, sec = 0;
  const int32_t rc = capture.GetQRXFileData(qrkFile, &w, &h, &bitCount, &fps, &sec);
  if (rc != 0) {
    capture_ = nullptr;
    aviLibrary_.reset();
    return rc;
  }
  path24_ = modifyAVI24bit && bitCount != 24;
  const int32_t frames = fps * sec;
  // Decoded frames have unpadded rows, the writer reads rows padded to 4
  // bytes: where the two differ, each frame is laid out again before it goes.
  width_ = w;
  height_ = h;
  bitCount_ = bitCount;
  dibFrame_.clear();
  if (!path24_ && avi::DibStride(w, bitCount) > 0 &&
      avi::DibStride(w, bitCount) != int64_t{w} * bitCount / 8)
    dibFrame_.assign(size_t(avi::DibInputFrameBytes(w, h, bitCount)), 0);

  // 24-bit path: playback draws into this context and bitmap; it takes the
  // bitmap and deletes it when it ends.
  UniqueMemoryDc memory;
  UniqueBitmap bitmap;
  SelectGuard selection;
  if (path24_) {
    WindowDc screen = WindowDc::Get(nullptr);
    memory.reset(CreateCompatibleDC(screen.get()));
    bitmap.reset(CreateCompatibleBitmap(screen.get(), w, h));
    emptyBitmap_ = GetCurrentObject(memory.get(), OBJ_BITMAP);
    selection = SelectGuard(memory.get(), bitmap.get());
    memoryDc_ = memory.get();
    bitmap_ = bitmap.get();
    header24_ = DibHeader(w, h, 24);
    frame24_.assign(size_t((3 * int64_t(w) + 3) / 4 * 4) * size_t(h), 0);
  }

  startMs_ = std::round(capture.NowMs());
  Note(aviLibrary_->CreateAvi(aviFile, frames, w, h, path24_ ? 24 : bitCount, fps, kStreamName,
                              compressorSettings));
  if (path24_) {
    capture.Play(qrkFile, memory.get(), bitmap.release(), 0, 0, false);
    // Playback could not delete a bitmap still selected here: put the
    // previous object back, then delete it if it is still there.
    selection.reset();
    if (GetObjectType(bitmap_) == OBJ_BITMAP) DeleteObject(bitmap_);
  } else {
    capture.Play(qrkFile, nullptr, nullptr, 0, 0, true);
  }
  Note(aviLibrary_->CloseAvi());
  aviLibrary_.reset();
  capture_ = nullptr;
  memoryDc_ = nullptr;
  bitmap_ = nullptr;
  return 0;
}

void MovieToAvi::Add(const uint8_t* bits, int64_t frameIndex, int64_t frameCount) {
  const int32_t st = aviLibrary_->AddFrame(bits);
  Note(st);
  if (st == 0) ++framesAdded_;
  if (listener_)
    listener_->Decoding(frameIndex, frameCount, int32_t(std::lround(capture_->NowMs() - startMs_)));
}

void MovieToAvi::CP_Decode(uint8_t* data, int64_t, int64_t frameIndex, int64_t frameCount) {
  if (cancel_) return;
  if (!dibFrame_.empty()) {
    avi::PadRows(data, width_, height_, bitCount_, dibFrame_.data());
    data = dibFrame_.data();
  }
  Add(data, frameIndex, frameCount);
}

void MovieToAvi::CP_Drawing(int64_t frameIndex, int64_t frameCount, double, bool& isCancel) {
  if (cancel_) {
    isCancel = true;
    return;
  }
  if (!path24_) return;
  // The bitmap leaves the context while its bits are read, and goes back
  // for the next frame to be drawn.
  {
    SelectGuard out(memoryDc_, emptyBitmap_);
    GetDIBits(memoryDc_, bitmap_, 0, UINT(height_), frame24_.data(),
              reinterpret_cast<BITMAPINFO*>(&header24_), DIB_RGB_COLORS);
  }
  Add(frame24_.data(), frameIndex, frameCount);
}

int32_t MovieToAvi::MergeWave(const std::string& waveFile, const std::string& aviFile,
                              intptr_t callBack) {
  AviLibrary library;
  libraryStatus_ = library.MergeWave(aviFile, waveFile, callBack);
  return 0;
}

}  // namespace velmora::win
