// The mapped writer: pre-allocation, window slides, the cut at the end, and
// the refusals (-6, -10) with the file left readable.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numeric>

#include "engine/frame_codec.h"
#include "engine/movie_format.h"
#include "engine/result_codes.h"
#include "engine/tests/file_util.h"
#include "engine/tests/temp_dir.h"
#include "engine/tests/writer_test_support.h"
#include "engine/win/mapped_movie_writer.h"

namespace velmora {
namespace {

using test::FileSize;
using test::InjectedFaults;
using test::ReadFile;
using test::Take;
using test::TempDir;

uint64_t SumOfRecords(const std::vector<uint8_t>& movie) {
  const auto sizes = test::RecordSizes(movie);
  return std::accumulate(sizes.begin(), sizes.end(), uint64_t{0},
                         [](uint64_t a, uint32_t n) { return a + 8 + n; });
}

class MappedWriter : public ::testing::Test {
 protected:
  void SetUp() override { InjectedFaults().Reset(); }
  TempDir dir;
  std::string path = dir.Path("mapped.QRK");
  win::MappedMovieWriter writer{test::FaultyApi()};
};

// 16 x 8 x 32 bits: F = 512; 20 slots need (512 + 8) x 20 + 100 bytes, less
// than the 8-frame window, so one view covers the file and never slides.
TEST_F(MappedWriter, SmallMovieMapsOneViewAndIsCutToItsLength) {
  test::WriteFile(path, std::vector<uint8_t>(200000, 0xEE));
  Take take;
  take.grabMs = 150;
  ASSERT_EQ(0, test::Record(writer, path, take));
  EXPECT_EQ(InjectedFaults().mapViewCalls, 1);
  EXPECT_EQ(InjectedFaults().createMappingCalls, 1);
  EXPECT_EQ(writer.WindowBytes(), (512u + 8) * 20 + 100);
  EXPECT_EQ(ReadFile(path), test::RecordInMemory(take)) << "an older longer file is cut";
}

TEST_F(MappedWriter, CancelAfterKSlotsLeavesHeaderPlusThoseRecords) {
  Take take;
  take.grabMs = 150;
  take.cancelAtFrame = 5;  // slots 0..5 done, slot 2 and 5 dropped
  EXPECT_EQ(test::Record(writer, path, take), MakeResultCode(kErrCancelled, 6));
  const auto file = ReadFile(path);
  EXPECT_EQ(test::RecordSizes(file).size(), 6u);
  EXPECT_EQ(file.size(), 32 + SumOfRecords(file));
  EXPECT_EQ(file, test::RecordInMemory(take));
}

// 64 x 64 x 32 bits: F = 16 KiB, a 256 KiB window against a 1.6 MB movie.
TEST_F(MappedWriter, LongMovieSlidesByGranulesAndReadsBack) {
  Take take;
  take.session.width = 64;
  take.session.height = 64;
  take.session.sec = 10;
  take.grabMs = 120;
  ASSERT_EQ(0, test::Record(writer, path, take));
  const auto& offsets = InjectedFaults().viewOffsets;
  EXPECT_GT(offsets.size(), 3u);
  for (size_t k = 1; k < offsets.size(); ++k) {
    EXPECT_GT(offsets[k], offsets[k - 1]);
    EXPECT_EQ(offsets[k] % 65536, 0u);
  }
  const auto file = ReadFile(path);
  EXPECT_EQ(file, test::RecordInMemory(take));
  int32_t rc = 0;
  EXPECT_EQ(test::ReadBack(file, &rc).size(), 100u);
  EXPECT_EQ(rc, 1);
}

// Frames that compress worse than raw outgrow the pre-allocation; the
// mapping is enlarged instead of writing past it.
TEST_F(MappedWriter, IncompressibleFramesOutgrowThePreallocation) {
  Take take;
  take.worstCase = true;
  take.session.width = 64;
  take.session.height = 64;
  take.session.sec = 3;
  ASSERT_EQ(0, test::Record(writer, path, take));
  EXPECT_GT(InjectedFaults().createMappingCalls, 1);
  EXPECT_EQ(ReadFile(path), test::RecordInMemory(take));
}

TEST_F(MappedWriter, TooLittleMemoryIsMinusSixAndAnEmptyFile) {
  test::WriteFile(path, std::vector<uint8_t>(5000, 0xEE));
  Take take;
  take.session.width = 640;
  take.session.height = 480;  // F = 1,228,800: 8 F = 9.375 MiB
  InjectedFaults().physicalMemory = 8 * 1228800 + 1048576 - 1;
  EXPECT_EQ(test::Record(writer, path, take), MakeResultCode(kErrBufferTooSmall, 10));
  EXPECT_EQ(FileSize(path), 0u);
  EXPECT_EQ(InjectedFaults().createMappingCalls, 0);

  InjectedFaults().physicalMemory += 1;
  take.session.sec = 0;
  EXPECT_EQ(test::Record(writer, path, take), 0) << "exactly enough";
  EXPECT_EQ(FileSize(path), 32u);
}

TEST_F(MappedWriter, RefusedMappingOrFirstViewIsMinusTenAndAnEmptyFile) {
  InjectedFaults().failMapViewAt = 0;
  EXPECT_EQ(test::Record(writer, path, Take{}), MakeResultCode(kErrApi, ERROR_NOT_ENOUGH_MEMORY));
  EXPECT_EQ(FileSize(path), 0u);

  InjectedFaults().Reset();
  InjectedFaults().failCreateMapping = true;
  InjectedFaults().error = ERROR_DISK_FULL;
  EXPECT_EQ(test::Record(writer, path, Take{}), MakeResultCode(kErrApi, ERROR_DISK_FULL));
  EXPECT_EQ(FileSize(path), 0u);
}

TEST_F(MappedWriter, FailedSlideEndsWithMinusTenAndAReadablePrefix) {
  Take take;
  take.session.width = 64;
  take.session.height = 64;
  take.session.sec = 10;
  InjectedFaults().failMapViewAt = 2;
  EXPECT_EQ(test::Record(writer, path, take), MakeResultCode(kErrApi, ERROR_NOT_ENOUGH_MEMORY));
  const auto file = ReadFile(path);
  const auto records = test::RecordSizes(file).size();
  EXPECT_GT(records, 4u);
  EXPECT_LT(records, 100u);
  EXPECT_EQ(file.size(), 32 + SumOfRecords(file));
  const auto expected = test::RecordInMemory(take);
  EXPECT_TRUE(std::equal(file.begin(), file.end(), expected.begin()));
  int32_t rc = 0;
  EXPECT_EQ(test::ReadBack(file, &rc).size(), records);
  EXPECT_EQ(rc, kErrNoFrameHeader);
}

// Opt-in (VELMORA_LARGE_MOVIE_TEST=1, about 4.5 GB of disk): a movie past
// 4 GiB, so every position and the final cut need their high halves.
TEST_F(MappedWriter, MovieLargerThanFourGiB) {
  if (!std::getenv("VELMORA_LARGE_MOVIE_TEST")) GTEST_SKIP() << "set VELMORA_LARGE_MOVIE_TEST=1";
  const int64_t f = 16 << 20;
  std::vector<uint8_t> payload(static_cast<size_t>(f) - 64, 0x5A);
  ASSERT_EQ(0, writer.Open(path, f, 1, 280));
  uint8_t header[32]{};
  ASSERT_EQ(0, writer.WriteHeader(header));
  for (int i = 0; i < 280; ++i) {
    ASSERT_EQ(0, writer.BeginSlot());
    payload[0] = static_cast<uint8_t>(i);
    ASSERT_EQ(0, writer.WriteFrame(payload.data(), static_cast<uint32_t>(payload.size())));
  }
  writer.Close();
  const uint64_t expected = 32 + 280 * (8 + payload.size());
  ASSERT_GT(expected, uint64_t{1} << 32);
  EXPECT_EQ(FileSize(path), expected);
  std::FILE* in = OpenFileUtf8(path, "rb");
  ASSERT_NE(in, nullptr);
  uint8_t probe[9]{};
  ASSERT_EQ(0, _fseeki64(in, static_cast<int64_t>(expected - payload.size() - 8), SEEK_SET));
  ASSERT_EQ(std::fread(probe, 1, 9, in), 9u);
  std::fclose(in);
  EXPECT_EQ(0, std::memcmp(probe, "FRAM", 4));
  EXPECT_EQ(probe[8], static_cast<uint8_t>(279));
}

}  // namespace
}  // namespace velmora
