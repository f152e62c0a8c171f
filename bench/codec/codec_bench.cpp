// Frame codec speed on 1920 x 1080 x 32-bit frames, each figure beside the
// memory operation it competes with, measured in the same run: compressing
// beside memcmp of two equal frames (memcmp stops at the first difference,
// so the reference always compares the whole frame), decoding beside memcpy
// of a frame. The closing table prints the ratios, and beside each
// compress figure the traffic floor of the case (see BM_StreamFloor).
//
// Timing takes the fastest iteration of each benchmark: on a machine shared
// with other work that is the figure least disturbed, for the codec and its
// reference alike.
#include <immintrin.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "bench/common/benchmark_api.h"
#include "bench/common/throughput_log.h"
#include "engine/frame_codec.h"
#include "engine/frame_encoder_internal.h"

namespace {

using velmora::bench::BestThroughput;
using velmora::bench::FastestLap;
using velmora::bench::RecordThroughput;

constexpr size_t kWidth = 1920, kHeight = 1080, kUnits = kWidth * kHeight, kBytes = 4 * kUnits;

enum class Case { Unchanged, RowsOnePercent, Rectangle, AllUnits, EveryOtherUnit, RandomHalf };

struct CaseInfo {
  const char* name;
  double compressTarget;  // least acceptable compress / memcmp
  double decodeTarget;    // least acceptable decode / memcpy, 0 when none
};

const std::map<Case, CaseInfo> kCases = {
    {Case::Unchanged, {"unchanged", 0.8, 0}},        {Case::RowsOnePercent, {"rows_1pct", 0.7, 0}},
    {Case::Rectangle, {"rect_640x360", 0.6, 0}},     {Case::AllUnits, {"every_unit", 0.35, 0.75}},
    {Case::EveryOtherUnit, {"every_other", 0.2, 0}}, {Case::RandomHalf, {"random_50pct", 0.2, 0}},
};

std::vector<uint8_t> RandomFrame(uint32_t seed) {
  std::mt19937 rng(seed);
  std::vector<uint8_t> f(kBytes);
  for (size_t i = 0; i < kBytes; i += 4) {
    const uint32_t v = rng();
    std::memcpy(&f[i], &v, 4);
  }
  return f;
}

const std::vector<uint8_t>& Previous() {
  static const std::vector<uint8_t> prev = RandomFrame(1);
  return prev;
}

std::vector<uint8_t> MakeCurrent(Case c) {
  std::vector<uint8_t> cur = Previous();
  std::mt19937 rng(2);
  auto change = [&](size_t unit) { cur[4 * unit] ^= 0x5A; };
  for (size_t y = 0; y < kHeight; ++y) {
    for (size_t x = 0; x < kWidth; ++x) {
      const size_t u = y * kWidth + x;
      switch (c) {
        case Case::Unchanged:
          break;
        case Case::RowsOnePercent:
          if (y % 100 == 50) change(u);
          break;  // 11 of 1080 rows
        case Case::Rectangle:
          if (x >= 640 && x < 1280 && y >= 360 && y < 720) change(u);
          break;
        case Case::AllUnits:
          change(u);
          break;
        case Case::EveryOtherUnit:
          if (u % 2 == 1) change(u);
          break;
        case Case::RandomHalf:
          if (rng() & 1) change(u);
          break;
      }
    }
  }
  return cur;
}

struct CaseData {
  std::vector<uint8_t> cur, payload;
};

CaseData& Data(Case c) {
  static std::map<Case, CaseData> data;
  CaseData& d = data[c];
  if (d.cur.empty()) {
    d.cur = MakeCurrent(c);
    d.payload.resize(velmora::MaxPayloadBytes(kBytes));
    const int32_t units =
        velmora::CompressFrame(d.payload.data(), d.cur.data(), Previous().data(), kUnits);
    d.payload.resize(size_t(units) * 4);
  }
  return d;
}

std::string Key(const char* what, Case c) { return std::string(what) + "/" + kCases.at(c).name; }

void Finish(benchmark::State& state, const char* what, Case c, FastestLap& lap) {
  lap.Lap();
  state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(kBytes));
  if (lap.Seconds() > 0) RecordThroughput(Key(what, c), double(kBytes) / lap.Seconds());
}

void TimeCompress(benchmark::State& state, Case c, const char* what,
                  int32_t (*compress)(uint8_t*, const uint8_t*, const uint8_t*, int32_t)) {
  const CaseData& d = Data(c);
  std::vector<uint8_t> out(velmora::MaxPayloadBytes(kBytes));
  int32_t units = 0;
  FastestLap lap;
  for (auto _ : state) {
    lap.Lap();
    units = compress(out.data(), d.cur.data(), Previous().data(), kUnits);
    benchmark::DoNotOptimize(units);
    benchmark::ClobberMemory();
  }
  Finish(state, what, c, lap);
  state.counters["payload_bytes"] = double(units) * 4;
}

// The entry QRX.dll exports (it picks AVX2 where the processor has it).
void BM_Compress(benchmark::State& state, Case c) {
  TimeCompress(state, c, "compress", velmora::CompressFrame);
}

// The baseline path that processors without AVX2 take.
void BM_CompressSse2(benchmark::State& state, Case c) {
  TimeCompress(state, c, "compress_sse2", velmora::codec_internal::CompressFrameSse2);
}

void BM_Memcmp(benchmark::State& state, Case c) {
  static const std::vector<uint8_t> equalCopy = Previous();
  FastestLap lap;
  for (auto _ : state) {
    lap.Lap();
    int r = std::memcmp(equalCopy.data(), Previous().data(), kBytes);
    benchmark::DoNotOptimize(r);
  }
  Finish(state, "memcmp", c, lap);
}

// What memory traffic alone allows for a case: one pass that reads and
// compares both frames and writes as many bytes as the case's payload, with
// no run logic, in the widest vectors the encoder uses. An encoder cannot
// beat it by much; its ratio to memcmp shows how far the reference, which
// only reads, is from any encoder on that case.
__attribute__((target("avx2"))) int StreamPass(uint8_t* out, const uint8_t* cur,
                                               const uint8_t* prev, uint64_t step) {
  uint64_t written = 0;  // in 1/65536ths of a byte
  __m256i equal = _mm256_set1_epi32(-1);
  for (size_t i = 0; i < kBytes; i += 64) {
    uint8_t* dst = out + (written >> 16);
    for (size_t k = 0; k < 64; k += 32) {
      const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(cur + i + k));
      const __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(prev + i + k));
      equal = _mm256_and_si256(equal, _mm256_cmpeq_epi32(a, b));
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + k), a);
    }
    written += step;
  }
  return _mm256_movemask_epi8(equal);
}

void BM_StreamFloor(benchmark::State& state, Case c) {
  if (!velmora::codec_internal::CpuHasAvx2()) {
    state.SkipWithError("needs AVX2");
    return;
  }
  const CaseData& d = Data(c);
  std::vector<uint8_t> out(velmora::MaxPayloadBytes(kBytes) + 64);
  // Output bytes per 64 input bytes, in 1/65536ths.
  const uint64_t step = uint64_t(d.payload.size()) * 64 * 65536 / kBytes;
  FastestLap lap;
  for (auto _ : state) {
    lap.Lap();
    int allEqual = StreamPass(out.data(), d.cur.data(), Previous().data(), step);
    benchmark::DoNotOptimize(allEqual);
    benchmark::ClobberMemory();
  }
  Finish(state, "floor", c, lap);
}

void BM_Decode(benchmark::State& state, Case c) {
  const CaseData& d = Data(c);
  std::vector<uint8_t> frame(kBytes);
  FastestLap lap;
  for (auto _ : state) {
    lap.Lap();
    int32_t r = velmora::DecodeFrame(d.payload.data(), d.payload.size(), Previous().data(),
                                     frame.data(), kBytes);
    benchmark::DoNotOptimize(r);
    benchmark::ClobberMemory();
  }
  Finish(state, "decode", c, lap);
}

void BM_Memcpy(benchmark::State& state, Case c) {
  const CaseData& d = Data(c);
  std::vector<uint8_t> frame(kBytes);
  FastestLap lap;
  for (auto _ : state) {
    lap.Lap();
    std::memcpy(frame.data(), d.cur.data(), kBytes);
    benchmark::ClobberMemory();
  }
  Finish(state, "memcpy", c, lap);
}

// Each figure right beside its reference, so that both meet the same load.
#define CODEC_CASE(c)                             \
  BENCHMARK_CAPTURE(BM_Compress, c, Case::c);     \
  BENCHMARK_CAPTURE(BM_CompressSse2, c, Case::c); \
  BENCHMARK_CAPTURE(BM_Memcmp, c, Case::c);       \
  BENCHMARK_CAPTURE(BM_StreamFloor, c, Case::c);  \
  BENCHMARK_CAPTURE(BM_Decode, c, Case::c);       \
  BENCHMARK_CAPTURE(BM_Memcpy, c, Case::c)
CODEC_CASE(Unchanged);
CODEC_CASE(RowsOnePercent);
CODEC_CASE(Rectangle);
CODEC_CASE(AllUnits);
CODEC_CASE(EveryOtherUnit);
CODEC_CASE(RandomHalf);

// The fastest reference seen in any case: memcmp and memcpy do the same work
// in every case, so this is the one least disturbed by other load on the
// machine (and the strictest measure for the codec).
double FastestReference(const char* what) {
  double best = 0;
  for (const auto& entry : kCases) best = std::max(best, BestThroughput(Key(what, entry.first)));
  return best;
}

void PrintRatios() {
  const bool avx2 = velmora::codec_internal::CpuHasAvx2();
  const double memcmp = FastestReference("memcmp"), memcpy = FastestReference("memcpy");
  std::printf(
      "\nframe codec, %zux%zu x 32-bit, encoder path %s; fastest iteration of each,\n"
      "memcmp and memcpy the fastest over all cases\n",
      kWidth, kHeight, avx2 ? "AVX2" : "SSE2");
  for (const auto& [c, info] : kCases) {
    const double compress = BestThroughput(Key("compress", c)),
                 sse2 = BestThroughput(Key("compress_sse2", c));
    const double decode = BestThroughput(Key("decode", c)), floor = BestThroughput(Key("floor", c));
    std::printf("%-13s", info.name);
    if (compress > 0 && memcmp > 0) {
      const double r = compress / memcmp;
      std::printf(" compress %5.1f GB/s  memcmp %5.1f GB/s  ratio %.2f (>= %.2f %s) ",
                  compress / 1e9, memcmp / 1e9, r, info.compressTarget,
                  r >= info.compressTarget ? "ok" : "LOW");
    }
    if (sse2 > 0 && memcmp > 0)
      std::printf(" sse2 %5.1f GB/s ratio %.2f ", sse2 / 1e9, sse2 / memcmp);
    if (floor > 0 && memcmp > 0)
      std::printf(" traffic floor %5.1f GB/s ratio %.2f ", floor / 1e9, floor / memcmp);
    if (decode > 0 && memcpy > 0) {
      const double r = decode / memcpy;
      std::printf(" decode %5.1f GB/s  memcpy %5.1f GB/s  ratio %.2f", decode / 1e9, memcpy / 1e9,
                  r);
      if (info.decodeTarget > 0)
        std::printf(" (>= %.2f %s)", info.decodeTarget, r >= info.decodeTarget ? "ok" : "LOW");
    }
    std::printf("  payload %zu B\n", Data(c).payload.size());
  }
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  PrintRatios();
  benchmark::Shutdown();
  return 0;
}
