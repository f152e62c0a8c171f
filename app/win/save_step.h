// What happens to a finished recording: the optional re-encoding to 24-bit
// Type1, the AVI conversion with the sound merged, both shown in the
// progress window, and the deletions of the save mode. The start button and
// the command line run it after the recording run; its questions go to an
// Asker (the command line's answers with the default buttons).
#pragma once
#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>

#include "ui/win/asker.h"

namespace velmora::win {

struct SaveJob {
  std::string movieFile;    // UTF-8; a relative path lies in the application folder
  std::string aviFile;      // empty: movie only
  std::string waveFile;     // empty: no sound
  bool keepMovie = true;    // false: AVI only, the movie goes once the AVI is made
  bool avi24 = false;       // "24bitでAVIを保存する"
  bool deleteWave = false;  // "Wavの削除"
  const uint8_t* compressorSettings = nullptr;  // compressor settings; null = uncompressed
  std::string tempFile = "temp.temp";           // target of the re-encoding
};

struct SaveOutcome {
  int32_t result = 0;      // the run's code, replaced by the re-encoding's when one ran
  bool reencoded = false;  // the movie is now 24-bit Type1
  bool aviMade = false;    // a conversion ran to its end (not cancelled)
  bool movieDeleted = false;
  bool waveDeleted = false;
  // Where the progress window stood when it closed (the user may move it):
  // the caller remembers it for the next conversion. None when none showed.
  std::optional<POINT> progressPosition;
};

// `runResult`: the recording run's code (a failed recording makes no AVI
// unless a re-encoding succeeds). `position`: the progress window's corner
// (none: centred on the work area).
SaveOutcome RunSaveStep(const SaveJob& job, int32_t runResult, Asker& asker,
                        std::optional<POINT> position = std::nullopt);

}  // namespace velmora::win
