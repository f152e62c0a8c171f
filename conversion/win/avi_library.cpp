#include "conversion/win/avi_library.h"

#include <cstring>
#include <filesystem>

#include "conversion/avi5/avi5_api.h"
#include "engine/file_idioms.h"
#include "engine/win/text_encoding.h"

namespace velmora {

namespace {
constexpr size_t kTextBuffer = 260;

std::string CutAtNul(const char* buffer) {
  return std::string(buffer, strnlen(buffer, kTextBuffer));
}

// A read-only file is made writable first; a failure is left for the
// library to report when it cannot create the file.
void DeleteExisting(const std::string& utf8) {
  const std::filesystem::path p = PathFromUtf8(utf8);
  std::error_code ec;
  if (!std::filesystem::is_regular_file(p, ec)) return;
  std::filesystem::permissions(p, std::filesystem::perms::owner_write,
                               std::filesystem::perm_options::add, ec);
  std::filesystem::remove(p, ec);
}
}  // namespace

std::string AviLibrary::GetError(int32_t rc) const {
  char text[kTextBuffer] = {};
  AVIGetError(rc, text);
  return win::AnsiToUtf8(CutAtNul(text).c_str());
}

int32_t AviLibrary::MergeWave(const std::string& aviFile, const std::string& waveFile,
                              intptr_t callBack) {
  return AVIAddWaveToAVI(win::Utf8ToAnsi(aviFile).c_str(), win::Utf8ToAnsi(waveFile).c_str(),
                         callBack);
}

int32_t AviLibrary::CreateAvi(const std::string& aviFile, int32_t frameCount, int32_t width,
                              int32_t height, int32_t bitCount, int32_t fps,
                              const std::string& streamName, const uint8_t* compressorSettings) {
  DeleteExisting(aviFile);
  CompVars settings = cv_;
  if (compressorSettings) std::memcpy(settings.data(), compressorSettings, settings.size());
  return AVICreateInit(win::Utf8ToAnsi(aviFile).c_str(), settings.data(), width, height, bitCount,
                       fps, frameCount, win::Utf8ToAnsi(streamName).c_str());
}

int32_t AviLibrary::AddFrame(const uint8_t* bits) { return AVICreateAddBitmap(bits); }

int32_t AviLibrary::CloseAvi() { return AVICreateClose(); }

void AviLibrary::SelectCompressor(intptr_t window, uint8_t* compressorSettings) {
  char name[kTextBuffer] = {};
  CompVars chosen = cv_;
  if (GetAVICompressor(window, chosen.data(), name) == 0) return;
  cv_ = chosen;
  name_ = win::AnsiToUtf8(CutAtNul(name).c_str());
  if (compressorSettings) std::memcpy(compressorSettings, cv_.data(), cv_.size());
}

int32_t AviLibrary::CopySettings(uint8_t* settingsOut) const {
  if (settingsOut) std::memcpy(settingsOut, cv_.data(), cv_.size());
  return 0;
}

bool AviLibrary::CompressorChosen() const {
  return avi::CompVarsField(cv_.data(), avi::kCompVarsHandlerOffset) != 0;
}

std::string AviLibrary::CompressorName() const { return CompressorChosen() ? name_ : "未圧縮"; }

int32_t AviLibrary::Quality() const {
  return CompressorChosen() ? avi::CompVarsField(cv_.data(), avi::kCompVarsQualityOffset) : 0;
}

}  // namespace velmora
