// Frames from DIB input: depths, the 8-bit colour table (strf, then '00pc'
// on change), and the compressed path through a test compressor.
#include <gtest/gtest.h>

#include <cstring>

#include "conversion/avi5/dib_format.h"
#include "conversion/avi5/riff_writer.h"
#include "conversion/avi5/video_session.h"
#include "tests/avi_bytes.h"
#include "tests/opendml_check.h"

namespace velmora::avi {
namespace {

struct Written {
  std::vector<uint8_t> bytes;
  test::AviSummary summary;
};

// Runs a session into memory and walks the result.
template <typename Feed>
Written WriteSession(const VideoSessionParams& p, std::unique_ptr<FrameCompressor> c, Feed feed) {
  auto sink = std::make_unique<MemoryByteSink>();
  MemoryByteSink* mem = sink.get();
  {
    VideoSession s(std::move(sink), p, std::move(c));
    feed(s);
    EXPECT_EQ(s.Close(), kAviOk);
    Written w{mem->Bytes(), {}};
    MemoryByteSource src(w.bytes);
    w.summary = test::CheckOpenDml(src, w.bytes.size());
    return w;
  }
}

TEST(VideoSession, EveryDepthStoresPaddedRowsUnchanged) {
  for (int bits : {8, 16, 24, 32}) {
    const VideoSessionParams p{5, 3, bits, 30, "AVIFile"};
    const size_t in = size_t(DibInputFrameBytes(5, 3, bits));
    const size_t px = size_t(DibPixelBytes(5, 3, bits));
    EXPECT_EQ(px % 4, 0u);
    std::vector<std::vector<uint8_t>> frames;
    auto w = WriteSession(p, nullptr, [&](VideoSession& s) {
      for (int i = 0; i < 2; ++i) {
        frames.push_back(test::PatternFrame(in, 0));
        std::memset(frames.back().data(), i, 4);  // differ in pixels, not in the colour table
        ASSERT_EQ(s.AddFrame(frames.back().data()), kAviOk);
      }
    });
    ASSERT_EQ(w.summary.error, "") << bits;
    const auto& v = w.summary.streams[0];
    ASSERT_EQ(v.chunkData.size(), 2u);
    EXPECT_EQ(v.strf.size(), 40u + (bits == 8 ? 1024 : 0)) << bits;
    EXPECT_EQ(v.strf[14], bits);
    for (int i = 0; i < 2; ++i) {
      EXPECT_EQ(v.chunkSize[i], px);
      EXPECT_EQ(0, std::memcmp(w.bytes.data() + v.chunkData[i], frames[i].data(), px))
          << bits << " " << i;
    }
    if (bits == 8) {
      const std::vector<uint8_t> header{40, 0, 0, 0, 5, 0, 0,  0, 3, 0, 0, 0, 1, 0,
                                        8,  0, 0, 0, 0, 0, 24, 0, 0, 0, 0, 0, 0, 0,
                                        0,  0, 0, 0, 0, 1, 0,  0, 0, 0, 0, 0};  // 256 colours, 3
                                                                                // rows of 8 bytes
      EXPECT_EQ(std::vector<uint8_t>(v.strf.begin(), v.strf.begin() + 40), header);
      EXPECT_EQ(0, std::memcmp(v.strf.data() + 40, frames[0].data() + px, 1024));
    }
  }
}

TEST(VideoSession, ColourTableChangeWritesPaletteChunkInRgbOrder) {
  const VideoSessionParams p{4, 2, 8, 10, ""};
  auto f0 = test::PatternFrame(8 + 1024, 1);
  auto f1 = f0;
  f1[8 + 5 * 4 + 0] = 0x11;  // entry 5: blue
  f1[8 + 5 * 4 + 1] = 0x22;  //          green
  f1[8 + 5 * 4 + 2] = 0x33;  //          red
  auto w = WriteSession(p, nullptr, [&](VideoSession& s) {
    ASSERT_EQ(s.AddFrame(f0.data()), kAviOk);
    ASSERT_EQ(s.AddFrame(f0.data()), kAviOk);  // same table: no change chunk
    ASSERT_EQ(s.AddFrame(f1.data()), kAviOk);
  });
  ASSERT_EQ(w.summary.error, "");
  const test::Node& movi = *w.summary.top[0].First("movi");
  std::vector<std::string> ids;
  for (const auto& k : movi.kids) ids.push_back(k.id);
  EXPECT_EQ(ids, (std::vector<std::string>{"00db", "00db", "00pc", "00db", "ix00"}));
  const uint8_t* pc = w.bytes.data() + movi.kids[2].data;
  EXPECT_EQ(movi.kids[2].size, 4u + 1024);
  EXPECT_EQ(pc[0], 0);  // bFirstEntry
  EXPECT_EQ(pc[1], 0);  // bNumEntries: all 256
  EXPECT_EQ(pc[4 + 5 * 4 + 0], 0x33);
  EXPECT_EQ(pc[4 + 5 * 4 + 1], 0x22);
  EXPECT_EQ(pc[4 + 5 * 4 + 2], 0x11);
  EXPECT_EQ(w.summary.streams[0].strhLength, 3u);  // the palette chunk is no frame
  EXPECT_EQ(w.summary.idx1Entries, 4u);
}

// Stores each frame's first half, and calls every third frame a key frame
// except the first, which real compressors do not always flag.
class HalfCompressor final : public FrameCompressor {
 public:
  AviStatus Start(std::span<const uint8_t> in, int32_t, std::vector<uint8_t>& out,
                  uint32_t& handler) override {
    out.assign(in.begin(), in.end());
    out[16] = 'H';  // biCompression
    handler = FourCc("HALF");
    bytes_ = size_t(uint32_t(in[20]) | uint32_t(in[21]) << 8 | uint32_t(in[22]) << 16) / 2;
    return kAviOk;
  }
  AviStatus Compress(const uint8_t* px, std::span<const uint8_t>& out, bool& key) override {
    out = {px, bytes_};
    key = n_ > 0 && n_ % 3 == 0;
    ++n_;
    return kAviOk;
  }
  void End() override { ++*ended_; }
  int* ended_ = nullptr;

 private:
  size_t bytes_ = 0;
  int n_ = 0;
};

TEST(VideoSession, CompressedFramesCarryTheCompressorsFormatAndKeyFlags) {
  int ended = 0;
  auto c = std::make_unique<HalfCompressor>();
  c->ended_ = &ended;
  const VideoSessionParams p{4, 4, 32, 25, "AVIFile"};
  auto frame = test::PatternFrame(64, 3);
  auto w = WriteSession(p, std::move(c), [&](VideoSession& s) {
    for (int i = 0; i < 5; ++i) ASSERT_EQ(s.AddFrame(frame.data()), kAviOk);
  });
  ASSERT_EQ(w.summary.error, "");
  EXPECT_EQ(ended, 1);
  const auto& v = w.summary.streams[0];
  EXPECT_EQ(v.handler, FourCc("HALF"));
  EXPECT_EQ(v.strf[16], 'H');
  EXPECT_EQ(v.chunkKey, (std::vector<bool>{true, false, false, true, false}));
  EXPECT_EQ(v.chunkSize[0], 32u);
  EXPECT_NE(w.summary.top[0].First("movi")->First("00dc"), nullptr);
}

TEST(VideoSession, ClosingBeforeAnyFrameGivesAValidEmptyFile) {
  auto w = WriteSession(VideoSessionParams{4, 4, 8, 30, "AVIFile"}, nullptr, [](VideoSession&) {});
  ASSERT_EQ(w.summary.error, "");
  EXPECT_EQ(w.summary.dmlhFrames, 0u);
  EXPECT_EQ(w.summary.streams[0].strf.size(), 40u + 1024);
}

// A file that outgrows its super index is a failure the caller hears of.
TEST(VideoSession, AWriterFailureReachesTheClose) {
  AviWriterOptions cramped;
  cramped.riffSplitBytes = 300;
  cramped.superIndexEntries = 2;
  VideoSession s(std::make_unique<MemoryByteSink>(), {4, 2, 24, 10, ""}, nullptr, cramped);
  for (int i = 0; i < 40; ++i) s.AddFrame(test::PatternFrame(24, i).data());
  EXPECT_EQ(s.Close(), kAviWriteFailed);
}

TEST(VideoSession, RefusesUnwritableParameters) {
  EXPECT_EQ(VideoSession::Check({4, 4, 12, 30, ""}), kAviBadParameter);
  EXPECT_EQ(VideoSession::Check({0, 4, 24, 30, ""}), kAviBadParameter);
  EXPECT_EQ(VideoSession::Check({4, -1, 24, 30, ""}), kAviBadParameter);
  EXPECT_EQ(VideoSession::Check({4, 4, 24, 0, ""}), kAviBadParameter);
  EXPECT_EQ(VideoSession::Check({40000, 20000, 32, 30, ""}), kAviBadParameter);  // frame over 2 GiB
}

}  // namespace
}  // namespace velmora::avi
