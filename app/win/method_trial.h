// "キャプチャ方法を試す": each capture method records two seconds with the
// user's settings into a throw-away movie, without sound, while the given
// window's caption counts the frames. The user reads the graded lines and
// chooses a method; nothing is changed for them.
#pragma once
#include <windows.h>

#include <string>

#include "app/win/recording_run.h"

namespace velmora::win {

inline constexpr char kMethodTrialTitle[] = "キャプチャ試行結果";

// The three result lines (app/method_trial_text.h) for methods 0, 1 and 2.
// `window` shows the progress in its caption and takes no input meanwhile;
// both are given back before this returns.
std::string TryCaptureMethods(const RecordingJob& settings, HWND window);

}  // namespace velmora::win
