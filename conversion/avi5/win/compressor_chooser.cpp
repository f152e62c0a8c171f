#include "conversion/avi5/win/compressor_chooser.h"

#include <vfw.h>

#include <cstring>

#include "engine/win/text_encoding.h"
#include "conversion/avi5/win/vfw_compressor.h"

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
}  // namespace

bool ChooseCompressor(HWND owner, void* compVars, std::string& ansiName) {
  ChosenRecord chosen;
  COMPVARS& cv = chosen.get();
  std::memcpy(&cv, compVars, sizeof cv);
  // Handles in the caller's record are stale copies; the chooser must not
  // close or reuse them.
  cv.cbSize = sizeof cv;
  cv.dwFlags = 0;
  cv.hic = nullptr;
  cv.lpbiIn = cv.lpbiOut = nullptr;
  cv.lpBitsOut = cv.lpBitsPrev = cv.lpState = nullptr;
  cv.cbState = 0;
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
      const char fcc[5] = {char(cv.fccHandler), char(cv.fccHandler >> 8), char(cv.fccHandler >> 16),
                           char(cv.fccHandler >> 24), 0};
      ansiName = fcc;
    }
  }
  COMPVARS plain = cv;
  plain.dwFlags = 0;
  plain.hic = nullptr;
  plain.lpbiIn = plain.lpbiOut = nullptr;
  plain.lpBitsOut = plain.lpBitsPrev = plain.lpState = nullptr;
  plain.cbState = 0;
  std::memcpy(compVars, &plain, sizeof plain);
  return true;
}

}  // namespace velmora::win
