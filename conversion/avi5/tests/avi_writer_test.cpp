// Golden structure of written AVI files: chunk tree, padding, every index
// cross-reference and count, across RIFF pieces.
#include <gtest/gtest.h>

#include "conversion/avi5/avi_reader.h"
#include "conversion/avi5/avi_writer.h"
#include "conversion/avi5/dib_format.h"
#include "tests/avi_bytes.h"
#include "tests/opendml_check.h"

namespace velmora::avi {
namespace {

using test::CheckOpenDml;
using test::Node;
using test::Video24;

std::vector<std::string> Codes(const Node& n) {
  std::vector<std::string> out;
  for (const Node& k : n.kids) out.push_back(k.IsList() ? k.form : k.id);
  return out;
}

TEST(AviWriter, SplitsIntoAvixPiecesWithEveryHeaderIndexAndCount) {
  MemoryByteSink sink;
  AviWriterOptions o;
  o.riffSplitBytes = 4096;
  AviWriter w(sink, o);
  ASSERT_EQ(w.Begin(Video24(16, 16, 15), nullptr), kAviOk);
  const size_t frameBytes = size_t(DibPixelBytes(16, 16, 24));  // 768
  for (int i = 0; i < 40; ++i)
    ASSERT_EQ(w.WriteVideo(test::PatternFrame(frameBytes, i), true), kAviOk);
  ASSERT_EQ(w.Close(), kAviOk);

  MemoryByteSource src(sink.Bytes());
  const auto s = CheckOpenDml(src, sink.Bytes().size());
  ASSERT_EQ(s.error, "");
  ASSERT_GT(s.top.size(), 3u);
  EXPECT_EQ(Codes(s.top[0]), (std::vector<std::string>{"hdrl", "movi", "idx1"}));
  const Node& hdrl = *s.top[0].First("hdrl");
  EXPECT_EQ(Codes(hdrl), (std::vector<std::string>{"avih", "strl", "odml"}));
  EXPECT_EQ(Codes(*hdrl.First("strl")), (std::vector<std::string>{"strh", "strf", "indx", "strn"}));
  // avih counts the first piece only, as does idx1; later pieces carry no idx1.
  std::vector<std::string> firstMovi(s.avihFrames, "00db");
  firstMovi.push_back("ix00");
  EXPECT_EQ(Codes(*s.top[0].First("movi")), firstMovi);
  EXPECT_EQ(s.idx1Entries, s.avihFrames);
  for (size_t p = 1; p < s.top.size(); ++p) {
    EXPECT_EQ(s.top[p].First("idx1"), nullptr);
    EXPECT_NE(s.top[p].First("movi")->First("ix00"), nullptr);
  }
  ASSERT_EQ(s.dmlhFrames, 40u);
  const auto& v = s.streams[0];
  EXPECT_EQ(v.superEntries, s.top.size());
  EXPECT_EQ(v.chunkKey, std::vector<bool>(40, true));
  for (int i = 0; i < 40; ++i)
    ASSERT_EQ(test::ReadBytes(src, v.chunkData[size_t(i)], frameBytes),
              test::PatternFrame(frameBytes, i))
        << "frame " << i;
}

TEST(AviWriter, OddSoundChunksArePaddedAndIndexedByBlocks) {
  MemoryByteSink sink;
  AviWriter w(sink);
  AudioStreamFormat a;
  a.strf = {1, 0, 1, 0, 0x40, 0x1F, 0, 0, 0x40, 0x1F, 0, 0, 1, 0, 8, 0};  // 8 kHz mono 8-bit
  a.blockAlign = 1;
  a.bytesPerSecond = 8000;
  VideoStreamFormat video = Video24(4, 2, 10);
  video.name = "Stream";  // 7 bytes with its NUL
  ASSERT_EQ(w.Begin(video, &a), kAviOk);
  for (int i = 0; i < 4; ++i) {
    ASSERT_EQ(w.WriteAudio(test::PatternFrame(801, i)), kAviOk);
    ASSERT_EQ(w.WriteVideo(test::PatternFrame(24, i), true), kAviOk);
  }
  ASSERT_EQ(w.Close(), kAviOk);
  MemoryByteSource src(sink.Bytes());
  const auto s = CheckOpenDml(src, sink.Bytes().size());
  ASSERT_EQ(s.error, "");
  ASSERT_EQ(s.streams.size(), 2u);
  EXPECT_EQ(s.streams[1].strf, a.strf);
  EXPECT_EQ(s.idx1Entries, 8u);
  const Node& hdrl = *s.top[0].First("hdrl");
  EXPECT_EQ(hdrl.First("strl")->First("strn")->size, 7u);  // the pad not counted
  // The headers other players trust, word by word: 100 ms a frame, 24 video
  // bytes x 10 + 8000 sound bytes a second, index | interleaved | trust chunk
  // types, 4 frames, 2 streams, 801-byte chunks at most; rcFrame 4 x 2.
  const auto words = [&src](const Node* n) {
    std::vector<uint32_t> v;
    for (uint32_t i = 0; i < n->size / 4; ++i) v.push_back(test::Read32(src, n->data + 4 * i));
    return v;
  };
  EXPECT_EQ(words(hdrl.First("avih")),
            (std::vector<uint32_t>{100000, 8240, 0, 0x910, 4, 0, 2, 801, 4, 2, 0, 0, 0, 0}));
  const auto strl = hdrl.All("strl");
  EXPECT_EQ(
      words(strl[0]->First("strh")),
      (std::vector<uint32_t>{FourCc("vids"), 0, 0, 0, 0, 1, 10, 0, 4, 24, ~0u, 0, 0, 4 | 2 << 16}));
  EXPECT_EQ(
      words(strl[1]->First("strh")),
      (std::vector<uint32_t>{FourCc("auds"), 0, 0, 0, 0, 1, 8000, 0, 3204, 801, ~0u, 1, 0, 0}));
  EXPECT_EQ(hdrl.First("odml")->First("dmlh")->size, 248u);
  EXPECT_EQ(Codes(*s.top[0].First("movi")).back(), "ix01");
  AviVideoStream v;  // the reader steps over each pad byte to the frame behind it
  ASSERT_EQ(ReadAviVideo(src, sink.Bytes().size(), v), kAviOk);
  ASSERT_EQ(v.chunks.size(), 4u);
  for (size_t i = 0; i < 4; ++i) EXPECT_EQ(v.chunks[i].offset, s.streams[0].chunkData[i]) << i;
  // A block count that is not whole is refused rather than written.
  AviWriter stereo(sink);
  a.blockAlign = 4;
  ASSERT_EQ(stereo.Begin(Video24(4, 2, 10), &a), kAviOk);
  EXPECT_EQ(stereo.WriteAudio(test::PatternFrame(6, 0)), kAviBadParameter);
}

TEST(AviWriter, RefusesUseOutOfOrderAndImpossibleFormats) {
  MemoryByteSink sink;
  AviWriter w(sink);
  EXPECT_EQ(w.WriteVideo(test::PatternFrame(4, 0), true), kAviNotOpen);
  EXPECT_EQ(w.Close(), kAviNotOpen);
  EXPECT_EQ(w.Begin(Video24(0, 4, 15), nullptr), kAviBadParameter);
  EXPECT_EQ(w.Begin(Video24(4, 4, 0), nullptr), kAviBadParameter);
  ASSERT_EQ(w.Begin(Video24(4, 4, 15), nullptr), kAviOk);
  EXPECT_EQ(w.Begin(Video24(4, 4, 15), nullptr), kAviAlreadyOpen);
  EXPECT_EQ(w.WriteAudio(test::PatternFrame(4, 0)), kAviNotOpen);  // no sound stream
  ASSERT_EQ(w.Close(), kAviOk);
  EXPECT_EQ(w.WriteVideo(test::PatternFrame(4, 0), true), kAviNotOpen);
}

}  // namespace
}  // namespace velmora::avi
