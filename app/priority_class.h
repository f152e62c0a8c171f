// The process priority of a recording run. The priority list and settings
// files keep the list's own values, among them -32768 for "やや高" (0xFFFF8000
// as 32 bits, which no system call accepts); the system wants its class bits.
#pragma once
#include <cstdint>

namespace velmora {

// The system's priority class for a settings value: 0 (leave the priority
// alone) for 0 and for any value the list does not offer, since a settings
// file may hold anything.
uint32_t SystemPriorityClass(int32_t settingsValue);

}  // namespace velmora
