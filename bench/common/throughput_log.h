// Benchmarks record their own throughput here, so that a program can print
// ratios between benchmarks of one run (Google Benchmark hands its results
// only to its reporters, which the Windows harness does not have).
#pragma once
#include <algorithm>
#include <chrono>
#include <limits>
#include <string>

namespace velmora::bench {

// Times every iteration of a benchmark loop and keeps the fastest. On a
// machine shared with other work the fastest iteration is the one least
// disturbed, for the code under test and for its reference alike, so their
// ratio holds still where averages wander.
class FastestLap {
 public:
  // Call at the top of every iteration and once after the loop.
  void Lap() {
    const auto now = std::chrono::steady_clock::now();
    if (started_) fastest_ = std::min(fastest_, std::chrono::duration<double>(now - last_).count());
    last_ = now;
    started_ = true;
  }
  // Seconds of the fastest iteration; 0 when none was completed.
  double Seconds() const { return fastest_ == std::numeric_limits<double>::max() ? 0 : fastest_; }

 private:
  std::chrono::steady_clock::time_point last_{};
  bool started_ = false;
  double fastest_ = std::numeric_limits<double>::max();
};

// Keeps, per name, the best throughput recorded over all runs.
void RecordThroughput(const std::string& name, double bytesPerSecond);

// Bytes per second, or 0 when nothing was recorded under that name.
double BestThroughput(const std::string& name);

}  // namespace velmora::bench
