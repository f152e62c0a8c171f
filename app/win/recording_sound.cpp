#include "app/win/recording_sound.h"

#include <windows.h>

#include "engine/win/text_encoding.h"
#include "engine/win/win_idioms.h"

namespace velmora::win {

RunSound::RunSound(RecorderControl* recorder, const SoundJob& job, int32_t seconds)
    : recorder_(recorder),
      job_(job),
      seconds_(seconds),
      active_(recorder && recorder->RecorderMapping() && !job.waveFile.empty()) {}

std::string RunSound::Prepare() {
  if (!active_) return {};
  const auto refused = PrepareStartRequest(job_.format, seconds_, job_.waveFile, 0, request_);
  return sound::StartRequestErrorText(refused);
}

void RunSound::Arm(int32_t plannedStartMs) {
  if (!active_) return;
  mixerUsable_ = mixer_.IsEnableMixer();
  if (mixerUsable_) {
    mixer_.GetWaveInLines(nullptr, &previousLine_);
    if (job_.recordingLine >= 1) mixer_.SetWaveInLine(nullptr, job_.recordingLine - 1);
  }
  request_.plannedStartMs = plannedStartMs;
  recorder_->SetStartRequest(request_);
}

void RunSound::StartCapture() {
  if (recorder_) recorder_->WriteStartRequest();
}

void RunSound::StopAndWait(const ShowMessageFn& show) {
  if (active_) recorder_->StopAndWait(show);
}

void RunSound::RestoreLine() {
  if (active_ && mixerUsable_ && mixer_.IsEnableMixer() && previousLine_ >= 0) {
    mixer_.SetWaveInLine(nullptr, previousLine_);
  }
}

void RunSound::DeleteWaveFile() {
  if (!active_) return;
  const auto wave = WideFromAnsi(sound::NameFieldText(request_.waveName));
  if (!wave || wave->empty()) return;
  ForceDelete(*wave);
}

}  // namespace velmora::win
