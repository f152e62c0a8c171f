#include "app/win/record_and_save.h"

namespace velmora::win {

SaveJob SaveJobFromSettings(const CaptureSettings& s, const uint8_t* compressorSettings) {
  SaveJob job;
  job.movieFile = s.MovieFile;
  job.aviFile = s.AviFile;
  job.waveFile = s.WaveFile;
  job.keepMovie = IsTrue16(s.KeepMovie);
  job.avi24 = IsTrue16(s.Avi24Bit);
  job.deleteWave = IsTrue16(s.DeleteWave);
  job.compressorSettings = compressorSettings;
  return job;
}

RecordAndSaveOutcome RecordAndSave(const CaptureSettings& settings,
                                   const uint8_t* compressorSettings, RecordingRunHooks& hooks,
                                   Asker& asker, RecorderControl* recorder,
                                   WindowPositions* positions,
                                   const std::function<void(const RecordingOutcome&)>& recorded) {
  RecordAndSaveOutcome out;
  out.run = RunRecording(JobFromSettings(settings), hooks, recorder);
  if (recorded) recorded(out.run);
  if (out.run.filesDeleted) {
    out.save.result = out.run.result;
    return out;
  }
  std::optional<POINT> corner;
  if (positions) corner = POINT{positions->AviWindowX, positions->AviWindowY};
  out.save =
      RunSaveStep(SaveJobFromSettings(settings, compressorSettings), out.run.result, asker, corner);
  if (positions && out.save.progressPosition) {
    positions->AviWindowX = out.save.progressPosition->x;
    positions->AviWindowY = out.save.progressPosition->y;
  }
  return out;
}

}  // namespace velmora::win
