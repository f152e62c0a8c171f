// velmora.exe /record JOB.QRT: one recording from a settings file, without
// any window or question, a one-line summary on the console, the engine's
// result code as the exit code.
#pragma once
#include <string>
#include <vector>

namespace velmora::win {

int RunRecordCommand(const std::vector<std::wstring>& args);

}  // namespace velmora::win
