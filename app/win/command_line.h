// velmora.exe's command-line verbs: one table, which also gives the usage
// text, so a new verb is one line.
#pragma once
#include <optional>
#include <string>
#include <vector>

namespace velmora::win {

// What a verb gives back: the process exit code, or nothing when its
// arguments do not fit (the caller then prints the verb's usage).
using VerbResult = std::optional<int>;

// Runs the verb named by args[0] (case-insensitive) with the remaining
// arguments and returns the process exit code. Arguments that do not fit the
// verb print its usage and give the engine's "not initialised" code; an
// unknown verb prints every verb's usage and gives 2. `handled` is false
// only when args is empty.
int RunCommandLine(const std::vector<std::wstring>& args, bool& handled);

}  // namespace velmora::win
