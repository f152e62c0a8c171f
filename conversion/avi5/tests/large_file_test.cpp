// Past 4 GiB: 64-bit positions in the super index, 32-bit offsets kept
// small by RIFF pieces of at most 1 GiB. Pixel bytes are discarded by the
// sink; every header and index byte is kept and checked.
#include <gtest/gtest.h>

#include "conversion/avi5/dib_format.h"
#include "conversion/avi5/video_session.h"
#include "tests/avi_bytes.h"
#include "tests/opendml_check.h"

namespace velmora::avi {
namespace {

TEST(LargeAvi, SixPiecesPast4GiBKeepEveryIndexConsistent) {
  auto sink = std::make_unique<test::SparseSink>(8192);
  test::SparseSink* sparse = sink.get();
  const int w = 1280, h = 720;
  const size_t frameBytes = size_t(DibInputFrameBytes(w, h, 32));
  const std::vector<uint8_t> frame(frameBytes, 0x5A);
  // About 5.3 GiB: the sixth piece starts past 4 GiB, so its index's base
  // offset needs all 64 bits.
  const int frames = int((uint64_t{4} << 30) / frameBytes) + 350;
  {
    VideoSession s(std::move(sink), {w, h, 32, 30, "AVIFile"}, nullptr);
    for (int i = 0; i < frames; ++i) ASSERT_EQ(s.AddFrame(frame.data()), kAviOk) << i;
    ASSERT_EQ(s.Close(), kAviOk);
    const auto sum = test::CheckOpenDml(*sparse, sparse->End());
    ASSERT_EQ(sum.error, "");
    EXPECT_EQ(sum.top.size(), 6u);
    EXPECT_GT(sum.top.back().at, uint64_t{4} << 30);
    for (const auto& piece : sum.top) EXPECT_LE(piece.size, (uint64_t{1} << 30) + 8);
    EXPECT_EQ(sum.dmlhFrames, uint32_t(frames));
    EXPECT_EQ(sum.streams[0].superEntries, 6u);
    EXPECT_GT(sum.streams[0].chunkData.back(), uint64_t{4} << 30);
    EXPECT_EQ(sum.idx1Entries, sum.avihFrames);
  }
}

}  // namespace
}  // namespace velmora::avi
