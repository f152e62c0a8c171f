#include "conversion/avi5/win/compressor_chooser.h"

#include <vfw.h>

#include <cstring>

#include "conversion/avi5/win/vfw_compressor.h"
#include "engine/byte_order.h"
#include "engine/win/text_encoding.h"

namespace velmora::win {

namespace {
// Releases what the chooser allocated in a record (its open compressor and
// format buffers) however the function is left.
class ChosenRecord {
 public:
  ChosenRecord() { cv_.cbSize = sizeof cv_; }
  ChosenRecord(const ChosenRecord&) = delete;
  ChosenRecord& operator=(const ChosenRecord&) = delete;
  ~ChosenRecord() { ICCompressorFree(&cv_); }
  COMPVARS& get() { return cv_; }

 private:
  COMPVARS cv_{};
};

// Drops the handles and buffers a record points to, keeping the choice itself.
void ForgetHandles(COMPVARS& cv) {
  cv.dwFlags = 0;
  cv.hic = nullptr;
  cv.lpbiIn = cv.lpbiOut = nullptr;
  cv.lpBitsOut = cv.lpBitsPrev = cv.lpState = nullptr;
  cv.cbState = 0;
}
}  // namespace

bool ChooseCompressor(HWND owner, void* compVars, std::string& ansiName) {
  ChosenRecord chosen;
  COMPVARS& cv = chosen.get();
  std::memcpy(&cv, compVars, sizeof cv);
  // Handles in the caller's record are stale copies; the chooser must not
  // close or reuse them.
  cv.cbSize = sizeof cv;
  ForgetHandles(cv);
  // Without a display the chooser answers -1, which is no choice either.
  if (ICCompressorChoose(owner, ICMF_CHOOSE_KEYFRAME | ICMF_CHOOSE_DATARATE, nullptr, nullptr, &cv,
                         nullptr) != TRUE)
    return false;

  if (IsUncompressedHandler(cv.fccHandler)) {
    ansiName = Utf8ToAnsi("未圧縮");
  } else {
    ICINFO info{};
    info.dwSize = sizeof info;
    if (cv.hic && ICGetInfo(cv.hic, &info, sizeof info)) ansiName = WideToAnsi(info.szDescription);
    if (ansiName.empty()) {
      uint8_t fcc[5] = {};  // the code's four characters, up to a NUL among them
      StoreLE32(fcc, static_cast<int32_t>(cv.fccHandler));
      ansiName = reinterpret_cast<const char*>(fcc);
    }
  }
  // The caller keeps a plain copy; the chooser's own handles are freed with `chosen`.
  COMPVARS plain = cv;
  ForgetHandles(plain);
  std::memcpy(compVars, &plain, sizeof plain);
  return true;
}

}  // namespace velmora::win
