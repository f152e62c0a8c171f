// MovieReencoder: writes a movie again at another depth (and as Type1) by
// feeding a recording session in user-capture mode with the frames of a
// DepthConvertingReader, at the source's frame rate and length.
#pragma once
#include <cstdint>
#include <string>

#include "conversion/conversion_listener.h"
#include "conversion/win/depth_converting_reader.h"
#include "engine/win/capture.h"

namespace velmora::win {

class MovieReencoder final : private CaptureListener {
 public:
  explicit MovieReencoder(ConversionListener* listener = nullptr) : listener_(listener) {}

  // Re-encodes a movie into `targetFile` at `targetBits` bits (only Type1
  // is accepted for `targetType`: other types give -9). Returns 0 or a
  // packed code: the reader's (-2, -3, -8, -1 from its Init; -4, -5 for a
  // damaged record, which stops the session at the next frame slot), or the
  // session's (-7 after Cancel). An existing `targetFile` is replaced only
  // once the session starts writing; a failure after that deletes it, so no
  // half-written movie stays behind, and one before leaves it untouched.
  // `Decoding` is raised per frame.
  int32_t Reencode(const std::string& sourceFile, const std::string& targetFile, int32_t targetBits,
                   int32_t targetType);
  // Seen at the next frame slot; the session then ends with -7.
  void Cancel() { cancel_ = true; }

 private:
  void CP_UserCaptureSetBitmapInfo(int32_t& retBitCount) override;
  void CP_UserCaptureSetDATA(uint8_t* frame, int32_t frameBytes) override;
  void CP_Capture(int32_t, double, int32_t, bool, int32_t, int32_t, int32_t&, int32_t&,
                  bool& isCancel) override;

  ConversionListener* listener_;
  bool cancel_ = false;
  double startMs_ = 0;
  Capture* capture_ = nullptr;
  DepthConvertingReader* reader_ = nullptr;
  int32_t targetBits_ = 24;
  int64_t frameCount_ = 0;
  int64_t framesHandedOver_ = 0;
  std::string pendingTarget_;  // as the caller named it
  std::string target_;         // set once the session has taken it: this run wrote it
};

}  // namespace velmora::win
