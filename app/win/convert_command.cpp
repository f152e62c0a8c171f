#include "app/win/convert_command.h"

#include "app/win/console.h"
#include "conversion/win/convert_command.h"
#include "engine/result_codes.h"
#include "engine/win/system_message.h"

namespace velmora::win {

int RunConvertCommand(const std::vector<std::wstring>& args) {
  if (args.size() != 2 && args.size() != 3) {
    PrintLine("usage: velmora.exe /convert MOVIE.QRK OUT.avi [WAVE.wav]");
    return MakeResultCode(kErrNotInitialised);
  }
  std::string summary;
  const int32_t rc = ConvertMovieToAvi(Narrow(args[0]), Narrow(args[1]),
                                       args.size() == 3 ? Narrow(args[2]) : std::string(), summary);
  PrintLine(summary);
  return rc;
}

}  // namespace velmora::win
