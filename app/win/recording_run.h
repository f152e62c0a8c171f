// One recording run: the engine set up from the run record, the process
// priority raised for its length, the recording started 350 ms ahead on the
// engine clock, the statistics kept, follow-mouse applied, and a cancelled
// movie either kept with a corrected header or deleted. The questions of the
// run go through RecordingRunHooks, so the start button and the command line
// drive the same code. With a recorder, the sound is recorded beside the
// movie (app/win/recording_sound.h); the AVI steps join here later.
#pragma once
#include <cstdint>
#include <string>

#include "app/capture_settings.h"
#include "app/recording_stats.h"
#include "app/win/recording_sound.h"

namespace velmora::win {

// The fields of the run record that a picture-only run reads.
struct RecordingJob {
  int32_t left = 0, top = 0, width = 320, height = 240;
  int32_t fps = 30, seconds = 20, method = 1;
  int32_t cpuReleaseCount = 1, cpuReleaseTime = 1;
  bool drawMouse = true;
  bool followMouse = false;
  bool asyncWrite = true;
  int32_t priorityClass = 0;  // 0 leaves the priority alone
  std::string movieFile;      // UTF-8
  SoundJob sound;             // no wave file: no sound
};

// The run record of a settings record (its compressor and save mode belong
// to the save step).
RecordingJob JobFromSettings(const CaptureSettings& s);

class RecordingRunHooks {
 public:
  virtual ~RecordingRunHooks() = default;
  // The engine is set up and the recording is about to begin: the frame
  // window places and shows itself. Called before the planned start is
  // taken, so a slow show never eats into the 350 ms lead.
  virtual void RunStarting(const RecordingJob& /*job*/) {}
  // The engine begins grabbing ("Time" counts from here).
  virtual void GrabbingBegins() {}
  // Every frame as the engine reports it, after the run has counted it.
  // `frameNumber` is one-based; `captureMs` is the frame's capture time.
  virtual void FrameRecorded(int32_t /*frameNumber*/, double /*captureMs*/, int32_t /*dropCount*/,
                             bool /*isDrop*/) {}
  // Follow-mouse: the corner of the next frame's region, as handed to the engine.
  virtual void RegionMoved(int32_t /*left*/, int32_t /*top*/) {}
  // Asked once per frame; a cancel takes effect at the next whole second.
  virtual bool CancelRequested() { return false; }
  // After a cancel: true keeps the shortened movie (its header is corrected,
  // and the run counts as a success), false deletes it.
  virtual bool ContinueAfterCancel() { return true; }
  // The engine's message for a failed recording.
  virtual void ShowError(const std::string& /*utf8Text*/) {}
  // The recorder failed or did not answer after the recording (the plain
  // message box in the window).
  virtual void ShowRecorderMessage(const std::string& /*utf8Text*/) {}
  // The run is over (after its questions): the frame window remembers where
  // it stood and hides.
  virtual void RunEnded() {}
};

struct RecordingOutcome {
  int32_t result = 0;  // the engine's result code; 0 after a cancelled run kept
  bool filesDeleted = false;
  int32_t achievedFps = 0;  // 0 when the recording lasted under a second
  RecordingStats stats;
  std::string resultText;  // the engine's message for `result` (empty for 0)
};

// `recorder`: the recorder started with the application (null: no sound).
RecordingOutcome RunRecording(const RecordingJob& job, RecordingRunHooks& hooks,
                              RecorderControl* recorder = nullptr);

}  // namespace velmora::win
