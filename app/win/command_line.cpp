#include "app/win/command_line.h"

#include <windows.h>

#include "app/win/convert_command.h"
#include "app/win/record_command.h"

namespace velmora::win {
namespace {

using Verb = int (*)(const std::vector<std::wstring>& rest);

struct VerbEntry {
  const wchar_t* name;
  Verb run;
};

constexpr VerbEntry kVerbs[] = {
    {L"/record", RunRecordCommand},
    {L"/convert", RunConvertCommand},
};

}  // namespace

int RunCommandLine(const std::vector<std::wstring>& args, bool& handled) {
  handled = false;
  if (args.empty()) return 0;
  for (const VerbEntry& v : kVerbs) {
    if (_wcsicmp(args[0].c_str(), v.name) == 0) {
      handled = true;
      return v.run(std::vector<std::wstring>(args.begin() + 1, args.end()));
    }
  }
  return 0;
}

}  // namespace velmora::win
