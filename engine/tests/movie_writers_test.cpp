// Both movie writers against real files: the bytes match the in-memory
// sink's, the ordinary writer leaves an older file's tail, failures cut the
// file behind the last complete record.
#include <gtest/gtest.h>

#include "engine/result_codes.h"
#include "engine/tests/file_util.h"
#include "engine/tests/temp_dir.h"
#include "engine/tests/writer_test_support.h"
#include "engine/win/mapped_movie_writer.h"
#include "engine/win/ordinary_movie_writer.h"

namespace velmora {
namespace {

using test::FileSize;
using test::InjectedFaults;
using test::ReadFile;
using test::Take;
using test::TempDir;

TEST(OrdinaryMovieWriter, WritesTheMovieAndLeavesAnOlderLongerFilesTail) {
  TempDir dir;
  const auto path = dir.Path("録画.QRK");
  Take take;
  take.grabMs = 150;  // some drops among the frames
  const auto expected = test::RecordInMemory(take);
  std::vector<uint8_t> old(expected.size() + 5000, 0xEE);
  test::WriteFile(path, old);

  win::OrdinaryMovieWriter writer;
  ASSERT_EQ(0, test::Record(writer, path, take));
  const auto file = ReadFile(path);
  ASSERT_EQ(file.size(), old.size()) << "the file is opened, never cut";
  EXPECT_TRUE(std::equal(expected.begin(), expected.end(), file.begin()));
  EXPECT_EQ(file.back(), 0xEE);
  int32_t rc = 0;
  EXPECT_EQ(test::ReadBack(file, &rc).size(), 20u);
  EXPECT_EQ(rc, 1) << "the reader stops after fps x sec records";
}

TEST(MovieWriters, UnopenableFileIsMinusTwo) {
  TempDir dir;
  const auto path = dir.Path("no such folder/a.QRK");
  win::OrdinaryMovieWriter ordinary;
  win::MappedMovieWriter mapped;
  EXPECT_EQ(test::Record(ordinary, path, Take{}), MakeResultCode(kErrCannotOpen));
  EXPECT_EQ(test::Record(mapped, path, Take{}), MakeResultCode(kErrCannotOpen));
}

// Write k of a frame record's three writes fails: the recording ends with
// -10 and the system error, and the file ends behind the last whole record.
TEST(OrdinaryMovieWriter, FailedWriteCutsBehindTheLastCompleteRecord) {
  for (int64_t failAt : {2, 9, 10, 11}) {  // header is writes 0 and 1
    TempDir dir;
    const auto path = dir.Path("full.QRK");
    test::WriteFile(path, std::vector<uint8_t>(100000, 0xEE));
    InjectedFaults().Reset();
    InjectedFaults().failWriteAt = failAt;
    InjectedFaults().error = ERROR_DISK_FULL;
    win::OrdinaryMovieWriter writer(test::FaultyApi());
    EXPECT_EQ(test::Record(writer, path, Take{}), MakeResultCode(kErrApi, ERROR_DISK_FULL));

    const auto file = ReadFile(path);
    const auto complete = static_cast<size_t>((failAt - 2) / 3);
    EXPECT_EQ(test::RecordSizes(file).size(), complete) << "fail at write " << failAt;
    const auto expected = test::RecordInMemory(Take{});
    ASSERT_LE(file.size(), expected.size());
    EXPECT_TRUE(std::equal(file.begin(), file.end(), expected.begin()));
    int32_t rc = 0;
    EXPECT_EQ(test::ReadBack(file, &rc).size(), complete);
    EXPECT_EQ(rc, kErrNoFrameHeader);
  }
}

TEST(OrdinaryMovieWriter, CancelledRecordingKeepsItsRecords) {
  TempDir dir;
  const auto path = dir.Path("c.QRK");
  Take take;
  take.cancelAtFrame = 4;
  win::OrdinaryMovieWriter writer;
  EXPECT_EQ(test::Record(writer, path, take), MakeResultCode(kErrCancelled, 5));
  EXPECT_EQ(ReadFile(path), test::RecordInMemory(take));
}

}  // namespace
}  // namespace velmora
