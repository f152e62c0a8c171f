#include "app/win/ansi.h"

namespace velmora::win {

AnsiCodec SystemAnsiCodec() { return {&AnsiFromUtf8, &Utf8FromAnsi}; }

}  // namespace velmora::win
