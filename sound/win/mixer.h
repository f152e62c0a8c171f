// The recording-line selector: the single-select (multiplexer) control of the
// wave-in destination line of the mixer that belongs to wave-in device 0.
// Where there is no such control (a mixer control that toggles each input, or
// none at all) the lists are empty and nothing is ever changed.
#pragma once
#include <windows.h>
#include <mmsystem.h>

#include <cstdint>
#include <string>
#include <vector>

#include "engine/win/handles.h"

namespace velmora::win {

class Mixer {
 public:
  // One line per source of every wave-in destination of every mixer, joined
  // by CR LF.
  const std::string& Init();

  // A mixer device exists and its wave-in selector has items.
  bool IsEnableMixer();

  // The selector's item names in its own order (UTF-8); empty when there is
  // none. retErrorNo: 0 or the system's error number of the step that failed;
  // retSelected: the first item whose value has bit 0 set, -1 when none.
  std::vector<std::string> GetWaveInLines(int32_t* retErrorNo = nullptr,
                                          int32_t* retSelected = nullptr);

  // Selects one item (by name when given and found, otherwise by index) in
  // one write of all items' values. Returns 0 or the system's error number.
  int32_t SetWaveInLine(const std::string* name = nullptr, int32_t index = 0);

 private:
  struct Selector {
    DWORD controlId = 0;
    std::vector<std::string> names;
    std::vector<int32_t> values;
  };
  // Opens device 0 if needed and reads the selector; returns 0 or an error number.
  MMRESULT FindSelector(Selector& out);

  UniqueMixer mixer_;
  std::string description_;
};

}  // namespace velmora::win
