#include "engine/movie_reader.h"

#include <gtest/gtest.h>

#include <random>

#include "engine/result_codes.h"
#include "engine/tests/recording_rig.h"
#include "tests/movie_bytes.h"

namespace velmora {
namespace {

using test::EncodeMovie;
using test::MovieBytes;
using test::ReadBack;

std::vector<std::vector<uint8_t>> RandomFrames(size_t count, size_t f, uint32_t seed) {
  std::mt19937 rng(seed);
  std::vector<std::vector<uint8_t>> frames;
  std::vector<uint8_t> frame(f, 0);
  for (size_t i = 0; i < count; ++i) {
    // Change a few random stretches so records mix unchanged and literal runs.
    for (int k = 0; k < 3; ++k) {
      const size_t at = rng() % f, len = std::min<size_t>(f - at, rng() % 40);
      for (size_t j = 0; j < len; ++j) frame[at + j] = static_cast<uint8_t>(rng());
    }
    frames.push_back(frame);
  }
  return frames;
}

const MovieHeader kSmall{1, 32, 6, 4, 5, 1};  // F = 96, 5 frames

// Extra records and trailing zero bytes (a pre-allocated file) are not read.
TEST(MovieReader, DecodesEveryFrameAndIgnoresWhatFollows) {
  const auto frames = RandomFrames(5, 96, 1);
  MovieBytes extra{EncodeMovie(kSmall, frames)};
  extra.Record({1, 2, 3});
  extra.bytes.resize(extra.bytes.size() + 500, 0);
  const auto r = ReadBack(extra.bytes);
  ASSERT_EQ(r.open, 0);
  EXPECT_EQ(r.last, 1);
  EXPECT_EQ(r.frames, frames);
}

TEST(MovieReader, HeaderProblemsHaveTheirCodes) {
  // A bad magic or version is the header decoder's (movie_format_test) and
  // reaches callers through Playback (playback_test).
  const std::pair<MovieHeader, int32_t> cases[] = {
      {{0, 8, 4, 4, 1, 1}, kErrEightBitType1Only},
      {{2, 8, 4, 4, 1, 1}, kErrEightBitType1Only},
      {{1, 16, 3, 1, 1, 1}, kErrBrokenFile},  // F = 6, not whole 4-byte units
      {{1, 32, 100000, 100000, 1, 1}, kErrBrokenFile},
  };
  for (const auto& [h, code] : cases) {
    MovieBytes m;
    m.Header(h);
    EXPECT_EQ(ReadBack(m.bytes).open, code) << h.method << " " << h.bitCount << " " << h.width;
  }
  EXPECT_EQ(MovieReader().OpenFile("/nonexistent/velmora/無い.QRK"), kErrCannotOpen);
}

TEST(MovieReader, WorstCasePayloadsAreReadAndLargerOnesRefused) {
  // Every unit changed (F + 8) and every other unit changed (1.5 x F + 8)
  // are real recordings and must read back.
  std::vector<uint8_t> all(96), alternate(96, 0);
  for (size_t i = 0; i < all.size(); ++i) all[i] = static_cast<uint8_t>(i + 1);
  for (size_t u = 0; u < 24; u += 2) alternate[4 * u] = 0xEE;
  MovieHeader two = kSmall;
  two.fps = 2;
  auto r = ReadBack(EncodeMovie(two, {alternate, all}));
  EXPECT_EQ(r.last, 1);
  ASSERT_EQ(r.frames.size(), 2u);
  EXPECT_EQ(r.frames[1], all);

  MovieBytes m;
  m.Header(kSmall);  // largest possible payload for F = 96: 152 bytes
  m.RawRecord("FRAM", 153, std::vector<uint8_t>(153, 0));
  EXPECT_EQ(ReadBack(m.bytes).last, kErrBadFrameSize);
  MovieBytes huge;
  huge.Header(kSmall);
  huge.RawRecord("FRAM", 0xFFFFFFF0u, {});
  EXPECT_EQ(ReadBack(huge.bytes).last, kErrBadFrameSize);
}

TEST(MovieReader, TruncationAtEveryOffsetNeverCrashesAndNeverInventsFrames) {
  const auto frames = RandomFrames(5, 96, 5);
  const auto bytes = EncodeMovie(kSmall, frames);
  for (size_t cut = 0; cut < bytes.size(); ++cut) {
    std::vector<uint8_t> part(bytes.begin(), bytes.begin() + cut);
    auto r = ReadBack(part);
    if (cut < 32) {
      EXPECT_EQ(r.open, kErrBrokenFile) << cut;
      continue;
    }
    EXPECT_EQ(r.last, kErrNoFrameHeader) << cut;
    ASSERT_LT(r.frames.size(), frames.size()) << cut;
    for (size_t i = 0; i < r.frames.size(); ++i) EXPECT_EQ(r.frames[i], frames[i]) << cut;
  }
  // Readers hand an empty vector's data() (null) for empty chunks.
  MemoryByteSource src(bytes);
  EXPECT_EQ(src.Read(nullptr, 0), 0u);
}

}  // namespace
}  // namespace velmora
