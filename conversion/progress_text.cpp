#include "conversion/progress_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "engine/numbers.h"

namespace velmora {

double ProgressRing::Store(int64_t frameIndex, double elapsedMs) {
  const auto slot = [](int64_t k) { return static_cast<size_t>(((k % kSize) + kSize) % kSize); };
  ring_[slot(frameIndex)] = elapsedMs;
  const double oldest = ring_[slot(frameIndex + 1)];
  if (!(oldest >= 0.00001)) return -1;
  // The span of the last 30 entries is 29 intervals; dividing by 30 is the
  // established estimate and stays.
  return (ring_[slot(frameIndex)] - oldest) / kSize;
}

std::string PercentText(int64_t i, int64_t n) {
  if (n <= 0 || i < 0) return ".0%";
  // Tenths of a percent, rounded half up, in exact integer arithmetic:
  // floor(1000 i / n + 1/2).
  const int64_t tenths = (2000 * i + n) / (2 * n);
  const int64_t whole = tenths / 10;
  std::string text = whole == 0 ? std::string() : std::to_string(whole);
  text += '.';
  text += static_cast<char>('0' + tenths % 10);
  text += '%';
  return text;
}

std::string MinutesSeconds(double ms) {
  const auto seconds = static_cast<int64_t>(std::floor(std::max(ms, 0.0) / 1000.0 + 0.5));
  const int64_t mm = seconds / 60 % 60, ss = seconds % 60;
  std::string text;
  text += static_cast<char>('0' + mm / 10);
  text += static_cast<char>('0' + mm % 10);
  text += ':';
  text += static_cast<char>('0' + ss / 10);
  text += static_cast<char>('0' + ss % 10);
  return text;
}

ProgressView BuildProgressView(int64_t i, int64_t n, double elapsedMs, int32_t stripWidth,
                               bool reencoding, ProgressRing& ring) {
  ProgressView view;
  const double perFrame = ring.Store(i, elapsedMs);
  const double fraction = n > 0 ? static_cast<double>(i) / static_cast<double>(n) : 0.0;
  // The factor 1.01 lets the bar reach the end just before the last frame.
  const int64_t bar = RoundHalfEven(fraction * 1.01 * stripWidth);
  view.barWidth = static_cast<int32_t>(std::clamp<int64_t>(bar, 0, std::max(stripWidth, 0)));
  view.strip.percent = PercentText(i, n);
  view.strip.counter = "Frame " + std::to_string(i) + "/" + std::to_string(n);
  if (perFrame >= 0) {
    view.strip.total = "Total " + MinutesSeconds(elapsedMs);
    view.strip.rest = "Rest " + MinutesSeconds(static_cast<double>(n - i) * perFrame);
  }
  // The title counts the frame just finished, so the last one reads 100%.
  const int64_t wholePercent = n > 0 ? (i + 1) * 100 / n : 0;
  view.title =
      std::to_string(wholePercent) + (reencoding ? kQrkModifiedSuffix : kAviRecordedSuffix);
  return view;
}

std::string WaveAddTitle(int32_t done, int32_t total, double elapsedMs) {
  std::string title = std::to_string(done) + "/" + std::to_string(total) + " Rest:";
  if (done > 0) {
    const auto elapsed = static_cast<double>(RoundHalfEven(elapsedMs));
    const double rest = ((elapsed / done) * total - total) / 1000.0;
    char digits[64];
    const auto end = std::to_chars(digits, digits + sizeof digits, rest).ptr;
    title.append(digits, end);
  }
  return title + "sec.";
}

}  // namespace velmora
