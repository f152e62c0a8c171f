// The benchmark API of every bench program: Google Benchmark natively, and in
// the Windows build, where it is not packaged, a small compatible harness, so
// that each benchmark is written once and runs in both.
#pragma once
#if defined(_WIN32)
#include "bench/common/mini_benchmark.h"
#else
#include <benchmark/benchmark.h>
#endif
