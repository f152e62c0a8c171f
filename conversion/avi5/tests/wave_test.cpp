// Wave parsing of hostile input, reading AVIs back (hostile structure, key
// flags), and the sound merge: sound placed per frame, and a failed merge
// leaving the original alone.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "conversion/avi5/avi_reader.h"
#include "conversion/avi5/avi_writer.h"
#include "conversion/avi5/dib_format.h"
#include "conversion/avi5/video_session.h"
#include "conversion/avi5/wave_merge.h"
#include "conversion/avi5/wave_reader.h"
#include "engine/byte_order.h"
#include "tests/avi_bytes.h"
#include "tests/files.h"
#include "tests/opendml_check.h"
#include "tests/temp_dir.h"

namespace velmora::avi {
namespace {

AviStatus Parse(const std::vector<uint8_t>& bytes, WaveInfo& w) {
  MemoryByteSource src(bytes);
  return ParseWave(src, bytes.size(), w);
}

// A stereo 16-bit wave whose 40-byte format chunk is the extensible form
// (channel mask 3) with a sub-format GUID beginning with `subFormat`.
std::vector<uint8_t> ExtensibleWave(uint8_t subFormat) {
  auto w = test::WaveImage(48000, 2, 16, 10);
  const uint8_t ext[24] = {22, 0, 16,   0, 3,    0, 0, 0,    subFormat, 0,    0,    0,
                           0,  0, 0x10, 0, 0x80, 0, 0, 0xAA, 0,         0x38, 0x9B, 0x71};
  w.insert(w.begin() + 36, ext, ext + sizeof ext);
  StoreLE32(&w[4], int32_t(w.size() - 8));
  StoreLE32(&w[16], 40);
  StoreLE16(&w[20], int16_t(0xFFFE));
  return w;
}

TEST(WaveReader, AcceptsPcmAndFindsItsSamples) {
  WaveInfo w;
  ASSERT_EQ(Parse(test::WaveImage(22050, 2, 16, 100), w), kAviOk);
  EXPECT_EQ(w.dataOffset, 44u);
  EXPECT_EQ(w.dataBytes, 400u);
  EXPECT_EQ(w.fmt.size(), 16u);

  // An odd-sized chunk before 'fmt ' is skipped with its pad byte.
  auto odd = test::WaveImage(8000, 1, 8, 10);
  const uint8_t extra[] = {'L', 'I', 'S', 'T', 3, 0, 0, 0, 'a', 'b', 'c', 0};
  odd.insert(odd.begin() + 12, extra, extra + sizeof extra);
  ASSERT_EQ(Parse(odd, w), kAviOk);
  EXPECT_EQ(w.dataOffset, 44u + sizeof extra);

  // A recording cut short: the data size claims more than the file holds.
  auto cut = test::WaveImage(8000, 2, 16, 100);
  cut.resize(44 + 201);
  ASSERT_EQ(Parse(cut, w), kAviOk);
  EXPECT_EQ(w.dataBytes, 200u);  // whole blocks only

  // The extensible form is PCM by its sub-format, not by its tag.
  ASSERT_EQ(Parse(ExtensibleWave(1), w), kAviOk);
  EXPECT_EQ(w.fmt.size(), 40u);
  EXPECT_EQ(w.dataOffset, 68u);
  EXPECT_EQ(w.dataBytes, 40u);
  EXPECT_EQ(Parse(ExtensibleWave(3), w), kAviWaveNotPcm);  // float
}

TEST(WaveReader, RefusesMalformedWaves) {
  WaveInfo w;
  const auto good = test::WaveImage(8000, 1, 16, 10);
  struct Damage {
    const char* what;
    size_t at;
    uint8_t value;
  } damages[] = {
      {"not RIFF", 0, 'X'},     {"not WAVE", 8, 'X'},         {"fmt size huge", 19, 0x7F},
      {"zero channels", 22, 0}, {"block align wrong", 32, 3}, {"bytes per second wrong", 29, 0},
  };
  for (const Damage& d : damages) {
    auto bad = good;
    bad[d.at] = d.value;
    EXPECT_EQ(Parse(bad, w), kAviBrokenWave) << d.what;
  }
  for (size_t n = 0; n < 44; ++n) {  // every truncation inside the headers
    std::vector<uint8_t> t(good.begin(), good.begin() + long(n));
    EXPECT_EQ(Parse(t, w), kAviBrokenWave) << n;
  }
}

std::vector<uint8_t> SmallAvi(int frames, int bits,
                              std::vector<std::vector<uint8_t>>* kept = nullptr,
                              AviWriterOptions options = {}) {
  auto sink = std::make_unique<MemoryByteSink>();
  MemoryByteSink* mem = sink.get();
  VideoSession s(std::move(sink), {4, 2, bits, 10, "AVIFile"}, nullptr, options);
  for (int i = 0; i < frames; ++i) {
    auto f = test::PatternFrame(size_t(DibInputFrameBytes(4, 2, bits)), i);
    EXPECT_EQ(s.AddFrame(f.data()), kAviOk);
    if (kept) kept->push_back(f);
  }
  EXPECT_EQ(s.Close(), kAviOk);
  return mem->Bytes();
}

AviStatus ReadVideo(const std::vector<uint8_t>& bytes, AviVideoStream& v) {
  MemoryByteSource src(bytes);
  return ReadAviVideo(src, bytes.size(), v);
}

TEST(AviReader, ReadsBackWhatWasWrittenAndSurvivesEveryTruncation) {
  const auto bytes = SmallAvi(3, 8);
  AviVideoStream v;
  ASSERT_EQ(ReadVideo(bytes, v), kAviOk);
  EXPECT_EQ(v.width, 4);
  EXPECT_EQ(v.rate, 10u);
  EXPECT_EQ(v.name, "AVIFile");
  ASSERT_EQ(v.chunks.size(), 5u);  // frame, change, frame, change, frame: every table differs
  EXPECT_TRUE(v.chunks[1].palette);
  for (size_t n = 0; n + 1 < bytes.size(); n += 7) {
    MemoryByteSource part(std::span(bytes.data(), n));
    EXPECT_NE(ReadAviVideo(part, n, v), kAviOk) << n;
  }
}

// Where the four-character `code` first lies in `bytes` at or after `from`.
size_t Find(const std::vector<uint8_t>& bytes, const char* code, size_t from = 0) {
  return size_t(std::search(bytes.begin() + long(from), bytes.end(), code, code + 4) -
                bytes.begin());
}

// `avi` (one RIFF piece) with 'rec ' lists nested `depth` deep appended.
std::vector<uint8_t> WithNestedLists(std::vector<uint8_t> avi, int depth) {
  std::vector<uint8_t> lists;
  for (int i = 0; i < depth; ++i) {
    std::vector<uint8_t> outer{'L', 'I', 'S', 'T', 0, 0, 0, 0, 'r', 'e', 'c', ' '};
    StoreLE32(&outer[4], int32_t(4 + lists.size()));
    outer.insert(outer.end(), lists.begin(), lists.end());
    lists = std::move(outer);
  }
  avi.insert(avi.end(), lists.begin(), lists.end());
  StoreLE32(&avi[4], int32_t(avi.size() - 8));
  return avi;
}

TEST(AviReader, RefusesListsThatDoNotNestProperly) {
  AviVideoStream v;
  const auto one = SmallAvi(3, 8);
  AviWriterOptions small;
  small.riffSplitBytes = 300;
  const auto pieces = SmallAvi(20, 24, nullptr, small);
  ASSERT_EQ(ReadVideo(WithNestedLists(one, 2), v), kAviOk);  // as deep as real files nest
  ASSERT_EQ(ReadVideo(pieces, v), kAviOk);

  auto pastParent = one;  // the last list of 'hdrl' runs on into 'movi', still inside the file
  const size_t odml = Find(one, "odml");
  StoreLE32(&pastParent[odml - 4], int32_t(LoadLE32U(&one[odml - 4]) + 4));
  auto secondAvi = pieces;  // two files end to end: the second piece is no 'AVIX'
  std::memcpy(&secondAvi[Find(pieces, "RIFF", 4) + 8], "AVI ", 4);
  const std::pair<const char*, std::vector<uint8_t>> cases[] = {
      {"lists 50 deep", WithNestedLists(one, 50)},
      {"list past its parent", pastParent},
      {"second piece of form AVI", secondAvi},
  };
  for (const auto& [what, bytes] : cases) EXPECT_EQ(ReadVideo(bytes, v), kAviBrokenAvi) << what;
}

TEST(AviReader, TakesKeyFlagsFromTheStandardIndexOrFromIdx1Alone) {
  MemoryByteSink sink;
  AviWriter w(sink);
  VideoStreamFormat f = test::Video24(4, 2, 10);
  f.compressed = true;
  ASSERT_EQ(w.Begin(f, nullptr), kAviOk);
  const std::vector<bool> keys{true, false, false, true, false};
  for (bool k : keys) ASSERT_EQ(w.WriteVideo(test::PatternFrame(24, 0), k), kAviOk);
  ASSERT_EQ(w.Close(), kAviOk);
  // Either index alone carries the flags: later RIFF pieces have no idx1,
  // and other writers may leave out the standard index.
  for (const char* hidden : {"", "ix00", "idx1"}) {
    auto bytes = sink.Bytes();
    if (*hidden) std::memcpy(&bytes[Find(bytes, hidden)], "JUNK", 4);
    AviVideoStream v;
    std::vector<bool> got;
    if (ReadVideo(bytes, v) == kAviOk)
      for (const AviVideoChunk& c : v.chunks) got.push_back(c.key);
    EXPECT_EQ(got, keys) << "hidden: " << hidden;
  }
}

class Merge : public ::testing::Test {
 protected:
  void SetUp() override {
    avi_ = dir_.Path("映像.avi");
    wave_ = dir_.Path("音声.wav");
    original_ = SmallAvi(10, 24, &frames_);
    velmora::test::WriteFile(avi_, original_);
  }
  velmora::test::TempDir dir_;
  std::string avi_, wave_;
  std::vector<uint8_t> original_;
  std::vector<std::vector<uint8_t>> frames_;
};

TEST_F(Merge, PlacesOneSoundChunkPerFrameThenWholeSeconds) {
  velmora::test::WriteFile(
      wave_, test::WaveImage(8000, 1, 16, 8000 * 25 / 10));  // 2.5 s against 1 s of video
  std::vector<std::pair<int, int>> calls;
  ASSERT_EQ(MergeWaveIntoAvi(avi_, wave_, [&](int32_t d, int32_t t) { calls.emplace_back(d, t); }),
            kAviOk);
  EXPECT_EQ(calls.size(), 10u);
  EXPECT_EQ(calls.back(), std::make_pair(10, 10));

  const auto bytes = velmora::test::ReadFile(avi_);
  MemoryByteSource src(bytes);
  const auto s = test::CheckOpenDml(src, bytes.size());
  ASSERT_EQ(s.error, "");
  ASSERT_EQ(s.streams.size(), 2u);
  EXPECT_EQ(s.streams[0].strhLength, 10u);
  EXPECT_EQ(s.streams[1].strhLength, 20000u);
  EXPECT_EQ(s.streams[1].chunkSize, (std::vector<uint32_t>{1600, 1600, 1600, 1600, 1600, 1600, 1600,
                                                           1600, 1600, 1600, 16000, 8000}));
  const auto wave = test::WaveImage(8000, 1, 16, 20000);
  for (size_t i = 0; i < 10; ++i) {
    ASSERT_EQ(test::ReadBytes(src, s.streams[0].chunkData[i], 24), frames_[i]) << "frame " << i;
    ASSERT_EQ(test::ReadBytes(src, s.streams[1].chunkData[i], 1600),
              std::vector<uint8_t>(wave.begin() + 44 + long(i) * 1600,
                                   wave.begin() + 44 + long(i + 1) * 1600));
  }
  // Sound and pictures alternate in the file: each frame follows its sound.
  for (size_t i = 0; i < 10; ++i) EXPECT_LT(s.streams[1].chunkData[i], s.streams[0].chunkData[i]);
  EXPECT_FALSE(velmora::test::Exists(avi_ + ".wavmerge~"));
}

TEST_F(Merge, FailuresLeaveTheOriginalUntouched) {
  EXPECT_EQ(MergeWaveIntoAvi(avi_, wave_, {}), kAviCannotOpenWave);  // no wave file
  velmora::test::WriteFile(wave_, test::WaveImage(8000, 1, 16, 100, 3));
  EXPECT_EQ(MergeWaveIntoAvi(avi_, wave_, {}), kAviWaveNotPcm);
  velmora::test::WriteFile(wave_, {'R', 'I', 'F', 'F'});
  EXPECT_EQ(MergeWaveIntoAvi(avi_, wave_, {}), kAviBrokenWave);
  EXPECT_EQ(velmora::test::ReadFile(avi_), original_);

  velmora::test::WriteFile(wave_, test::WaveImage(8000, 1, 16, 100));
  EXPECT_EQ(MergeWaveIntoAvi(dir_.Path("無い.avi"), wave_, {}), kAviCannotOpenAvi);
  auto damaged = original_;
  StoreLE32(&damaged[4], int32_t(damaged.size() * 2));  // RIFF size past the end
  velmora::test::WriteFile(avi_, damaged);
  EXPECT_EQ(MergeWaveIntoAvi(avi_, wave_, {}), kAviBrokenAvi);
  EXPECT_EQ(velmora::test::ReadFile(avi_), damaged);

  // A failure late in the merge: more RIFF pieces than the super index holds.
  velmora::test::WriteFile(avi_, original_);
  velmora::test::WriteFile(wave_, test::WaveImage(8000, 1, 16, 8000));
  AviWriterOptions cramped;
  cramped.riffSplitBytes = 300;
  cramped.superIndexEntries = 2;
  EXPECT_EQ(MergeWaveIntoAvi(avi_, wave_, {}, cramped), kAviWriteFailed);
  EXPECT_EQ(velmora::test::ReadFile(avi_), original_);
  EXPECT_FALSE(velmora::test::Exists(avi_ + ".wavmerge~"));
  // The merged copy cannot be created (a folder holds its name).
  std::filesystem::create_directory(velmora::test::TempDir::Fs(avi_ + ".wavmerge~"));
  EXPECT_EQ(MergeWaveIntoAvi(avi_, wave_, {}), kAviCannotCreate);
  EXPECT_EQ(velmora::test::ReadFile(avi_), original_);
}

TEST_F(Merge, CopiesEveryPieceOfAMultiPieceAvi) {
  AviWriterOptions small;
  small.riffSplitBytes = 300;  // a few frames per RIFF piece, in and out
  frames_.clear();
  velmora::test::WriteFile(avi_, SmallAvi(250, 24, &frames_, small));
  velmora::test::WriteFile(wave_, test::WaveImage(8000, 2, 16, 4000));
  // Each report costs the caller a window update: one per hundredth, the last at the end.
  std::vector<std::pair<int, int>> calls;
  ASSERT_EQ(MergeWaveIntoAvi(
                avi_, wave_, [&](int32_t d, int32_t t) { calls.emplace_back(d, t); }, small),
            kAviOk);
  EXPECT_EQ(calls.size(), 100u);
  EXPECT_EQ(calls.back(), std::make_pair(250, 250));
  const auto bytes = velmora::test::ReadFile(avi_);
  MemoryByteSource src(bytes);
  const auto s = test::CheckOpenDml(src, bytes.size());
  ASSERT_EQ(s.error, "");
  EXPECT_GT(s.top.size(), 10u);
  ASSERT_EQ(s.streams[0].chunkData.size(), 250u);
  for (size_t i = 0; i < 250; ++i)
    ASSERT_EQ(test::ReadBytes(src, s.streams[0].chunkData[i], 24), frames_[i]) << "frame " << i;
  EXPECT_EQ(s.streams[1].strhLength, 4000u);
}

TEST(Merge2, SoundBlocksFollowTheFrameClockExactly) {
  EXPECT_EQ(BlocksBeforeFrame(1, 1, 30, 44100), 1470u);
  EXPECT_EQ(BlocksBeforeFrame(3, 1001, 30000, 48000), 4804u);  // 3 x 1601.6, floored
  EXPECT_EQ(BlocksBeforeFrame(4000000, 1, 1, 96000), 384000000000u);
}

TEST(AviStatusText, EveryStatusHasItsOwnText) {
  std::vector<std::string> seen;
  for (int32_t s = 0; s >= kAviFirstStatus; --s) {
    const std::string t = AviStatusText(s);
    EXPECT_FALSE(t.empty());
    EXPECT_EQ(std::find(seen.begin(), seen.end(), t), seen.end()) << s;
    seen.push_back(t);
  }
  EXPECT_EQ(AviStatusText(kAviWaveNotPcm), "PCM形式以外のWAVEファイルは結合できません。");
  EXPECT_EQ(AviStatusText(-99), "不明なエラーです。(-99)");
}

}  // namespace
}  // namespace velmora::avi
