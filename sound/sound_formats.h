// The twelve sound formats offered to the user, and the parser that turns the
// chosen label's text (not its index) back into the numbers of a wave format.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace velmora::sound {

struct SoundFormat {
  int32_t samplesPerSec = 0;
  int32_t channels = 0;
  int32_t bitsPerSample = 0;
  friend bool operator==(const SoundFormat&, const SoundFormat&) = default;
};

// In list order (UTF-8).
extern const std::array<std::string_view, 12> kSoundFormatLabels;

// The twelve labels joined by CR LF, which is what fills the format list.
std::string SoundFormatListText();

// Reads the label by character positions (counting from 1):
//  - samples per second: integer part of the number in characters 1..6 times 1000;
//  - channels: 2 only when characters 11 and 12 are the half-width "ｽﾃ", else 1;
//  - bits: the leading number of the text from character 16 on, rounded.
// The list's own labels spell stereo in full-width katakana, so every one of
// them gives 1 channel; the recorder is always asked for mono. That is the
// program's long-standing behaviour and is kept.
SoundFormat ParseSoundLabel(std::string_view utf8Label);

}  // namespace velmora::sound
