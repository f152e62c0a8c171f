// The two decisions the recording-line selector makes about its items, kept
// apart from the mixer calls so they can be tested without a sound card.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace velmora::sound {

// The item to select: the one named `name` when a name is given and found,
// otherwise `index`. -1 when that index is not an item.
int32_t ChooseLine(const std::vector<std::string>& names, const std::string* name, int32_t index);

// The selected item: the first whose value has bit 0 set; -1 when none has.
int32_t FirstSelected(const std::vector<int32_t>& values);

// The values to write for selecting `chosen`: exactly that one is 1.
std::vector<int32_t> SelectionValues(size_t count, int32_t chosen);

}  // namespace velmora::sound
