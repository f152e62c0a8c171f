// Runs velmora.exe (beside the test program) as a user would, with its
// standard output captured.
#pragma once
#include <windows.h>

#include <string>

#include "app/capture_settings.h"

namespace velmora::test {

struct ProgramRun {
  DWORD exitCode = 0;
  std::string output;
};

// Runs velmora.exe with `args` and waits up to `timeoutMs` for it to end.
ProgramRun RunVelmora(const std::wstring& args, DWORD timeoutMs = 30000);

// A job recording 64 x 48 pixels at (left, top) at 20 frames a second for
// one second, without cursor, with ordinary writes, movie only. Tests that run at the
// same time on the display each keep their pattern window at its own place.
CaptureSettings PatternJob(int32_t method, const std::string& movieFile, int32_t left,
                           int32_t top);

}  // namespace velmora::test
