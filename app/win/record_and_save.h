// The one way a recording is made, for the start button and for
// velmora.exe /record alike: the recording run, then what the save mode asks
// for (re-encoding, AVI, deletions) in the progress window, which opens at
// the remembered corner and leaves its new corner behind.
#pragma once
#include <cstdint>
#include <functional>

#include "app/capture_settings.h"
#include "app/window_positions.h"
#include "app/win/recording_run.h"
#include "app/win/save_step.h"
#include "ui/win/asker.h"

namespace velmora::win {

// The fields of a settings record that the save step reads (the run's are
// JobFromSettings, beside the run).
SaveJob SaveJobFromSettings(const CaptureSettings& s, const uint8_t* compressorSettings = nullptr);

struct RecordAndSaveOutcome {
  RecordingOutcome run;
  SaveOutcome save;  // empty when the run deleted its files
};

// `compressorSettings`: the chosen compressor's settings (null: uncompressed).
// `recorder`: the application's recorder (null: no sound).
// `positions`: where the progress window opens, updated with where it
// closed (null: centred, nothing remembered). `recorded`, when given, learns
// the run's outcome before the save step begins.
RecordAndSaveOutcome RecordAndSave(
    const CaptureSettings& settings, const uint8_t* compressorSettings, RecordingRunHooks& hooks,
    Asker& asker, RecorderControl* recorder, WindowPositions* positions,
    const std::function<void(const RecordingOutcome&)>& recorded = {});

}  // namespace velmora::win
