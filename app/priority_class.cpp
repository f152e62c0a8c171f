#include "app/priority_class.h"

namespace velmora {

uint32_t SystemPriorityClass(int32_t settingsValue) {
  switch (settingsValue) {
    case 128:
      return 0x80;  // HIGH_PRIORITY_CLASS, "高"
    case -32768:
      return 0x8000;  // ABOVE_NORMAL_PRIORITY_CLASS, "やや高"
    case 32:
      return 0x20;  // NORMAL_PRIORITY_CLASS, "通常"
    case 16384:
      return 0x4000;  // BELOW_NORMAL_PRIORITY_CLASS, "やや低"
    case 64:
      return 0x40;  // IDLE_PRIORITY_CLASS, "低（アイドル）"
    default:
      return 0;
  }
}

}  // namespace velmora
