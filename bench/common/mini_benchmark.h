// The part of Google Benchmark's interface that Velmora's benchmarks use, for
// the Windows build: State with the range-for loop, SetBytesProcessed,
// counters, BENCHMARK / BENCHMARK_CAPTURE registration, BENCHMARK_MAIN, and
// the --benchmark_filter and --benchmark_min_time flags. Like the original it
// grows the iteration count until one run lasts the minimum time, and reports
// that run.
#pragma once
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>

namespace benchmark {

using IterationCount = int64_t;

struct Counter {
  enum Flags { kDefaults = 0, kIsRate = 1, kAvgIterations = 2 };
  double value = 0;
  Flags flags = kDefaults;
  Counter(double v = 0, Flags f = kDefaults) : value(v), flags(f) {}
  operator double() const { return value; }
};

class State {
 public:
  explicit State(IterationCount iterations) : maxIterations_(iterations) {}

  // Marked unused like the original, so that `for (auto _ : state)` is quiet.
  struct __attribute__((unused)) Value {};
  class Iterator {
   public:
    Iterator(IterationCount left, State* state) : left_(left), state_(state) {}
    Value operator*() const { return {}; }
    Iterator& operator++() {
      --left_;
      return *this;
    }
    bool operator!=(const Iterator&) {
      if (left_ > 0) return true;
      state_->Stop();
      return false;
    }

   private:
    IterationCount left_;
    State* state_;
  };
  Iterator begin() {
    start_ = std::chrono::steady_clock::now();
    return Iterator(maxIterations_, this);
  }
  Iterator end() { return Iterator(0, this); }

  IterationCount iterations() const { return maxIterations_; }
  void SetBytesProcessed(int64_t bytes) { bytes_ = bytes; }
  int64_t bytes_processed() const { return bytes_; }
  void SetLabel(const std::string& label) { label_ = label; }
  void SkipWithError(const char* message) {
    error_ = message;
    maxIterations_ = 0;
  }

  std::map<std::string, Counter> counters;

  // For the runner.
  double Seconds() const { return seconds_; }
  const std::string& Error() const { return error_; }
  const std::string& Label() const { return label_; }

 private:
  void Stop() {
    seconds_ = std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
  }

  IterationCount maxIterations_;
  std::chrono::steady_clock::time_point start_{};
  double seconds_ = 0;
  int64_t bytes_ = 0;
  std::string label_, error_;
};

template <class T>
inline void DoNotOptimize(T&& value) {
  asm volatile("" : : "r,m"(value) : "memory");
}
inline void ClobberMemory() { asm volatile("" : : : "memory"); }

namespace internal {
class Benchmark {};
Benchmark* Register(std::string name, std::function<void(State&)> fn);
}  // namespace internal

template <class Fn>
internal::Benchmark* RegisterBenchmark(const char* name, Fn&& fn) {
  return internal::Register(name, std::forward<Fn>(fn));
}

void Initialize(int* argc, char** argv);
size_t RunSpecifiedBenchmarks();
void Shutdown();

}  // namespace benchmark

#define MINI_BENCHMARK_CONCAT2(a, b) a##b
#define MINI_BENCHMARK_CONCAT(a, b) MINI_BENCHMARK_CONCAT2(a, b)
#define BENCHMARK(fn)                                                              \
  [[maybe_unused]] static ::benchmark::internal::Benchmark* MINI_BENCHMARK_CONCAT( \
      mini_bm_, __COUNTER__) = ::benchmark::internal::Register(#fn, fn)
#define BENCHMARK_CAPTURE(fn, caseName, ...)                                                     \
  [[maybe_unused]] static ::benchmark::internal::Benchmark* MINI_BENCHMARK_CONCAT(mini_bm_,      \
                                                                                  __COUNTER__) = \
      ::benchmark::internal::Register(#fn "/" #caseName,                                         \
                                      [](::benchmark::State& st) { fn(st, __VA_ARGS__); })
#define BENCHMARK_MAIN()                   \
  int main(int argc, char** argv) {        \
    ::benchmark::Initialize(&argc, argv);  \
    ::benchmark::RunSpecifiedBenchmarks(); \
    ::benchmark::Shutdown();               \
    return 0;                              \
  }
