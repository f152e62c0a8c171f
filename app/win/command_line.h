// velmora.exe's command-line verbs: one table, so a new verb is one line.
#pragma once
#include <string>
#include <vector>

namespace velmora::win {

// Runs the verb named by args[0] (case-insensitive) with the remaining
// arguments and returns the process exit code; `handled` is false when
// args is empty or names no verb.
int RunCommandLine(const std::vector<std::wstring>& args, bool& handled);

}  // namespace velmora::win
