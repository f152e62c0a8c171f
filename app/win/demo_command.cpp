#include "app/win/demo_command.h"

#include <windows.h>

#include "app/win/console.h"
#include "app/win/main_window.h"
#include "app/win/recording_run.h"
#include "engine/win/application_folder.h"
#include "engine/win/text_encoding.h"

namespace velmora::win {

VerbResult RunDemoCommand(const std::vector<std::wstring>& args) {
  const std::wstring folder = args.empty() ? L"." : args[0];
  CreateDirectoryW(folder.c_str(), nullptr);
  // The main window as a user sees it, in the recorded corner of the screen;
  // it writes no position file and asks nothing.
  DefaultAsker nobody;
  MainWindowSetup setup;
  setup.paths = BuildStartupPaths(ExecutableFolder(Narrow(ExecutablePath())));
  setup.asker = &nobody;
  MainWindow window(std::move(setup));
  HWND wnd = window.Open(GetModuleHandleW(nullptr), SW_SHOWNOACTIVATE);
  SetWindowPos(wnd, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  UpdateWindow(wnd);

  RecordingJob job;
  job.width = 640;
  job.height = 480;
  job.fps = 15;
  job.seconds = 3;
  job.asyncWrite = false;
  job.movieFile = Narrow(folder) + "\\demo.QRK";
  RecordingRunHooks unattended;
  const RecordingOutcome out = RunRecording(job, unattended);  // its waits let the window paint
  window.Destroy();
  PrintLine(job.movieFile + ": " + SummaryLine(out.stats, out.result, out.resultText));
  return out.result;
}

}  // namespace velmora::win
