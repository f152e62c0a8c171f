#include "conversion/win/movie_reencoder.h"

#include <cmath>

#include "engine/result_codes.h"
#include "engine/win/application_folder.h"
#include "engine/win/win_idioms.h"

namespace velmora::win {

int32_t MovieReencoder::Reencode(const std::string& sourceFile, const std::string& targetFile,
                                 int32_t targetBits, int32_t targetType) {
  Capture capture(this);
  capture_ = &capture;
  int32_t w = 0, h = 0, bitCount = 0, fps = 0, sec = 0, method = 0;
  // A bad source is the reader's to report.
  capture.GetQRXFileData(sourceFile, &w, &h, &bitCount, &fps, &sec, &method);
  capture.Init(0, 0, w, h);
  capture.Init_Capture(fps, sec, targetType, 0, 1, 1, false);

  DepthConvertingReader reader;
  // Reader errors are plain numbers; they leave here packed like the session's.
  int32_t status = MakeResultCode(reader.Init(sourceFile, targetBits));
  if (status == 0) {
    pendingTarget_ = targetFile;
    reader_ = &reader;
    targetBits_ = targetBits;
    frameCount_ = int64_t{fps} * sec;
    framesHandedOver_ = 0;
    cancel_ = false;
    startMs_ = std::round(capture.NowMs());
    int32_t firstCaptureTime = 0;
    const int32_t rc = capture.Rec(targetFile, 0, true, &firstCaptureTime, 0, false);
    status = reader.Status() != 0 ? MakeResultCode(reader.Status()) : rc;
    reader_ = nullptr;
  }
  reader.Close();
  capture_ = nullptr;
  // A failure before the session took the target (a bad source, -9) leaves
  // whatever file was there; a half-written movie of this run goes.
  if (status != 0 && !target_.empty()) ForceDelete(target_);
  target_.clear();
  return status;
}

void MovieReencoder::CP_UserCaptureSetBitmapInfo(int32_t& retBitCount) {
  retBitCount = targetBits_;
  // The session asks once it has accepted the request, just before it
  // creates the target: an older file is replaced from here on, not
  // overwritten in place.
  target_ = ResolveInApplicationFolder(pendingTarget_);
  ForceDelete(target_);
}

void MovieReencoder::CP_UserCaptureSetDATA(uint8_t* frame, int32_t frameBytes) {
  if (reader_ == nullptr || reader_->Status() != 0) return;
  bool last = false;
  if (reader_->ReadNextFrame(frame, frameBytes, last) != 0) return;
  if (listener_)
    listener_->Decoding(framesHandedOver_, frameCount_,
                        int32_t(std::lround(capture_->NowMs() - startMs_)));
  ++framesHandedOver_;
}

void MovieReencoder::CP_Capture(int32_t, double, int32_t, bool, int32_t, int32_t, int32_t&,
                                int32_t&, bool& isCancel) {
  if (cancel_ || (reader_ != nullptr && reader_->Status() != 0)) isCancel = true;
}

}  // namespace velmora::win
