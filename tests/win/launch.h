// Starting the project's programs from a test, finding their windows and
// processes, and waiting for their exit.
#pragma once
#include <windows.h>
#include <tlhelp32.h>

#include <string>
#include <vector>

#include "engine/win/handles.h"

namespace velmora::test {

// Starts `exe` with `args`; an empty handle if it could not be started.
// With `output`, the program's standard output and error go there (the
// handle must be inheritable).
inline win::UniqueHandleObj Launch(const std::wstring& exe, const std::wstring& args,
                                   HANDLE output = nullptr) {
  std::wstring cmd = L"\"" + exe + L"\" " + args;
  STARTUPINFOW si{};
  si.cb = sizeof si;
  if (output) {
    si.dwFlags = STARTF_USESTDHANDLES;
    si.hStdOutput = output;
    si.hStdError = output;
  }
  PROCESS_INFORMATION pi{};
  if (!CreateProcessW(nullptr, cmd.data(), nullptr, nullptr, output != nullptr, 0, nullptr, nullptr,
                      &si, &pi)) {
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

// A file beside the running test program.
inline std::wstring BesideThisProgram(const wchar_t* name) {
  wchar_t self[MAX_PATH * 2] = {};
  GetModuleFileNameW(nullptr, self, MAX_PATH * 2);
  std::wstring dir(self);
  return dir.substr(0, dir.find_last_of(L"\\/") + 1) + name;
}

// Waits up to `ms` for a shown top-level window of `cls` owned by `process`.
inline HWND WaitForWindow(HANDLE process, const wchar_t* cls, int ms) {
  const DWORD pid = GetProcessId(process);
  for (int waited = 0; waited < ms; waited += 20) {
    for (HWND w = FindWindowW(cls, nullptr); w; w = FindWindowExW(nullptr, w, cls, nullptr)) {
      DWORD owner = 0;
      GetWindowThreadProcessId(w, &owner);
      // A window is found as soon as it is created, before its controls and
      // texts exist; the user meets it once it is shown.
      if (owner == pid && IsWindowVisible(w)) return w;
    }
    Sleep(20);
  }
  return nullptr;
}

inline std::wstring WindowTextW(HWND w) {
  wchar_t text[512] = {};
  GetWindowTextW(w, text, 512);
  return text;
}

// The ids of the running processes started from `exePath` (letter case ignored).
inline std::vector<DWORD> ProcessesOf(const std::wstring& exePath) {
  std::vector<DWORD> ids;
  win::UniqueHandleObj snap(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  if (!snap || snap.get() == INVALID_HANDLE_VALUE) return ids;
  PROCESSENTRY32W e{};
  e.dwSize = sizeof e;
  for (BOOL more = Process32FirstW(snap.get(), &e); more; more = Process32NextW(snap.get(), &e)) {
    win::UniqueHandleObj p(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, e.th32ProcessID));
    wchar_t path[MAX_PATH * 2] = {};
    DWORD n = MAX_PATH * 2;
    if (p && QueryFullProcessImageNameW(p.get(), 0, path, &n) &&
        lstrcmpiW(path, exePath.c_str()) == 0)
      ids.push_back(e.th32ProcessID);
  }
  return ids;
}

// Ends a process the test started, and waits until it is gone.
inline void Kill(DWORD pid) {
  win::UniqueHandleObj p(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, pid));
  if (!p) return;
  TerminateProcess(p.get(), 9);
  WaitForSingleObject(p.get(), 5000);
}

}  // namespace velmora::test
