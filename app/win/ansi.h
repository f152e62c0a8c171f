// The settings file's view of the ANSI code page conversions.
#pragma once
#include <optional>
#include <string>

#include "app/capture_settings.h"
#include "engine/win/text_encoding.h"

namespace velmora::win {

// The two conversions (engine/win/text_encoding.h) as the settings file takes them.
AnsiCodec SystemAnsiCodec();

}  // namespace velmora::win
