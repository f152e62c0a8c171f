// Numbers as the program reads and rounds them everywhere: typed region
// boxes, sound labels, window-position lines and the engine's milliseconds.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace velmora {

// Round half to even (banker's rounding): 2.5 -> 2, 3.5 -> 4, -2.5 -> -2.
// Saturates at the 64-bit limits; NaN gives 0.
int64_t RoundHalfEven(double value);

// Saturates instead of overflowing (NaN gives INT32_MIN).
int32_t ClampToInt32(double value);

// The leading decimal number of a text: blanks (space, tab) skipped, an
// optional sign, digits, an optional "." and fraction digits; reading stops at
// the first character that cannot continue the number. No digits is 0. The
// digits are kept as text so a caller can scale exactly ("11.025" x 1000 is
// 11025, not 11024.999...). Only ASCII bytes can belong to a number, so UTF-8
// text is read byte by byte.
struct LeadingNumber {
  bool negative = false;
  std::string intDigits;
  std::string fracDigits;
};
LeadingNumber ReadLeadingNumber(std::string_view text);

// The leading number rounded to an integer, halves to even, saturated to
// 32 bits: "12abc" -> 12, "3.6" -> 4, " -10 //x" -> -10, "abc" -> 0.
int32_t LeadingInteger(std::string_view text);

// Integer part of (leading number x 1000), exact: "11.025kHz" -> 11025.
int32_t LeadingThousandsTruncated(std::string_view text);

}  // namespace velmora
