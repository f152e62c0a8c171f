// Printing from a GUI-subsystem program: attach to the console of the
// program that started us (a command prompt) or write to whatever standard
// output we were handed (a pipe, a file).
#pragma once
#include <string>

namespace velmora::win {

void AttachParentConsole();
void PrintLine(const std::string& utf8);

}  // namespace velmora::win
