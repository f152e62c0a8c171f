#include "app/win/demo_command.h"

#include <windows.h>

#include "app/win/console.h"
#include "app/win/placeholder_window.h"
#include "app/win/recording_run.h"
#include "engine/win/system_message.h"

namespace velmora::win {

VerbResult RunDemoCommand(const std::vector<std::wstring>& args) {
  const std::wstring folder = args.empty() ? L"." : args[0];
  CreateDirectoryW(folder.c_str(), nullptr);
  HWND wnd = CreatePlaceholderWindow(GetModuleHandleW(nullptr), 40, 40);
  ShowWindow(wnd, SW_SHOWNOACTIVATE);
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
  DestroyWindow(wnd);
  PrintLine(job.movieFile + ": " + SummaryLine(out.stats, out.result, out.resultText));
  return out.result;
}

}  // namespace velmora::win
