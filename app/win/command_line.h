// velmora.exe's command-line verbs: one table, so a new verb is one line.
#pragma once
#include <string>
#include <vector>

namespace velmora::win {

// Runs the verb named by args[0] (case-insensitive) with the remaining
// arguments and returns the process exit code; an unknown verb prints the
// usage and gives 2. `handled` is false only when args is empty.
int RunCommandLine(const std::vector<std::wstring>& args, bool& handled);

}  // namespace velmora::win
