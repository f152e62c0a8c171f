// velmora.exe: command-line verbs first (they skip the start-up checks);
// without any, the application.
#include <windows.h>
#include <shellapi.h>

#include <string>
#include <vector>

#include "app/win/command_line.h"
#include "app/win/console.h"
#include "app/win/startup.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR, int show) {
  int argc = 0;
  wchar_t** argv = CommandLineToArgvW(GetCommandLineW(), &argc);
  std::vector<std::wstring> args;
  for (int i = 1; argv && i < argc; ++i) args.emplace_back(argv[i]);
  if (argv) LocalFree(argv);

  if (!args.empty()) velmora::win::AttachParentConsole();
  bool handled = false;
  const int code = velmora::win::RunCommandLine(args, handled);
  if (handled) return code;
  return velmora::win::RunApplication(instance, show);
}
