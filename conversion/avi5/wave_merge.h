// Adds a PCM wave file as the sound stream of a finished AVI. The AVI is
// rewritten into a temporary file beside it, the sound cut into one chunk
// per video frame (and one-second chunks after the last frame), and the
// original is replaced only once the new file is complete; on any failure
// the original is left as it was and the temporary file removed.
#pragma once
#include <cstdint>
#include <functional>
#include <string>

#include "conversion/avi5/avi_status.h"
#include "conversion/avi5/avi_writer.h"

namespace velmora::avi {

// Called with (chunks done, chunks in all) as the copy proceeds: at each
// hundredth, so at most 100 times, the last with done = all.
using MergeProgress = std::function<void(int32_t done, int32_t total)>;

AviStatus MergeWaveIntoAvi(const std::string& utf8AviPath, const std::string& utf8WavePath,
                           const MergeProgress& progress, AviWriterOptions options = {});

// Sound blocks that belong before the end of video frame `frame` (counted
// from 1): floor(frame x scale / rate x sampleRate).
uint64_t BlocksBeforeFrame(uint64_t frame, uint32_t scale, uint32_t rate, uint32_t sampleRate);

}  // namespace velmora::avi
