#include "app/win/convert_command.h"

#include "app/win/console.h"
#include "conversion/win/convert_command.h"
#include "engine/win/text_encoding.h"

namespace velmora::win {

VerbResult RunConvertCommand(const std::vector<std::wstring>& args) {
  std::vector<std::wstring> files;
  bool to24 = false;
  for (const std::wstring& a : args) {
    if (_wcsicmp(a.c_str(), L"/24") == 0) {
      to24 = true;
    } else {
      files.push_back(a);
    }
  }
  if (files.size() != 2 && files.size() != 3) return std::nullopt;
  std::string summary;
  const int32_t rc =
      ConvertMovieToAvi(Narrow(files[0]), Narrow(files[1]),
                        files.size() == 3 ? Narrow(files[2]) : std::string(), summary, to24);
  PrintLine(summary);
  return rc;
}

}  // namespace velmora::win
