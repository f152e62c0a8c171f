// A recorder that never answers: it lives as long as the application that
// started it and ignores the block.
#include <windows.h>

#include <cwchar>

#include "engine/win/handles.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR commandLine, int) {
  const auto app = static_cast<DWORD>(std::wcstoul(commandLine, nullptr, 10));
  velmora::win::UniqueHandleObj parent(OpenProcess(SYNCHRONIZE, FALSE, app));
  if (!parent) return 1;
  WaitForSingleObject(parent.get(), 60000);
  return 0;
}
