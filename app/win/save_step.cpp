#include "app/win/save_step.h"

#include "conversion/win/progress_window.h"
#include "conversion/win/depth_converting_reader.h"
#include "engine/result_codes.h"
#include "engine/movie_header_file.h"
#include "engine/win/application_folder.h"
#include "engine/win/system_error_text.h"
#include "engine/win/win_idioms.h"
#include "engine/win/text_encoding.h"
#include "ui/message_style.h"

namespace velmora::win {
namespace {

constexpr const char* kReencodeCancelled =
    "QRK変換中にキャンセルされました。\r\n処理を続行しますか？";

bool Exists(const std::string& utf8) {
  return GetFileAttributesW(Widen(utf8).c_str()) != INVALID_FILE_ATTRIBUTES;
}

// The re-encoding and the conversion, both shown in `form`.
SaveOutcome ConvertShown(const SaveJob& job, int32_t runResult, Asker& asker,
                         ProgressWindow& form) {
  SaveOutcome out;
  out.result = runResult;
  const bool wantAvi = !job.aviFile.empty();
  MovieHeader header;  // stays all zero for a movie that cannot be read
  QueryMovieHeader(job.movieFile, &header);
  const int32_t w = header.width, h = header.height;
  const int32_t bitCount = header.bitCount, method = header.method;
  bool drawAt24 = false;
  // A Type1/Type2 movie of 24 bits or more is left as it is.
  if (job.avi24 && !(method != 0 && bitCount >= 24)) {
    if (!CanReencode(w, h, 24) && w > 0 && h > 0) {
      // Rows of this width need padding at 24 bits, which movie frames
      // cannot carry: the movie stays, and the AVI conversion draws the
      // frames and reads them back at 24 bits itself.
      drawAt24 = true;
    } else {
      out.result = form.ShowReencoding(job.movieFile, job.tempFile, 24, 1);
      if (out.result == 0 && Exists(job.tempFile)) {
        ForceDelete(job.movieFile);
        MoveFileExW(Widen(job.tempFile).c_str(), Widen(job.movieFile).c_str(),
                    MOVEFILE_COPY_ALLOWED | MOVEFILE_REPLACE_EXISTING);
        out.reencoded = true;
      } else if (ResultNumber(out.result) == kErrCancelled && wantAvi) {
        if (asker.Msg(kReencodeCancelled, kStyleYesNo + kStyleIconError) == kAnswerNo) return out;
        out.result = 0;  // the AVI is made from the original movie
      } else if (out.result != 0) {
        asker.Msg("QRK変換中に、\r\n" + ResultText(out.result) + "のエラーが発生しました。",
                  kStyleOk + kStyleIconError);
        return out;
      }
    }
  }
  if (!wantAvi || out.result != 0) return out;

  const int32_t rc = form.ShowConversion(job.movieFile, job.aviFile, job.waveFile,
                                         job.compressorSettings, drawAt24);
  // Only a conversion that ran to its end replaces its sources: after a
  // cancel the (possibly shortened or deleted) AVI is not all there is.
  out.aviMade = rc == 0 && !form.Cancelled() && Exists(job.aviFile);
  if (!out.aviMade) return out;
  if (!job.keepMovie) out.movieDeleted = ForceDelete(job.movieFile);
  if (job.deleteWave && !job.waveFile.empty()) out.waveDeleted = ForceDelete(job.waveFile);
  return out;
}

}  // namespace

SaveOutcome RunSaveStep(const SaveJob& raw, int32_t runResult, Asker& asker,
                        std::optional<POINT> position) {
  SaveJob job = raw;
  for (std::string* path : {&job.movieFile, &job.aviFile, &job.waveFile, &job.tempFile})
    *path = ResolveInApplicationFolder(*path);
  if (!job.avi24 && job.aviFile.empty()) return SaveOutcome{runResult};

  ProgressWindow form(asker, position);
  SaveOutcome out = ConvertShown(job, runResult, asker, form);
  out.progressPosition = form.Position();
  return out;
}

}  // namespace velmora::win
