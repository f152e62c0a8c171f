#include "engine/movie_format.h"

#include <gtest/gtest.h>

#include "engine/movie_header_file.h"
#include "engine/result_codes.h"
#include "tests/files.h"
#include "tests/temp_dir.h"

namespace velmora {
namespace {

using test::ReadFile;
using test::TempDir;
using test::WriteFile;

TEST(MovieFormat, FrameBytesTruncatesAndAddsPalette) {
  EXPECT_EQ(FrameBytes(320, 240, 32), 307200);
  EXPECT_EQ(FrameBytes(3, 1, 12), 4);  // 36 bits -> 4 bytes, truncated
  EXPECT_EQ(FrameBytes(1, 1, 8), 1025);
  EXPECT_EQ(FrameBytes(40000, 40000, 32), -1);                 // beyond 32-bit arithmetic
  EXPECT_EQ(FrameBytes(INT32_MAX, INT32_MAX, INT32_MAX), -1);  // beyond even 64 bits
}

TEST(MovieFormat, HeaderBytesAreLittleEndianInFileOrder) {
  const MovieHeader h{1, 24, 640, 480, 30, 10};
  const auto b = EncodeMovieHeader(h);
  const uint8_t expect[32] = {'Q',  'R', 'X', 'F', 1,    0, 0, 0, 1,  0, 0, 0, 24, 0, 0, 0,
                              0x80, 2,   0,   0,   0xE0, 1, 0, 0, 30, 0, 0, 0, 10, 0, 0, 0};
  EXPECT_EQ(0, memcmp(b.data(), expect, 32));
  EXPECT_EQ(DecodeMovieHeader(b), h);
  auto bad = b;
  bad[3] = 'G';
  EXPECT_FALSE(DecodeMovieHeader(bad));
  bad = b;
  bad[4] = 2;
  EXPECT_FALSE(DecodeMovieHeader(bad));
}

TEST(MovieFormat, RegionWidthKeepsRowsWholeForTheGrab) {
  struct Case {
    int32_t width, bits, method, valid;
  };
  const Case cases[] = {
      {321, 8, 1, 320},  {321, 16, 1, 320}, {321, 24, 1, 320}, {321, 32, 1, 321}, {323, 24, 2, 320},
      {322, 16, 2, 322}, {321, 8, 2, 0},    {321, 32, 2, 321}, {321, 8, 0, 320},  {321, 16, 0, 321},
      {321, 24, 0, 320}, {3, 24, 1, 0},     {0, 32, 1, 0},     {64, 12, 1, 0},    {64, 32, 3, 0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ValidRegionWidth(c.width, c.bits, c.method), c.valid)
        << c.width << " " << c.bits << " " << c.method;
    EXPECT_EQ(IsValidRegionWidth(c.width, c.bits, c.method), c.valid > 0 && c.valid == c.width)
        << c.width;
  }
}

class HeaderFile : public ::testing::Test {
 protected:
  TempDir dir;
  std::string path = dir.Path("動画テスト.QRK");
  void Write(const MovieHeader& h, size_t extra = 0) {
    auto b = EncodeMovieHeader(h);
    std::vector<uint8_t> v(b.begin(), b.end());
    v.resize(v.size() + extra, 0xAB);
    WriteFile(path, v);
  }
};

TEST_F(HeaderFile, QueryFillsOutputsOnlyForUsableBitCounts) {
  Write({2, 32, 64, 48, 15, 3});
  MovieHeader out{};
  ASSERT_EQ(QueryMovieHeader(path, &out), 0);
  EXPECT_EQ(out, (MovieHeader{2, 32, 64, 48, 15, 3}));

  for (int32_t bits : {12, 40, 0, 7}) {
    Write({1, bits, 64, 48, 15, 3});
    MovieHeader untouched{9, 9, 9, 9, 9, 9};
    EXPECT_EQ(QueryMovieHeader(path, &untouched), 0) << bits;
    EXPECT_EQ(untouched, (MovieHeader{9, 9, 9, 9, 9, 9})) << bits;
  }
}

TEST_F(HeaderFile, QueryRefusesBadFilesWithTheirCodes) {
  EXPECT_EQ(QueryMovieHeader(dir.Path("無い.QRK"), nullptr), kErrNoFile);
  WriteFile(path, {});
  EXPECT_EQ(QueryMovieHeader(path, nullptr), kErrZeroSize);
  WriteFile(path, {'Q', 'R', 'X'});
  EXPECT_EQ(QueryMovieHeader(path, nullptr), kErrBrokenFile);
  const MovieHeader bad[] = {{3, 24, 8, 8, 1, 1}, {-1, 24, 8, 8, 1, 1}, {0, 24, 0, 8, 1, 1},
                             {0, 24, 8, 0, 1, 1}, {0, 24, 8, 8, 0, 1},  {0, 24, 8, 8, 1, 0}};
  for (const auto& h : bad) {
    Write(h);
    EXPECT_EQ(QueryMovieHeader(path, nullptr), kErrBrokenFile) << h.method << " " << h.width;
  }
  Write({0, 24, 8, 8, 1, 1});
  auto b = ReadFile(path);
  b[0] = 'q';
  WriteFile(path, b);
  EXPECT_EQ(QueryMovieHeader(path, nullptr), kErrBrokenFile);
}

TEST_F(HeaderFile, PatchReplacesOnlyNonZeroArgumentsAndKeepsTheRest) {
  Write({2, 32, 64, 48, 15, 3}, 100);
  const auto before = ReadFile(path);
  PatchMovieHeader(path, 0, 0, 0, 0, 0);
  EXPECT_EQ(ReadFile(path), before);

  PatchMovieHeader(path, 0, 0, 0, 0, 2);
  MovieHeader out{};
  ASSERT_EQ(QueryMovieHeader(path, &out), 0);
  EXPECT_EQ(out, (MovieHeader{2, 32, 64, 48, 15, 2}));
  PatchMovieHeader(path, 640, 480, 24, 60, 0);
  ASSERT_EQ(QueryMovieHeader(path, &out), 0);
  EXPECT_EQ(out, (MovieHeader{2, 24, 640, 480, 60, 2}));
  const auto after = ReadFile(path);
  ASSERT_EQ(after.size(), before.size());
  EXPECT_TRUE(std::equal(after.begin() + 32, after.end(), before.begin() + 32));

  // No magic check: the first 32 bytes are rewritten whatever they held.
  WriteFile(path, std::vector<uint8_t>(40, 0x11));
  PatchMovieHeader(path, 0, 0, 0, 0, 7);
  const auto junk = ReadFile(path);
  EXPECT_EQ(junk[28], 7);
  EXPECT_EQ(junk[0], 0x11);
  EXPECT_EQ(junk.size(), 40u);
  PatchMovieHeader(dir.Path("無い.QRK"), 1, 1, 1, 1, 1);  // nothing to open: nothing happens
  EXPECT_FALSE(test::Exists(dir.Path("無い.QRK")));
}

}  // namespace
}  // namespace velmora
