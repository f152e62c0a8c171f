// AVIC: the application's way to write AVI files, over AVI5.DLL. Keeps the
// chosen compressor's settings record and its name, turns statuses into
// texts, and passes every library status back unchanged; it shows nothing.
// Text is UTF-8 here and ANSI at the library.
#pragma once
#include <array>
#include <cstdint>
#include <string>

#include "conversion/avi5/comp_vars.h"

namespace velmora {

class AVIC {
 public:
  using CompVars = std::array<uint8_t, avi::kCompVarsBytes>;

  AVIC() = default;

  // The library's text for a status.
  std::string GetError(int32_t rc) const;
  // Merges a wave file into a closed AVI; `callBack` goes to the library
  // unchanged (0, or a stdcall progress function of done and total).
  int32_t AVIAddWave(const std::string& aviFnm, const std::string& waveFnm, intptr_t callBack = 0);
  // Deletes an existing file of that name, then creates the AVI. The
  // settings used are the record at `ptr_cv` when given (the object's own
  // stay as they are), else the object's own.
  int32_t AVIMakeInit(const std::string& aviFnm, int32_t frameCount, int32_t width, int32_t height,
                      int32_t bitCount, int32_t fps, const std::string& streamName,
                      const uint8_t* ptr_cv = nullptr);
  int32_t AVIMakeAddBMP(const uint8_t* bits);
  int32_t AVIMakeClose();
  // Shows the library's compressor chooser owned by `window`. On a choice the
  // settings and name are kept, and copied to `ptr_cv` when given; a cancel
  // changes nothing.
  void AVISelectCompressor(intptr_t window, uint8_t* ptr_cv = nullptr);
  int32_t AVIGetcv(uint8_t* retptr_cv) const;

  bool CompressorChosen() const;
  std::string CVName() const;
  int32_t CVQuality() const;
  int32_t CVKeyFrame() const;

 private:
  CompVars cv_{};
  std::string name_;
};

}  // namespace velmora
