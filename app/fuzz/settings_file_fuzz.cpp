// Any bytes as a .QRT file: decoding gives a record or nothing, never a read
// outside the input; a record it gives encodes back to the bytes it read.
// The main window then shows such a record (estimate and information list
// saturate rather than overflow), and the same bytes as typed text or a
// positions file are read without fault.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include <string_view>

#include "app/capture_info.h"
#include "app/capture_settings.h"
#include "app/main_window_values.h"
#include "app/window_positions.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace velmora;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  WindowPositions positions;
  ParseWindowPositions(text, positions);
  CheckRegionBox(2, text);
  MainWindowValues typed;
  typed.movieFile = typed.region[0] = typed.soundFormat = std::string(text);
  typed.sound = true;
  SettingsFromControls(typed, {});

  const auto codec = IdentityAnsiCodec();
  const auto s = DecodeSettings(std::span(data, size), codec);
  if (!s) return 0;
  MainWindowValues shown;
  SettingsToControls(*s, {32, true, 4}, shown);
  CaptureInfoText(*s, "");
  EstimateDisk(*s, {});
  const auto again = EncodeSettings(*s, codec);
  // The compressor-options address is written as 0 whatever was read.
  if (!again || again->size() > size ||
      (s->CompressorOptionsAddress == 0 && !std::equal(again->begin(), again->end(), data))) {
    std::abort();
  }
  return 0;
}
