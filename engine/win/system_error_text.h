// The platform's message text for a system error number, as UTF-8.
#pragma once
#include <cstdint>
#include <string>

namespace velmora::win {

// Language-neutral text from the system message table, no inserts, cut at the
// first NUL, keeping the platform's trailing line break. Empty when unknown.
std::string SystemMessage(uint32_t errorNumber);

// The engine's text for a result code, -10 with the system's message for its
// parameter: what Capture::GetError says, without a Capture.
std::string ResultText(int32_t code);

}  // namespace velmora::win
