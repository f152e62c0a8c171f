#include "engine/numbers.h"

#include <cmath>
#include <cstddef>

namespace velmora {

int64_t RoundHalfEven(double value) {
  if (std::isnan(value)) return 0;
  // Saturating: a cast of a value beyond 64 bits would be undefined.
  if (value >= 9223372036854775807.0) return INT64_MAX;
  if (value <= -9223372036854775808.0) return INT64_MIN;
  const double r = std::round(value);  // halves away from zero
  if (std::fabs(value - std::trunc(value)) == 0.5 && std::fmod(r, 2.0) != 0) {
    return static_cast<int64_t>(r - std::copysign(1.0, value));
  }
  return static_cast<int64_t>(r);
}

int32_t ClampToInt32(double value) {
  if (!(value > -2147483648.0)) return INT32_MIN;
  if (value > 2147483647.0) return INT32_MAX;
  return static_cast<int32_t>(value);
}

LeadingNumber ReadLeadingNumber(std::string_view t) {
  LeadingNumber n;
  size_t i = 0;
  while (i < t.size() && (t[i] == ' ' || t[i] == '\t')) ++i;
  if (i < t.size() && (t[i] == '-' || t[i] == '+')) n.negative = t[i++] == '-';
  while (i < t.size() && t[i] >= '0' && t[i] <= '9') n.intDigits += t[i++];
  if (i < t.size() && t[i] == '.') {
    ++i;
    while (i < t.size() && t[i] >= '0' && t[i] <= '9') n.fracDigits += t[i++];
  }
  return n;
}

int32_t LeadingInteger(std::string_view text) {
  const LeadingNumber n = ReadLeadingNumber(text);
  // Digit by digit rather than strtod, which would follow the C locale's
  // decimal point; beyond 15 fraction digits nothing changes the rounding.
  double v = 0;
  for (char d : n.intDigits) v = v * 10 + (d - '0');
  double frac = 0, scale = 1;
  for (size_t k = 0; k < n.fracDigits.size() && k < 15; ++k) {
    scale /= 10;
    frac += (n.fracDigits[k] - '0') * scale;
  }
  v += frac;
  v = n.negative ? -v : v;
  if (!(std::fabs(v) < 4e9)) return ClampToInt32(v);
  return ClampToInt32(static_cast<double>(RoundHalfEven(v)));
}

int32_t LeadingThousandsTruncated(std::string_view text) {
  const LeadingNumber n = ReadLeadingNumber(text);
  double v = 0;
  for (char d : n.intDigits) v = v * 10 + (d - '0');
  for (size_t k = 0; k < 3; ++k) v = v * 10 + (k < n.fracDigits.size() ? n.fracDigits[k] - '0' : 0);
  return ClampToInt32(n.negative ? -v : v);
}

}  // namespace velmora
