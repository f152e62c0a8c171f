#include "app/tests/velmora_process.h"

#include <gtest/gtest.h>

#include "engine/win/handles.h"

namespace velmora::test {

// Runs velmora.exe with `args`, its standard output into a pipe, while the
// pattern window keeps painting.
ProgramRun RunVelmora(const std::wstring& args, DWORD timeoutMs) {
  wchar_t self[MAX_PATH * 2] = {};
  GetModuleFileNameW(nullptr, self, MAX_PATH * 2);
  std::wstring exe(self);
  exe = exe.substr(0, exe.find_last_of(L"\\/") + 1) + L"velmora.exe";
  SECURITY_ATTRIBUTES sa{sizeof sa, nullptr, TRUE};
  HANDLE readEnd = nullptr, writeEnd = nullptr;
  EXPECT_TRUE(CreatePipe(&readEnd, &writeEnd, &sa, 0));
  win::UniqueHandleObj reader(readEnd), writer(writeEnd);
  SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
  STARTUPINFOW si{};
  si.cb = sizeof si;
  si.dwFlags = STARTF_USESTDHANDLES;
  si.hStdOutput = writeEnd;
  si.hStdError = writeEnd;
  PROCESS_INFORMATION pi{};
  std::wstring cmd = L"\"" + exe + L"\" " + args;
  ProgramRun run;
  if (!CreateProcessW(nullptr, cmd.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &si, &pi)) {
    ADD_FAILURE() << "velmora.exe did not start";
    return run;
  }
  win::UniqueHandleObj process(pi.hProcess), thread(pi.hThread);
  writer.reset();
  char buf[512];
  DWORD got = 0;
  while (ReadFile(readEnd, buf, sizeof buf, &got, nullptr) && got > 0) run.output.append(buf, got);
  WaitForSingleObject(pi.hProcess, timeoutMs);
  GetExitCodeProcess(pi.hProcess, &run.exitCode);
  return run;
}


CaptureSettings PatternJob(int32_t method, const std::string& movieFile, int32_t left,
                           int32_t top) {
  CaptureSettings s = DefaultSettings(true);
  s.Left = left;
  s.Top = top;
  s.Width = 64;
  s.Height = 48;
  s.Fps = 20;
  s.Seconds = 1;
  s.Method = method;
  s.DrawMouse = kFalse16;
  s.AsyncWrite = kFalse16;
  s.MovieFile = movieFile;
  s.AviFile.clear();  // movie only unless a test asks for more
  return s;
}

}  // namespace velmora::test
