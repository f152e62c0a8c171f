// What the conversion progress window shows, computed without a window:
// the strip's four texts and bar width, the title per frame, the title of
// the sound merge, and the 30-entry time ring behind the time estimates.
// The window only draws these (conversion/win/progress_window.h).
#pragma once
#include <array>
#include <cstdint>
#include <string>

namespace velmora {

// Frame times of the last 30 frames, indexed by frame index modulo 30.
// An entry still 0 means fewer than 30 frames have been seen.
class ProgressRing {
 public:
  static constexpr int kSize = 30;
  // Stores `elapsedMs` for frame `frameIndex`; returns the time per frame
  // once the entry after it is filled, else a negative value.
  double Store(int64_t frameIndex, double elapsedMs);
  void Clear() { ring_.fill(0); }

 private:
  std::array<double, kSize> ring_{};
};

struct StripTexts {
  std::string percent;  // "12.3%"
  std::string counter;  // "Frame 12/300"
  std::string total;    // "Total 00:01", empty for the first 29 frames
  std::string rest;     // "Rest 00:09", empty with `total`
};

struct ProgressView {
  StripTexts strip;
  int32_t barWidth = 0;  // pixels of the bar image to show, 0..strip width
  std::string title;
};

// The titles at the start of a conversion and the suffix of the per-frame title.
inline constexpr const char* kWritingAviTitle = "Writing AVI";
inline constexpr const char* kWritingQrkTitle = "Writing QRK";
inline constexpr const char* kAviRecordedSuffix = "% AVI Recorded";
inline constexpr const char* kQrkModifiedSuffix = "% QRK Modified";

// `i` / `n` x 100 with one decimal, rounded half up, as the pattern "###.0"
// prints it: the whole part has no mandatory digit, so 0.3 reads ".3".
std::string PercentText(int64_t i, int64_t n);

// Milliseconds as minutes and seconds "nn:ss", rounded to the nearest
// second; the minutes are those of the hour (two digits, modulo 60).
std::string MinutesSeconds(double ms);

// Everything one frame notification changes. `i` counts from 0; the strip
// shows i, the title i + 1 (whole percent). `reencoding` selects the title.
ProgressView BuildProgressView(int64_t i, int64_t n, double elapsedMs, int32_t stripWidth,
                               bool reencoding, ProgressRing& ring);

// Title during the sound merge: "done/total Rest:<seconds>sec.", the
// seconds ((elapsed / done) x total - total) / 1000 as the shortest decimal
// text of the double. Before the first unit is done the number is left out.
std::string WaveAddTitle(int32_t done, int32_t total, double elapsedMs);

}  // namespace velmora
