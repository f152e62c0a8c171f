// Frame codec: every encoder path (SSE2, AVX2, the dispatching entry) must
// produce exactly the payload of a plain unit-by-unit reference encoder with
// the same run choice, stay inside its output bound, and decode back to the
// frame; the decoder must refuse every damaged payload without writing
// outside the frame.
#include "engine/frame_codec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

#include "engine/byte_order.h"
#include "engine/frame_encoder_internal.h"

namespace velmora {
namespace {

using Bytes = std::vector<uint8_t>;
constexpr uint8_t kCanary = 0xA5;
constexpr size_t kGuardBytes = 64;

struct Frames {
  Bytes prev, cur;
  size_t Units() const { return cur.size() / 4; }
  bool UnitEqual(size_t u) const { return std::memcmp(&cur[4 * u], &prev[4 * u], 4) == 0; }
};

void PutCount(Bytes& out, uint32_t v) {
  out.resize(out.size() + 4);
  StoreLE32(out.data() + out.size() - 4, static_cast<int32_t>(v));
}

Bytes Words(std::initializer_list<uint32_t> words) {
  Bytes out;
  for (uint32_t w : words) PutCount(out, w);
  return out;
}

// A payload from its run counts (unchanged, literal, unchanged, ...), the
// literal data taken from `cur` at the positions the runs cover.
Bytes Payload(const Bytes& cur, std::initializer_list<uint32_t> runs) {
  Bytes out;
  size_t unit = 0;
  bool literal = false;
  for (uint32_t count : runs) {
    PutCount(out, count);
    if (literal) out.insert(out.end(), cur.begin() + 4 * unit, cur.begin() + 4 * (unit + count));
    unit += count;
    literal = !literal;
  }
  return out;
}

// The run choice written the plain way: a literal run ends at the first unit
// that begins three equal units, or equal units reaching the end of the frame.
Bytes ReferencePayload(const Frames& f) {
  const size_t n = f.Units();
  auto literalEndsAt = [&](size_t k) {
    for (size_t m = k; m < std::min(k + 3, n); ++m) {
      if (!f.UnitEqual(m)) return false;
    }
    return true;
  };
  Bytes out;
  size_t u = 0;
  for (;;) {
    const size_t same = u;
    while (u < n && f.UnitEqual(u)) ++u;
    PutCount(out, static_cast<uint32_t>(u - same));
    if (u == n) break;
    const size_t changed = u;
    while (!literalEndsAt(u)) ++u;
    PutCount(out, static_cast<uint32_t>(u - changed));
    out.insert(out.end(), f.cur.begin() + 4 * changed, f.cur.begin() + 4 * u);
    if (u == n) break;
  }
  return out;
}

using CompressFn = int32_t (*)(uint8_t*, const uint8_t*, const uint8_t*, int32_t);
struct EncoderPath {
  const char* name;
  CompressFn compress;
  bool available;
};

const std::vector<EncoderPath>& Paths() {
  static const std::vector<EncoderPath> paths = {
      {"SSE2", codec_internal::CompressFrameSse2, true},
      {"AVX2", codec_internal::CompressFrameAvx2, codec_internal::CpuHasAvx2()},
      {"CompressFrame", CompressFrame, true},
  };
  return paths;
}

// Compresses into a buffer of exactly MaxPayloadBytes followed by canaries.
Bytes GuardedCompress(const EncoderPath& path, const Frames& f) {
  const size_t bound = MaxPayloadBytes(f.cur.size());
  Bytes out(bound + kGuardBytes, kCanary);
  const int32_t units =
      path.compress(out.data(), f.cur.data(), f.prev.data(), static_cast<int32_t>(f.Units()));
  EXPECT_TRUE(std::all_of(out.begin() + bound, out.end(), [](uint8_t b) { return b == kCanary; }))
      << path.name << " wrote past MaxPayloadBytes";
  out.resize(std::min(size_t(units) * 4, bound));
  return out;
}

Bytes Decode(const Bytes& payload, const Bytes& prev, int32_t* result) {
  Bytes cur(prev.size() + kGuardBytes, kCanary);
  *result = DecodeFrame(payload.data(), payload.size(), prev.data(), cur.data(), prev.size());
  EXPECT_TRUE(std::all_of(cur.begin() + prev.size(), cur.end(), [](uint8_t b) {
    return b == kCanary;
  })) << "decoder wrote past the frame";
  cur.resize(prev.size());
  return cur;
}

void ExpectEveryPathEncodes(const Frames& f, const std::string& label) {
  const Bytes want = ReferencePayload(f);
  int32_t r = 0;
  ASSERT_EQ(Decode(want, f.prev, &r), f.cur) << label << ": reference payload";
  ASSERT_EQ(r, 0) << label;
  for (const EncoderPath& path : Paths()) {
    if (!path.available) continue;
    EXPECT_EQ(GuardedCompress(path, f), want) << path.name << " " << label;
  }
}

enum class Change { None, All, EvenUnits, OddUnits, FirstUnit, LastUnit, Sparse, Half, Spans };

// Changes one random byte of a unit, so that a change in any byte position
// of the unit must be seen.
void ChangeUnit(Frames& f, size_t u, std::mt19937& rng) {
  f.cur[4 * u + rng() % 4] ^= static_cast<uint8_t>(1 + rng() % 255);
}

Frames MakeFrames(size_t units, Change change, uint32_t seed) {
  std::mt19937 rng(seed);
  Frames f;
  f.prev.resize(4 * units);
  for (auto& b : f.prev) b = static_cast<uint8_t>(rng());
  f.cur = f.prev;
  for (size_t u = 0; u < units; ++u) {
    const bool hit =
        change == Change::All || (change == Change::EvenUnits && u % 2 == 0) ||
        (change == Change::OddUnits && u % 2 == 1) || (change == Change::FirstUnit && u == 0) ||
        (change == Change::LastUnit && u + 1 == units) ||
        (change == Change::Sparse && rng() % 50 == 0) || (change == Change::Half && rng() % 2 == 0);
    if (hit) ChangeUnit(f, u, rng);
  }
  if (change == Change::Spans) {
    for (int s = 0; s < 3; ++s) {
      const size_t begin = rng() % units, end = std::min(units, begin + 1 + rng() % 200);
      for (size_t u = begin; u < end; ++u) ChangeUnit(f, u, rng);
    }
  }
  return f;
}

// Sizes 1..70 cover every tail of the 8-unit groups and the 64-unit masks;
// the larger ones cross block edges and give long stretches to skip.
TEST(FrameEncoder, EveryPathMatchesTheReferenceOnEveryPatternAndSize) {
  std::vector<size_t> sizes;
  for (size_t n = 1; n <= 70; ++n) sizes.push_back(n);
  for (size_t n : {127, 128, 129, 191, 192, 193, 255, 256, 257, 1000, 4101}) sizes.push_back(n);
  for (size_t n : sizes) {
    for (Change c :
         {Change::None, Change::All, Change::EvenUnits, Change::OddUnits, Change::FirstUnit,
          Change::LastUnit, Change::Sparse, Change::Half, Change::Spans}) {
      for (uint32_t seed = 1; seed <= 3; ++seed) {
        ExpectEveryPathEncodes(MakeFrames(n, c, seed * 977 + uint32_t(n)),
                               "units " + std::to_string(n) + " pattern " + std::to_string(int(c)));
      }
    }
  }
}

// One changed unit at every position of a long unchanged frame: the skip
// kernels must find it in every lane of every 128-byte round.
TEST(FrameEncoder, FindsASingleChangeAnywhere) {
  const size_t n = 700;
  for (size_t d = 0; d < n; ++d) {
    Frames f = MakeFrames(n, Change::None, 5);
    f.cur[4 * d + d % 4] ^= 0x80;
    ExpectEveryPathEncodes(f, "change at unit " + std::to_string(d));
  }
}

Frames FromPattern(const std::string& pattern) {  // 'D' a changed unit, '.' an equal one
  Frames f = MakeFrames(pattern.size(), Change::None, 11);
  for (size_t u = 0; u < pattern.size(); ++u) {
    if (pattern[u] == 'D') f.cur[4 * u] ^= 0xFF;
  }
  return f;
}

TEST(FrameEncoder, WritesTheExpectedRuns) {
  struct Case {
    std::string pattern;
    std::initializer_list<uint32_t> runs;
  };
  const Case cases[] = {
      {"........", {8}},        // unchanged frame: one count F/4
      {"DDDDDDDD", {0, 8}},     // every unit changed: 0, F/4, F bytes
      {".D.D.D.D", {1, 7}},     // equal units between changes ride along
      {"D.D.D.D.", {0, 7, 1}},  // the worst case, F + 8 bytes
      {"D..D", {0, 4}},         // two equal units: kept in the literal
      {"D...D", {0, 1, 3, 1}},  // three: split out
      {"D..D..", {0, 4, 2}},    // an unchanged tail stands as a run
      {"...D", {3, 1}},
  };
  for (const Case& c : cases) {
    const Frames f = FromPattern(c.pattern);
    EXPECT_EQ(ReferencePayload(f), Payload(f.cur, c.runs)) << c.pattern;
    ExpectEveryPathEncodes(f, c.pattern);
  }
}

TEST(FrameEncoder, NoUnitsWritesNothing) {
  for (const EncoderPath& path : Paths()) {
    if (!path.available) continue;
    uint8_t out[4] = {kCanary, kCanary, kCanary, kCanary}, frame[4] = {};
    EXPECT_EQ(path.compress(out, frame, frame, 0), 0) << path.name;
    EXPECT_EQ(path.compress(out, frame, frame, -4), 0) << path.name;
    EXPECT_EQ(out[0], kCanary) << path.name;
  }
}

TEST(FrameDecoder, RefusesEveryRunOutsideTheFrameOrPayload) {
  const Bytes prev(16, 1);  // 4 units
  struct Case {
    const char* what;
    Bytes payload;
  };
  Bytes strayBytes = Words({2, 0});
  strayBytes.insert(strayBytes.end(), {1, 2});
  const Case cases[] = {
      {"unchanged run longer than the frame", Words({5})},
      {"literal run longer than the frame", Words({0, 5, 1, 2, 3, 4, 5})},
      {"run past the end of the frame", Words({3, 2, 7, 7})},
      {"literal data missing", Words({0, 4, 1, 2, 3})},
      {"payload ends before the frame is covered", Words({2})},
      {"empty payload", {}},
      {"endless empty runs", Words({0, 0, 0, 0, 0, 0})},
      {"count 2^30: 4 x count wraps to 0 in 32 bits", Words({0x40000000})},
      {"count 2^30 + 1: wraps to 4", Words({0x40000001, 0, 0})},
      {"literal count 2^30 + 1", Words({0, 0x40000001, 7, 7, 7, 7})},
      {"count 2^30 + 4: wraps to exactly the frame", Words({0x40000004})},
      {"literal count 2^30 + 4", Words({0, 0x40000004, 7, 7, 7, 7})},
      {"largest count", Words({0xFFFFFFFF})},
      {"half a count", strayBytes},
  };
  int32_t r = 0;
  for (const Case& c : cases) {
    Decode(c.payload, prev, &r);
    EXPECT_EQ(r, -5) << c.what;
  }
  Decode(Words({256}), Bytes(1025, 0), &r);  // 1x1 at 8 bits: no whole unit count
  EXPECT_EQ(r, -5) << "the frame's last byte would be left stale";
}

TEST(FrameDecoder, AcceptsEmptyRunsAndIgnoresBytesAfterTheFrame) {
  const Bytes prev = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
  const Bytes lit = {21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32, 33, 34, 35, 36};
  int32_t r = 0;
  EXPECT_EQ(Decode(Words({1, 0, 3}), prev, &r), prev);  // a literal run of 0 between unchanged runs
  EXPECT_EQ(r, 0);
  Bytes trailing = Payload(lit, {0, 4});
  const Bytes garbage = Words({0xFFFFFFFF, 99});
  trailing.insert(trailing.end(), garbage.begin(), garbage.end());
  EXPECT_EQ(Decode(trailing, prev, &r), lit);
  EXPECT_EQ(r, 0);
}

}  // namespace
}  // namespace velmora
