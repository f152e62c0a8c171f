// Starting the project's programs from a test and waiting for their exit.
#pragma once
#include <windows.h>

#include <string>

#include "engine/win/handles.h"

namespace velmora::test {

// Starts `exe` with `args`; an empty handle if it could not be started.
inline win::UniqueHandleObj Launch(const std::wstring& exe, const std::wstring& args) {
  std::wstring cmd = L"\"" + exe + L"\" " + args;
  STARTUPINFOW si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  if (!CreateProcessW(nullptr, cmd.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi)) {
    return win::UniqueHandleObj();
  }
  CloseHandle(pi.hThread);
  return win::UniqueHandleObj(pi.hProcess);
}

// The exit code, or STILL_ACTIVE if the process has not ended within `ms`.
inline DWORD ExitCodeWithin(const win::UniqueHandleObj& process, DWORD ms) {
  if (WaitForSingleObject(process.get(), ms) != WAIT_OBJECT_0) return STILL_ACTIVE;
  DWORD code = 0;
  GetExitCodeProcess(process.get(), &code);
  return code;
}

}  // namespace velmora::test
