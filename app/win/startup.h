// The windowed start of velmora.exe (no command-line verb): refuse an 8-bit
// display and a second instance, fix the session's metrics and paths, take
// the window positions, start the sound recorder when it lies beside the
// program, then show the main window.
#pragma once
#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "app/startup_values.h"
#include "app/window_positions.h"
#include "engine/clock.h"
#include "engine/win/handles.h"
#include "sound/recorder_block.h"
#include "sound/win/recorder_control.h"
#include "ui/win/asker.h"

namespace velmora::win {

// Everything the entry procedure fixes for the session. It lives as long as
// the application: the instance mark and the recorder block with it.
struct Session {
  int32_t TwipsPerPixelX = 0;
  int32_t TwipsPerPixelY = 0;
  StartupPaths paths;
  WindowPositions windowPositions;
  std::unique_ptr<RecorderControl> recorder;  // only when the recorder program exists
  UniqueHandleObj instanceMark;

  // Null when sound is unavailable for this session.
  HANDLE RecorderMapping() const { return recorder ? recorder->RecorderMapping() : nullptr; }
  uint32_t RecorderProcessId() const { return recorder ? recorder->RecorderProcessId() : 0; }
};

// What the entry procedure needs from outside, so tests can stand in for the
// display, the executable's place and the recorder's wait.
struct StartupDeps {
  Asker& asker;
  Clock& clock;
  std::function<int32_t()> displayBitsPerPixel;  // empty: the real screen's
  std::wstring executablePath;                   // empty: this process's
  std::wstring recorderBlockName = sound::kRecorderBlockName;
};

enum class StartupResult { kReady, kEightBitDisplay, kAlreadyRunning };

// Steps 1 to 7 of the start; on kReady the caller shows the main window.
// Refusals show their message and leave `session` untouched apart from
// what was done before them.
StartupResult RunStartup(const StartupDeps& deps, Session& session);

// The positions of the session's position file, or the default corners when
// it cannot be read.
WindowPositions LoadOrDefaultWindowPositions(const Session& session);

// The whole windowed start, up to the end of the message loop.
int RunApplication(HINSTANCE instance, int show);

}  // namespace velmora::win
