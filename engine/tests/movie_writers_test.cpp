// The ordinary writer against real files: the bytes match the in-memory
// sink's, an older longer file keeps its tail, a failed write cuts the file
// behind the last complete record.
#include <gtest/gtest.h>

#include "engine/result_codes.h"
#include "engine/tests/writer_test_support.h"
#include "engine/win/mapped_movie_writer.h"
#include "engine/win/ordinary_movie_writer.h"
#include "tests/files.h"
#include "tests/temp_dir.h"

namespace velmora {
namespace {

using test::InjectedFaults;
using test::ReadFile;
using test::Rig;

void WithDropsCancelledAt7(Rig& r) {
  test::Small(r);
  r.source.grabMs = 150;
  r.listener.cancelAtFrame = 7;
}

TEST(OrdinaryMovieWriter, WritesTheMovieAndLeavesAnOlderLongerFilesTail) {
  test::TempDir dir;
  const auto path = dir.Path("録画.QRK");
  const auto expected = test::RecordInMemory();
  test::WriteFile(path, std::vector<uint8_t>(expected.size() + 5000, 0xEE));
  win::OrdinaryMovieWriter writer;
  ASSERT_EQ(0, test::Record(writer, path));
  const auto file = ReadFile(path);
  ASSERT_EQ(file.size(), expected.size() + 5000) << "the file is opened, never cut";
  EXPECT_TRUE(std::equal(expected.begin(), expected.end(), file.begin()));
  EXPECT_EQ(file.back(), 0xEE);
  int32_t end = 0;
  EXPECT_EQ(test::ReadBack(file, &end).size(), 20u);
  EXPECT_EQ(end, 1) << "the reader stops after fps x sec records";

  test::TempDir other;
  const auto cancelled = other.Path("c.QRK");
  EXPECT_EQ(test::Record(writer, cancelled, &WithDropsCancelledAt7),
            MakeResultCode(kErrCancelled, 8));
  EXPECT_EQ(ReadFile(cancelled), test::RecordInMemory(&WithDropsCancelledAt7));
}

TEST(MovieWriters, UnopenableFileIsMinusTwo) {
  test::TempDir dir;
  const auto path = dir.Path("no such folder/a.QRK");
  win::OrdinaryMovieWriter ordinary;
  win::MappedMovieWriter mapped;
  EXPECT_EQ(test::Record(ordinary, path), MakeResultCode(kErrCannotOpen));
  EXPECT_EQ(test::Record(mapped, path), MakeResultCode(kErrCannotOpen));
}

// Writes 0 and 1 are the header, then three per record: a failure at any
// of them ends with -10 and the system error, whole records kept.
TEST(OrdinaryMovieWriter, FailedWriteCutsBehindTheLastCompleteRecord) {
  for (int64_t failAt : {2, 9, 10, 11}) {
    test::TempDir dir;
    const auto path = dir.Path("full.QRK");
    test::WriteFile(path, std::vector<uint8_t>(100000, 0xEE));
    InjectedFaults().Reset();
    InjectedFaults().failWriteAt = failAt;
    InjectedFaults().error = ERROR_DISK_FULL;
    win::OrdinaryMovieWriter writer(test::FaultyApi());
    EXPECT_EQ(test::Record(writer, path), MakeResultCode(kErrApi, ERROR_DISK_FULL));

    const auto file = ReadFile(path);
    const auto complete = static_cast<size_t>((failAt - 2) / 3);
    EXPECT_EQ(file.size(), test::HeaderAndRecordBytes(file)) << "fail at write " << failAt;
    const auto expected = test::RecordInMemory();
    EXPECT_TRUE(std::equal(file.begin(), file.end(), expected.begin()));
    int32_t end = 0;
    EXPECT_EQ(test::ReadBack(file, &end).size(), complete);
    EXPECT_EQ(end, kErrNoFrameHeader);
  }
}

}  // namespace
}  // namespace velmora
