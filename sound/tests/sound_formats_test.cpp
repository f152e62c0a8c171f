#include "sound/sound_formats.h"

#include <gtest/gtest.h>

namespace velmora::sound {
namespace {

TEST(SoundFormats, ListTextJoinsTheLabelsWithCrLf) {
  const std::string text = SoundFormatListText();
  EXPECT_TRUE(text.starts_with("11.025kHz モノラル 8 ビット\r\n11.025kHz モノラル 16 ビット\r\n"));
  EXPECT_TRUE(text.ends_with("\r\n44.100kHz ステレオ 16 ビット"));
}

// Every label of the list, with what it must parse to. Stereo labels give one
// channel: their katakana is full-width, the parser looks for half-width.
TEST(SoundFormats, EveryListLabelParsesToItsRateBitsAndOneChannel) {
  const SoundFormat expected[12] = {
      {11025, 1, 8}, {11025, 1, 16}, {11025, 1, 8}, {11025, 1, 16}, {22050, 1, 8}, {22050, 1, 16},
      {22050, 1, 8}, {22050, 1, 16}, {44100, 1, 8}, {44100, 1, 16}, {44100, 1, 8}, {44100, 1, 16},
  };
  for (size_t i = 0; i < 12; ++i) {
    const SoundFormat f = ParseSoundLabel(kSoundFormatLabels[i]);
    EXPECT_EQ(f, expected[i]) << "label " << i + 1 << ": " << kSoundFormatLabels[i] << " -> "
                              << f.samplesPerSec << "/" << f.channels << "/" << f.bitsPerSample;
  }
}

TEST(SoundFormats, ParserReadsCharacterPositionsNotBytesOrWords) {
  struct Case {
    const char* label;
    SoundFormat want;
  } cases[] = {
      // Half-width "ｽﾃ" at characters 11 and 12 is the only way to two channels.
      {"44.100kHz ｽﾃﾚｵ 16 ﾋﾞｯﾄ", {44100, 2, 16}},
      // One space too many shifts every later position.
      {"44.100 kHz ｽﾃﾚｵ 16 ﾋﾞｯﾄ", {44100, 1, 16}},
      {"11.025kHz モノ 16 ビット", {11025, 1, 0}},
      // No number in the first six characters.
      {"abcdefkHz モノラル 8 ビット", {0, 1, 8}},
      {"", {0, 1, 0}},
      {"8", {8000, 1, 0}},
      // Only six characters count for the rate; the rest is truncated, not rounded.
      {"44.1009kHz モノラル 8 ビット", {44100, 1, 8}},
      {"0.0005kHz モノラル 8 ビット", {0, 1, 8}},
      {"-1.5  kHz モノラル 8 ビット", {-1500, 1, 8}},
      // Bits are rounded, halves to even.
      {"11.025kHz モノラル 8.5 ビット", {11025, 1, 8}},
      {"11.025kHz モノラル 9.5 ビット", {11025, 1, 10}},
      {"11.025kHz モノラル 15.7ビット", {11025, 1, 16}},
      // A huge number saturates instead of overflowing.
      {"99999kHz モノラル 99999999999999", {99999000, 1, INT32_MAX}},
      // Malformed UTF-8 bytes count as one character each.
      {"\xff\xfe.025kHz モノラル 8 ビット", {0, 1, 8}},
  };
  for (const Case& c : cases) {
    const SoundFormat f = ParseSoundLabel(c.label);
    EXPECT_EQ(f, c.want) << c.label << " -> " << f.samplesPerSec << "/" << f.channels << "/"
                         << f.bitsPerSample;
  }
}

}  // namespace
}  // namespace velmora::sound
