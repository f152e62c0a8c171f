// AviLibrary: the application's way to write AVI files, over AVI5.DLL. Keeps the
// chosen compressor's settings record and its name, turns statuses into
// texts, and passes every library status back unchanged; it shows nothing.
// Text is UTF-8 here and ANSI at the library.
#pragma once
#include <array>
#include <cstdint>
#include <string>

#include "conversion/avi5/comp_vars.h"

namespace velmora {

class AviLibrary {
 public:
  using CompVars = std::array<uint8_t, avi::kCompVarsBytes>;

  AviLibrary() = default;

  // The library's text for a status.
  std::string GetError(int32_t rc) const;
  // Merges a wave file into a closed AVI; `callBack` goes to the library
  // unchanged (0, or a stdcall progress function of done and total).
  int32_t MergeWave(const std::string& aviFile, const std::string& waveFile, intptr_t callBack = 0);
  // Deletes an existing file of that name, then creates the AVI. The
  // settings used are the record at `compressorSettings` when given (the object's own
  // stay as they are), else the object's own.
  int32_t CreateAvi(const std::string& aviFile, int32_t frameCount, int32_t width, int32_t height,
                    int32_t bitCount, int32_t fps, const std::string& streamName,
                    const uint8_t* compressorSettings = nullptr);
  int32_t AddFrame(const uint8_t* bits);
  int32_t CloseAvi();
  // Shows the library's compressor chooser owned by `window`. On a choice the
  // settings and name are kept, and copied to `compressorSettings` when given; a cancel
  // changes nothing.
  void SelectCompressor(intptr_t window, uint8_t* compressorSettings = nullptr);
  int32_t CopySettings(uint8_t* settingsOut) const;

  bool CompressorChosen() const;
  std::string CompressorName() const;
  int32_t Quality() const;

 private:
  CompVars cv_{};
  std::string name_;
};

}  // namespace velmora
