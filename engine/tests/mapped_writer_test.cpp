// The mapped writer: pre-allocation, window slides, the cut at the end, and
// the refusals (-6, -10) with the file left readable.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "engine/result_codes.h"
#include "engine/tests/writer_test_support.h"
#include "engine/win/mapped_movie_writer.h"
#include "engine/win/system_error_text.h"
#include "engine/win/text_encoding.h"
#include "tests/files.h"
#include "tests/temp_dir.h"

namespace velmora {
namespace {

using test::FileSize;
using test::InjectedFaults;
using test::ReadFile;
using test::Rig;

class MappedWriter : public ::testing::Test {
 protected:
  void SetUp() override { InjectedFaults().Reset(); }
  test::TempDir dir;
  std::string path = dir.Path("mapped.QRK");
  win::MappedMovieWriter writer{test::FaultyApi()};
};

void WithDrops(Rig& r) {
  test::Small(r);
  r.source.grabMs = 150;
}
void CancelledAt5(Rig& r) {
  WithDrops(r);
  r.listener.cancelAtFrame = 5;
}
// 64 x 64 x 32 bits: F = 16 KiB, a 256 KiB window against a 1.6 MB movie.
void Long(Rig& r) {
  r.session.width = r.session.height = 64;
  r.session.sec = 10;
  r.source.grabMs = 120;
}
// Frames that code longer than raw outgrow the pre-allocated file.
void Incompressible(Rig& r) {
  Long(r);
  r.source.worstCase = true;
  r.compress = &test::SplitEveryChange;
}

// F = 512: (512 + 8) x 20 + 100 bytes fit in one view, which never slides.
TEST_F(MappedWriter, SmallMovieMapsOneViewAndIsCutToItsLength) {
  test::WriteFile(path, std::vector<uint8_t>(200000, 0xEE));
  ASSERT_EQ(0, test::Record(writer, path, &WithDrops));
  EXPECT_EQ(InjectedFaults().mapViewCalls, 1);
  EXPECT_EQ(writer.WindowBytes(), (512u + 8) * 20 + 100);
  EXPECT_EQ(ReadFile(path), test::RecordInMemory(&WithDrops)) << "an older longer file is cut";

  EXPECT_EQ(test::Record(writer, path, &CancelledAt5), MakeResultCode(kErrCancelled, 6));
  const auto file = ReadFile(path);
  EXPECT_EQ(test::RecordSizes(file).size(), 6u);
  EXPECT_EQ(file.size(), test::HeaderAndRecordBytes(file));
}

TEST_F(MappedWriter, LongMoviesSlideByGranulesAndReadBack) {
  for (auto take : {&Long, &Incompressible}) {
    InjectedFaults().Reset();
    ASSERT_EQ(0, test::Record(writer, path, take));
    const auto& offsets = InjectedFaults().viewOffsets;
    EXPECT_GT(offsets.size(), 3u);
    EXPECT_GE(offsets.back(), 4u * 65536);
    for (size_t k = 1; k < offsets.size(); ++k) {
      EXPECT_GE(offsets[k], offsets[k - 1]) << "a grown mapping is viewed again at the same base";
      EXPECT_EQ(offsets[k] % 65536, 0u);
    }
    EXPECT_EQ(ReadFile(path), test::RecordInMemory(take));
  }
  EXPECT_GT(InjectedFaults().createMappingCalls, 1) << "the mapping grew";
  ASSERT_EQ(0, test::Record(writer, path, &Long));
  int32_t end = 0;
  EXPECT_EQ(test::ReadBack(ReadFile(path), &end).size(), 100u);
  EXPECT_EQ(end, 1);
}

// 640 x 480 x 32 bits: 8 F = 9.375 MiB, so 10 MB are needed at least.
TEST_F(MappedWriter, TooLittleMemoryIsMinusSixAndAnEmptyFile) {
  test::WriteFile(path, std::vector<uint8_t>(5000, 0xEE));
  const auto large = [](Rig& r) {
    r.session.width = 640, r.session.height = 480, r.session.sec = 0;
  };
  InjectedFaults().physicalMemory = 8 * 1228800 + 1048576 - 1;
  EXPECT_EQ(test::Record(writer, path, large), MakeResultCode(kErrBufferTooSmall, 10));
  EXPECT_EQ(FileSize(path), 0u);
  EXPECT_EQ(InjectedFaults().createMappingCalls, 0);
  InjectedFaults().physicalMemory += 1;
  EXPECT_EQ(test::Record(writer, path, large), 0) << "exactly enough";
  EXPECT_EQ(FileSize(path), 32u);
}

TEST_F(MappedWriter, RefusedMappingOrFirstViewIsMinusTenAndAnEmptyFile) {
  InjectedFaults().failMapViewAt = 0;
  EXPECT_EQ(test::Record(writer, path), MakeResultCode(kErrApi, ERROR_NOT_ENOUGH_MEMORY));
  EXPECT_EQ(FileSize(path), 0u);
  InjectedFaults().Reset();
  InjectedFaults().failCreateMapping = true;
  InjectedFaults().error = ERROR_DISK_FULL;
  EXPECT_EQ(test::Record(writer, path), MakeResultCode(kErrApi, ERROR_DISK_FULL));
  EXPECT_EQ(FileSize(path), 0u);
  // A volume one byte short of the pre-allocation is refused before mapping.
  InjectedFaults().Reset();
  InjectedFaults().freeDiskBytes = (512 + 8) * 20 + 100 - 1;
  EXPECT_EQ(test::Record(writer, path), MakeResultCode(kErrApi, ERROR_DISK_FULL));
  EXPECT_EQ(InjectedFaults().createMappingCalls, 0);
  EXPECT_EQ(FileSize(path), 0u);
}

// A later view refused, or one whose pages the volume refuses (a read-only
// view faults the same way), keeps every whole record before it.
TEST_F(MappedWriter, FailedSlideOrRefusedPageEndsWithMinusTenAndAReadablePrefix) {
  const auto expected = test::RecordInMemory(&Long);
  for (const bool pageFault : {false, true}) {
    InjectedFaults().Reset();
    (pageFault ? InjectedFaults().readOnlyViewAt : InjectedFaults().failMapViewAt) = 2;
    EXPECT_EQ(test::Record(writer, path, &Long),
              MakeResultCode(kErrApi, pageFault ? ERROR_DISK_FULL : ERROR_NOT_ENOUGH_MEMORY));
    const auto file = ReadFile(path);
    const auto records = test::RecordSizes(file).size();
    EXPECT_GT(records, 4u);
    EXPECT_EQ(file.size(), test::HeaderAndRecordBytes(file));
    EXPECT_TRUE(std::equal(file.begin(), file.end(), expected.begin()));
    int32_t end = 0;
    EXPECT_EQ(test::ReadBack(file, &end).size(), records);
    EXPECT_EQ(end, kErrNoFrameHeader);
  }
}

// A real 2 MiB volume (tools/small-volume.sh). A 640 x 480 recording is
// refused before mapping with the disk-full text; where the space check is
// passed and nothing is claimed up front (a volume filled by someone else
// meanwhile), the second 1.2 MB frame faults and the file keeps the first.
TEST_F(MappedWriter, FullVolumeIsMinusTenWithTheDiskFullTextAndNeverACrash) {
  const char* volume = std::getenv("VELMORA_SMALL_VOLUME");
  if (!volume || FileSize(std::string(volume) + "/small-volume") == UINT64_MAX)
    GTEST_SKIP() << "no small volume: run the tests as root to mount one";
  const std::string full = std::string(volume) + "/full.QRK";
  const int64_t f = 640 * 480 * 4;
  win::MappedMovieWriter real;
  const int32_t refused = real.Open(full, f, 30, 10);
  EXPECT_EQ(refused, MakeResultCode(kErrApi, ERROR_DISK_FULL));
  EXPECT_EQ(GetError(refused, [](uint32_t n) { return win::SystemMessage(n); })
                .rfind("APIErr:ディスクがいっぱいです。", 0),
            0u);
  real.Close();
  EXPECT_EQ(FileSize(full), 0u);

  InjectedFaults().freeDiskBytes = INT64_MAX;
  InjectedFaults().claimNothing = true;
  const std::vector<uint8_t> payload(static_cast<size_t>(f), 0x5A);
  uint8_t header[32] = {'Q', 'R', 'X', 'F'};
  ASSERT_EQ(writer.Open(full, f, 30, 10), 0);
  ASSERT_EQ(writer.WriteHeader(header), 0);
  int32_t rc = 0;
  int frames = 0;
  while (frames < 3 && (rc = writer.WriteFrame(payload.data(), static_cast<uint32_t>(f))) == 0)
    ++frames;
  EXPECT_EQ(rc, MakeResultCode(kErrApi, ERROR_DISK_FULL));
  EXPECT_EQ(frames, 1);
  writer.Close();
  const auto file = ReadFile(full);
  EXPECT_EQ(file.size(), 32u + 8 + payload.size());
  EXPECT_EQ(test::RecordSizes(file), std::vector<uint32_t>{static_cast<uint32_t>(f)});
  std::remove(full.c_str());
}

// Opt-in (VELMORA_LARGE_MOVIE_TEST=1, about 4.7 GB of disk, half a minute):
// a movie past 4 GiB, so positions, views and the final cut need high halves.
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
