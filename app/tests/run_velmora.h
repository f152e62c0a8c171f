// Runs velmora.exe as a user would, beside the test program, and collects
// its exit code and everything it printed.
#pragma once
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "engine/win/handles.h"
#include "tests/win/launch.h"

namespace velmora {

struct ProgramRun {
  DWORD exitCode = 0;
  std::string output;
};

// Runs velmora.exe with `args`, its standard output into a temporary file: a
// pipe would stay open as long as the sound recorder it starts, which
// inherits it. A run that does not end within a minute is a failure, not a hang.
inline ProgramRun RunVelmora(const std::wstring& args) {
  wchar_t folder[MAX_PATH] = {}, name[MAX_PATH] = {};
  GetTempPathW(MAX_PATH, folder);
  GetTempFileNameW(folder, L"vel", 0, name);
  SECURITY_ATTRIBUTES sa{sizeof sa, nullptr, TRUE};
  win::UniqueHandleObj out(CreateFileW(name, GENERIC_READ | GENERIC_WRITE,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, &sa,
                                       CREATE_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE, nullptr));
  ProgramRun run;
  win::UniqueHandleObj process =
      test::Launch(test::BesideThisProgram(L"velmora.exe"), args, out.get());
  if (!process) {
    ADD_FAILURE() << "velmora.exe did not start";
    return run;
  }
  run.exitCode = test::ExitCodeWithin(process, 60000);
  if (run.exitCode == STILL_ACTIVE) {
    ADD_FAILURE() << "velmora.exe did not end within a minute";
    TerminateProcess(process.get(), 1);
  }
  run.output.resize(GetFileSize(out.get(), nullptr));
  SetFilePointer(out.get(), 0, nullptr, FILE_BEGIN);
  DWORD got = 0;
  ReadFile(out.get(), run.output.data(), DWORD(run.output.size()), &got, nullptr);
  run.output.resize(got);
  return run;
}

}  // namespace velmora
