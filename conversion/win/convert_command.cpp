#include "conversion/win/convert_command.h"

#include "conversion/avic.h"
#include "conversion/win/qrk_avi.h"

namespace velmora::win {

int32_t ConvertMovieToAvi(const std::string& qrkFile, const std::string& aviFile,
                          const std::string& waveFile, std::string& summary) {
  QRKAVI conversion;
  const int32_t rc = conversion.QRKtoAVI(qrkFile, aviFile, nullptr, false);
  if (rc != 0) {
    summary = qrkFile + ": " + Capture().GetErrorUtf8(rc);
    return rc;
  }
  AVIC texts;
  if (const int32_t st = conversion.LastLibraryStatus(); st != 0) {
    summary = aviFile + ": " + texts.GetError(st);
    return st;
  }
  summary = aviFile + ": " + std::to_string(conversion.FramesAdded()) + " frames";
  if (waveFile.empty()) return 0;
  conversion.WAVaddAVI(waveFile, aviFile);
  if (const int32_t st = conversion.LastLibraryStatus(); st != 0) {
    summary += ", " + waveFile + ": " + texts.GetError(st);
    return st;
  }
  summary += ", sound from " + waveFile;
  return 0;
}

}  // namespace velmora::win
