// The texts of the capture-method trial: the caption while a method is being
// measured, and the graded result line of each method. The window runs the
// three short recordings; every number and mark the user reads comes from here.
#pragma once
#include <cstdint>
#include <string>

#include "app/recording_stats.h"

namespace velmora {

// The mean capture time of the frames that were not dropped, in whole ms
// (halves to even): 0 when no frame was captured. A machine fast enough for
// the mean to round to 0 still measured something, so that case is 1.
int32_t TrialFrameMs(const RecordingStats& stats);

// Frames per second one method can sustain at `frameMs` per frame: the
// whole tenths of 1000 / frameMs, then rounded to an integer, halves to even.
int32_t AchievableFps(int32_t frameMs);

// One line of the result box, ended by CR LF. A negative `result` or a
// `frameMs` below 1 is the failure line; otherwise the requested `fps` is
// graded against the achievable rate: "◎" below a quarter of it, "○" below
// a half, "×" at or above it, "△" in between.
std::string MethodTrialLine(int32_t method, int32_t result, int32_t frameMs, int32_t drops,
                            int32_t fps);

// "Try Method 1 ... 17": the window's caption while method 1 records frame 17.
std::string MethodTrialCaption(int32_t method, int32_t frameNumber);

}  // namespace velmora
