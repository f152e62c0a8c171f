// The sound steps of one recording run: the start request prepared from the
// run record (a wave name that does not fit is refused before anything is
// recorded), the recording line switched for the run and back, the request
// written when the engine begins grabbing, and the stop-and-wait afterwards.
#pragma once
#include <cstdint>
#include <string>

#include "sound/sound_formats.h"
#include "sound/win/mixer.h"
#include "sound/win/recorder_control.h"

namespace velmora::win {

struct SoundJob {
  std::string waveFile;  // UTF-8; empty = no sound in this run
  sound::SoundFormat format;
  int32_t recordingLine = 0;  // 0 leaves the line alone; n >= 1 selects line n - 1
};

class RunSound {
 public:
  // `recorder` may be null or without a block: the run then has no sound.
  RunSound(RecorderControl* recorder, const SoundJob& job, int32_t seconds);

  // Builds the start request. Returns the text that refuses the run (the
  // wave name cannot be written into the block), empty when all is well.
  std::string Prepare();

  // Sets the planned start and switches the recording line; the request is
  // kept in the recorder control's copy.
  void Arm(int32_t plannedStartMs);

  // The engine began grabbing: the copy goes into the block. Done in every
  // run that has a recorder, with or without sound: a run without sound
  // writes the copy as it stands (the recorder refuses a stale request).
  void StartCapture();

  // After the engine returned: stop and wait; the recorder's failure or
  // silence goes to `show`.
  void StopAndWait(const ShowMessageFn& show);

  // After the run: the recording line selected before the run again.
  void RestoreLine();

  // The wave file named in the request (a cancelled run that is not kept).
  void DeleteWaveFile();

 private:
  RecorderControl* recorder_;
  SoundJob job_;
  int32_t seconds_;
  bool active_;
  sound::RecorderBlock request_;
  Mixer mixer_;
  bool mixerUsable_ = false;
  int32_t previousLine_ = -1;
};

}  // namespace velmora::win
