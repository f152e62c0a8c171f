#include "sound/line_choice.h"

namespace velmora::sound {

int32_t ChooseLine(const std::vector<std::string>& names, const std::string* name, int32_t index) {
  if (name) {
    for (size_t i = 0; i < names.size(); ++i) {
      if (names[i] == *name) return static_cast<int32_t>(i);
    }
  }
  if (index < 0 || static_cast<size_t>(index) >= names.size()) return -1;
  return index;
}

int32_t FirstSelected(const std::vector<int32_t>& values) {
  for (size_t i = 0; i < values.size(); ++i) {
    if (values[i] & 1) return static_cast<int32_t>(i);
  }
  return -1;
}

std::vector<int32_t> SelectionValues(size_t count, int32_t chosen) {
  std::vector<int32_t> v(count, 0);
  if (chosen >= 0 && static_cast<size_t>(chosen) < count) v[static_cast<size_t>(chosen)] = 1;
  return v;
}

}  // namespace velmora::sound
