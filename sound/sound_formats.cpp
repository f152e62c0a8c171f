#include "sound/sound_formats.h"

#include <cmath>
#include <cstddef>

namespace velmora::sound {

const std::array<std::string_view, 12> kSoundFormatLabels = {
    "11.025kHz モノラル 8 ビット",  "11.025kHz モノラル 16 ビット", "11.025kHz ステレオ 8 ビット",
    "11.025kHz ステレオ 16 ビット", "22.050kHz モノラル 8 ビット",  "22.050kHz モノラル 16 ビット",
    "22.050kHz ステレオ 8 ビット",  "22.050kHz ステレオ 16 ビット", "44.100kHz モノラル 8 ビット",
    "44.100kHz モノラル 16 ビット", "44.100kHz ステレオ 8 ビット",  "44.100kHz ステレオ 16 ビット",
};

std::string SoundFormatListText() {
  std::string out;
  for (size_t i = 0; i < kSoundFormatLabels.size(); ++i) {
    if (i) out += "\r\n";
    out += kSoundFormatLabels[i];
  }
  return out;
}

namespace {

// Splits UTF-8 into code points; a malformed byte counts as one character of
// its own, so positions stay defined for any input.
std::u32string CodePoints(std::string_view s) {
  std::u32string out;
  size_t i = 0;
  while (i < s.size()) {
    const auto c = static_cast<uint8_t>(s[i]);
    size_t len = c < 0x80           ? 1
                 : (c >> 5) == 0x6  ? 2
                 : (c >> 4) == 0xE  ? 3
                 : (c >> 3) == 0x1E ? 4
                                    : 0;
    char32_t cp = len == 1 ? c : len == 2 ? (c & 0x1F) : len == 3 ? (c & 0x0F) : (c & 0x07);
    bool ok = len != 0 && i + len <= s.size();
    for (size_t k = 1; ok && k < len; ++k) {
      const auto cc = static_cast<uint8_t>(s[i + k]);
      ok = (cc & 0xC0) == 0x80;
      cp = (cp << 6) | (cc & 0x3F);
    }
    if (!ok) {
      out.push_back(0xFFFD);
      ++i;
      continue;
    }
    out.push_back(cp);
    i += len;
  }
  return out;
}

// The leading decimal number of a text: blanks, an optional sign, digits, an
// optional fraction. No number gives 0. Parts kept apart so that callers can
// scale without binary floating-point error ("11.025" x 1000 is exactly 11025).
struct LeadingNumber {
  bool negative = false;
  std::string intDigits;
  std::string fracDigits;
};

LeadingNumber ReadLeadingNumber(std::u32string_view t) {
  LeadingNumber n;
  size_t i = 0;
  while (i < t.size() && (t[i] == U' ' || t[i] == U'\t')) ++i;
  if (i < t.size() && (t[i] == U'-' || t[i] == U'+')) n.negative = t[i++] == U'-';
  while (i < t.size() && t[i] >= U'0' && t[i] <= U'9') n.intDigits += static_cast<char>(t[i++]);
  if (i < t.size() && t[i] == U'.') {
    ++i;
    while (i < t.size() && t[i] >= U'0' && t[i] <= U'9') n.fracDigits += static_cast<char>(t[i++]);
  }
  return n;
}

int32_t ClampToInt32(double v) {
  if (!(v > -2147483648.0)) return INT32_MIN;
  if (v > 2147483647.0) return INT32_MAX;
  return static_cast<int32_t>(v);
}

// Integer part of (number x 1000), exact.
int32_t ThousandsTruncated(const LeadingNumber& n) {
  double v = 0;
  for (char d : n.intDigits) v = v * 10 + (d - '0');
  for (size_t k = 0; k < 3; ++k) v = v * 10 + (k < n.fracDigits.size() ? n.fracDigits[k] - '0' : 0);
  return ClampToInt32(n.negative ? -v : v);
}

// The number rounded to an integer, halves to even (by hand: strtod would
// follow the C locale's decimal point).
int32_t RoundedHalfEven(const LeadingNumber& n) {
  double v = 0;
  for (char d : n.intDigits) v = v * 10 + (d - '0');
  double frac = 0, scale = 1;
  for (size_t k = 0; k < n.fracDigits.size() && k < 15; ++k) {
    scale /= 10;
    frac += (n.fracDigits[k] - '0') * scale;
  }
  v += frac;
  return ClampToInt32(std::nearbyint(n.negative ? -v : v));
}

std::u32string_view Chars(const std::u32string& s, size_t from1, size_t count) {
  if (from1 - 1 >= s.size()) return {};
  return std::u32string_view(s).substr(from1 - 1, count);
}

}  // namespace

SoundFormat ParseSoundLabel(std::string_view utf8Label) {
  const std::u32string c = CodePoints(utf8Label);
  SoundFormat f;
  f.samplesPerSec = ThousandsTruncated(ReadLeadingNumber(Chars(c, 1, 6)));
  f.channels = Chars(c, 11, 2) == U"ｽﾃ" ? 2 : 1;
  f.bitsPerSample = RoundedHalfEven(ReadLeadingNumber(Chars(c, 16, std::u32string::npos)));
  return f;
}

}  // namespace velmora::sound
