#include "conversion/win/convert_command.h"

#include "conversion/win/avi_library.h"
#include "conversion/win/movie_reencoder.h"
#include "conversion/win/movie_to_avi.h"
#include "engine/movie_header_file.h"
#include "engine/win/application_folder.h"
#include "engine/win/system_error_text.h"
#include "engine/win/text_encoding.h"

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
  MovieHeader header{};
  if (to24 && QueryMovieHeader(ResolveInApplicationFolder(qrkFile), &header) == 0 &&
      header.bitCount != 24) {
    if (CanReencode(header.width, header.height, 24)) {
      const int32_t rc = MovieReencoder().Reencode(qrkFile, aviFile + ".qrk24", 24, 1);
      if (rc != 0) {
        summary = qrkFile + ": " + ResultText(rc);
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
    summary = qrkFile + ": " + ResultText(rc);
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
