#include "app/win/command_line.h"

#include <windows.h>

#include "app/win/convert_command.h"
#include "app/win/console.h"
#include "app/win/demo_command.h"
#include "app/win/record_command.h"
#include "engine/result_codes.h"
#include "engine/win/text_encoding.h"

namespace velmora::win {
namespace {

struct VerbEntry {
  const wchar_t* name;
  const char* arguments;  // as the usage text shows them
  VerbResult (*run)(const std::vector<std::wstring>& rest);
};

constexpr VerbEntry kVerbs[] = {
    {L"/record", "JOB.QRT", RunRecordCommand},
    {L"/convert", "MOVIE.QRK OUT.avi [WAVE.wav] [/24]", RunConvertCommand},
    {L"/demo", "[FOLDER]", RunDemoCommand},
};

std::string UsageLine(const VerbEntry& v, const char* lead) {
  return std::string(lead) + "velmora.exe " + Narrow(v.name) + " " + v.arguments;
}

}  // namespace

int RunCommandLine(const std::vector<std::wstring>& args, bool& handled) {
  handled = !args.empty();
  if (args.empty()) return 0;
  for (const VerbEntry& v : kVerbs) {
    if (_wcsicmp(args[0].c_str(), v.name) != 0) continue;
    const VerbResult r = v.run(std::vector<std::wstring>(args.begin() + 1, args.end()));
    if (r) return *r;
    PrintLine(UsageLine(v, "usage: "));
    return MakeResultCode(kErrNotInitialised);
  }
  for (const VerbEntry& v : kVerbs) PrintLine(UsageLine(v, &v == kVerbs ? "usage: " : "       "));
  return 2;
}

}  // namespace velmora::win
