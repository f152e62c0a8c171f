// Runs velmora.exe as a user would, beside the test program, and collects
// its exit code and everything it printed.
#pragma once
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "engine/win/handles.h"
#include "tests/temp_dir.h"
#include "tests/win/launch.h"

namespace velmora {

struct ProgramRun {
  DWORD exitCode = 0;
  std::string output;
};

// Runs velmora.exe with `args`, its standard output into a pipe, while the
// pattern window keeps painting.
inline ProgramRun RunVelmora(const std::wstring& args) {
  const std::wstring exe = test::BesideThisProgram(L"velmora.exe");
  SECURITY_ATTRIBUTES sa{sizeof sa, nullptr, TRUE};
  HANDLE readEnd = nullptr, writeEnd = nullptr;
  EXPECT_TRUE(CreatePipe(&readEnd, &writeEnd, &sa, 0));
  win::UniqueHandleObj reader(readEnd), writer(writeEnd);
  SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
  ProgramRun run;
  win::UniqueHandleObj process = test::Launch(exe, args, writeEnd);
  if (!process) {
    ADD_FAILURE() << "velmora.exe did not start";
    return run;
  }
  writer.reset();
  // Read until velmora.exe has ended, not until the pipe closes: the sound
  // recorder it starts inherits the pipe and lives a moment longer. A run
  // that does not end within a minute is a failure, not a hang.
  const DWORD started = GetTickCount();
  for (bool ended = false;;) {
    if (!ended) ended = WaitForSingleObject(process.get(), 10) == WAIT_OBJECT_0;
    DWORD avail = 0;
    char buf[512];
    DWORD got = 0;
    if (PeekNamedPipe(readEnd, nullptr, 0, nullptr, &avail, nullptr) && avail > 0 &&
        ReadFile(readEnd, buf, avail < sizeof buf ? avail : sizeof buf, &got, nullptr)) {
      run.output.append(buf, got);
      continue;
    }
    if (ended) break;
    if (GetTickCount() - started > 60000) {
      ADD_FAILURE() << "velmora.exe did not end within a minute";
      TerminateProcess(process.get(), 1);
    }
  }
  GetExitCodeProcess(process.get(), &run.exitCode);
  return run;
}

}  // namespace velmora
