#include "conversion/avi5/avi_status.h"

#include <array>

namespace velmora::avi {

namespace {
// Indexed by -status.
constexpr std::array<const char*, 15> kTexts{
#define VELMORA_AVI_STATUS_TEXT(name, number, text) text,
    VELMORA_AVI_STATUSES(VELMORA_AVI_STATUS_TEXT)
#undef VELMORA_AVI_STATUS_TEXT
};
constexpr bool ListedInOrder() {
  int32_t expected = 0;
#define VELMORA_AVI_STATUS_CHECK(name, number, text) \
  if ((number) != expected--) return false;
  VELMORA_AVI_STATUSES(VELMORA_AVI_STATUS_CHECK)
#undef VELMORA_AVI_STATUS_CHECK
  return true;
}
static_assert(ListedInOrder());
static_assert(kTexts.size() == 1 - kAviFirstStatus);
}  // namespace

std::string AviStatusText(int32_t status) {
  if (status <= 0 && status >= kAviFirstStatus) return kTexts[size_t(-status)];
  return "不明なエラーです。(" + std::to_string(status) + ")";
}

}  // namespace velmora::avi
