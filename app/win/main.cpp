// velmora.exe: command-line verbs first (they skip the start-up checks);
// without any, the application.
#include <windows.h>

#include <string>
#include <vector>

#include "app/win/command_line.h"
#include "app/win/console.h"
#include "app/win/startup.h"
#include "engine/win/win_idioms.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR, int show) {
  const std::vector<std::wstring> args = velmora::win::ProgramArguments();

  if (!args.empty()) velmora::win::AttachParentConsole();
  bool handled = false;
  const int code = velmora::win::RunCommandLine(args, handled);
  if (handled) return code;
  return velmora::win::RunApplication(instance, show);
}
