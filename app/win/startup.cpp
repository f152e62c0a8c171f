#include "app/win/startup.h"

#include "app/win/ansi.h"
#include "app/win/capture_frame_window.h"
#include "app/win/main_window.h"
#include "conversion/win/progress_window.h"
#include "engine/win/application_folder.h"
#include "engine/win/screen_grabber.h"
#include "engine/win/text_encoding.h"
#include "engine/win/win_clock.h"
#include "ui/message_style.h"
#include "ui/win/message_box.h"

namespace velmora::win {
namespace {

// The previous-instance test: a named mutex per executable. The handle stays
// open for the session, so the mark lasts exactly as long as this instance.
bool TakeInstanceMark(const std::wstring& exePath, UniqueHandleObj& mark) {
  const std::wstring name = Widen(InstanceName(Narrow(exePath)));
  UniqueHandleObj mutex(CreateMutexW(nullptr, FALSE, name.c_str()));
  const bool taken = GetLastError() != ERROR_ALREADY_EXISTS;
  if (taken) mark = std::move(mutex);
  return taken;
}

void StoreTwipsPerPixel(Session& session) {
  WindowDc screen = WindowDc::Get(nullptr);
  session.TwipsPerPixelX = TwipsPerPixel(GetDeviceCaps(screen.get(), LOGPIXELSX));
  session.TwipsPerPixelY = TwipsPerPixel(GetDeviceCaps(screen.get(), LOGPIXELSY));
}

void ShowCritical(Asker& asker, const char* text) { asker.Msg(text, kStyleOk | kStyleIconError); }

WindowSize OuterSize(HWND wnd) {
  RECT r{};
  GetWindowRect(wnd, &r);
  return {r.right - r.left, r.bottom - r.top};
}

// The modeless main window's loop: Tab, arrows and Enter move through its
// controls as in any dialog.
int RunDialogLoop(HWND dialog) {
  MSG msg;
  while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
    if (IsWindow(dialog) && IsDialogMessageW(dialog, &msg)) continue;
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
  return static_cast<int>(msg.wParam);
}

}  // namespace

WindowPositions LoadOrDefaultWindowPositions(const Session& session) {
  WindowPositions p;
  if (LoadWindowPositions(session.paths.IniFile, SystemAnsiCodec(), p) == 0) return p;
  RECT work{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
  DefaultAsker nobody;
  ProgressWindow progress(nobody);
  // Both windows are made unshown only to learn their outer sizes.
  return DefaultWindowPositions({work.left, work.top, work.right, work.bottom},
                                CaptureFrameWindowSize(GetModuleHandleW(nullptr)),
                                OuterSize(progress.Window()));
}

StartupResult RunStartup(const StartupDeps& deps, Session& session) {
  const int32_t bits = deps.displayBitsPerPixel ? deps.displayBitsPerPixel() : DisplayBitCount();
  if (IsRefusedDisplayDepth(bits)) {
    ShowCritical(deps.asker, kEightBitDisplayText);
    return StartupResult::kEightBitDisplay;
  }
  const std::wstring exePath = deps.executablePath.empty() ? ExecutablePath() : deps.executablePath;
  if (!TakeInstanceMark(exePath, session.instanceMark)) {
    ShowCritical(deps.asker, kAlreadyRunningText);
    return StartupResult::kAlreadyRunning;
  }
  StoreTwipsPerPixel(session);
  session.paths = BuildStartupPaths(ExecutableFolder(Narrow(exePath)));
  session.windowPositions = LoadOrDefaultWindowPositions(session);

  // Without the recorder program nothing is done for sound and no time spent;
  // a recorder that does not answer leaves sound unavailable, silently.
  const std::wstring recorderExe = Widen(session.paths.RecorderExe);
  if (GetFileAttributesW(recorderExe.c_str()) != INVALID_FILE_ATTRIBUTES) {
    session.recorder = std::make_unique<RecorderControl>(deps.clock, deps.recorderBlockName);
    session.recorder->StartRecorder(recorderExe);
  }
  return StartupResult::kReady;
}

int RunApplication(HINSTANCE instance, int show) {
  MsgBoxEx asker;
  WinClock clock;
  Session session;
  if (RunStartup(StartupDeps{asker, clock}, session) != StartupResult::kReady) return 0;
  MainWindowSetup setup;
  setup.paths = session.paths;
  setup.soundAvailable = session.RecorderMapping() != nullptr;
  setup.positions = &session.windowPositions;
  setup.recorder = session.recorder.get();
  MainWindow window(std::move(setup));
  if (!window.Open(instance, show)) return 1;
  return RunDialogLoop(window.Handle());
}

}  // namespace velmora::win
