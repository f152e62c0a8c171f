#include "conversion/win/convert_command.h"

#include "conversion/win/avi_library.h"
#include "conversion/win/movie_to_avi.h"
#include "engine/win/system_message.h"

namespace velmora::win {
namespace {

// The re-encoded movie lives only as long as the conversion.
struct TemporaryMovie {
  std::string path;
  ~TemporaryMovie() {
    if (!path.empty()) DeleteFileW(Widen(path).c_str());
  }
};

}  // namespace

int32_t ConvertMovieToAvi(const std::string& qrkFile, const std::string& aviFile,
                          const std::string& waveFile, std::string& summary, bool to24) {
  MovieToAvi conversion;
  TemporaryMovie reencoded;
  bool drawAt24 = false;
  int32_t w = 0, h = 0, bitCount = 0;
  if (to24 && Capture().GetQRXFileData(qrkFile, &w, &h, &bitCount) == 0 && bitCount != 24) {
    if (CanReencode(w, h, 24)) {
      const int32_t rc = conversion.Reencode(qrkFile, aviFile + ".qrk24", 24, 1);
      if (rc != 0) {
        summary = qrkFile + ": " + Capture().GetErrorUtf8(rc);
        return rc;
      }
      reencoded.path = aviFile + ".qrk24";
    } else {
      drawAt24 = true;
    }
  }
  const std::string& source = reencoded.path.empty() ? qrkFile : reencoded.path;
  const int32_t rc = conversion.Convert(source, aviFile, nullptr, drawAt24);
  if (rc != 0) {
    summary = qrkFile + ": " + Capture().GetErrorUtf8(rc);
    return rc;
  }
  AviLibrary texts;
  if (const int32_t st = conversion.LastLibraryStatus(); st != 0) {
    summary = aviFile + ": " + texts.GetError(st);
    return st;
  }
  summary = aviFile + ": " + std::to_string(conversion.FramesAdded()) + " frames";
  if (waveFile.empty()) return 0;
  conversion.MergeWave(waveFile, aviFile);
  if (const int32_t st = conversion.LastLibraryStatus(); st != 0) {
    summary += ", " + waveFile + ": " + texts.GetError(st);
    return st;
  }
  summary += ", sound from " + waveFile;
  return 0;
}

}  // namespace velmora::win
