// Runner of the Windows benchmark harness: the registry, the flags, the
// iteration growth and a console report in Google Benchmark's column order.
#include "bench/common/mini_benchmark.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <regex>
#include <vector>

namespace benchmark {
namespace {

struct Entry {
  std::string name;
  std::function<void(State&)> fn;
};

std::vector<Entry>& Registry() {
  static std::vector<Entry> entries;
  return entries;
}

std::string g_filter = ".";
double g_minSeconds = 0.5;
internal::Benchmark g_handle;  // what registration hands back; nothing is set on it

// 1.5e9 -> "1.5G"
std::string Si(double v) {
  const char* units[] = {"", "k", "M", "G", "T"};
  int u = 0;
  while (v >= 1000 && u < 4) {
    v /= 1000;
    ++u;
  }
  char text[32];
  std::snprintf(text, sizeof text, "%.4g%s", v, units[u]);
  return text;
}

void Report(const std::string& name, const State& s) {
  if (!s.Error().empty()) {
    std::printf("%-44s ERROR OCCURRED: '%s'\n", name.c_str(), s.Error().c_str());
    return;
  }
  const double seconds = std::max(s.Seconds(), 1e-12);
  const double ns = seconds * 1e9 / double(std::max<IterationCount>(s.iterations(), 1));
  std::string extra;
  if (s.bytes_processed())
    extra += " bytes_per_second=" + Si(double(s.bytes_processed()) / seconds) + "/s";
  for (const auto& [key, c] : s.counters) {
    double v = c.value;
    if (c.flags & Counter::kIsRate) v /= seconds;
    if (c.flags & Counter::kAvgIterations) v /= double(s.iterations());
    extra += " " + key + "=" + Si(v);
  }
  if (!s.Label().empty()) extra += " " + s.Label();
  std::printf("%-44s %13.0f ns %13.0f ns %10lld%s\n", name.c_str(), ns, ns,
              static_cast<long long>(s.iterations()), extra.c_str());
}

}  // namespace

namespace internal {
Benchmark* Register(std::string name, std::function<void(State&)> fn) {
  Registry().push_back({std::move(name), std::move(fn)});
  return &g_handle;
}
}  // namespace internal

void Initialize(int* argc, char** argv) {
  for (int i = 1; i < *argc; ++i) {
    const char* a = argv[i];
    if (std::strncmp(a, "--benchmark_filter=", 19) == 0) g_filter = a + 19;
    if (std::strncmp(a, "--benchmark_min_time=", 21) == 0) g_minSeconds = std::atof(a + 21);
  }
}

size_t RunSpecifiedBenchmarks() {
  const std::regex filter(g_filter);
  std::printf("%-44s %16s %16s %10s\n", "Benchmark", "Time", "CPU", "Iterations");
  std::printf("%s\n", std::string(90, '-').c_str());
  size_t ran = 0;
  for (const Entry& e : Registry()) {
    if (!std::regex_search(e.name, filter)) continue;
    IterationCount n = 1;
    for (;;) {
      State s(n);
      e.fn(s);
      // Grow the iteration count towards the minimum time, at most tenfold a
      // step, as Google Benchmark does, and report the run that reached it.
      if (!s.Error().empty() || s.Seconds() >= g_minSeconds || n >= 1000000000) {
        Report(e.name, s);
        break;
      }
      const double grow = s.Seconds() > 0 ? g_minSeconds * 1.4 / s.Seconds() : 10;
      n = std::max<IterationCount>(n + 1, IterationCount(double(n) * std::min(grow, 10.0)));
    }
    std::fflush(stdout);
    ++ran;
  }
  return ran;
}

void Shutdown() {}

}  // namespace benchmark
