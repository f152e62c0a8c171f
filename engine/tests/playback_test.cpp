#include "engine/playback.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "tests/fake_clock.h"
#include "tests/movie_bytes.h"

namespace velmora {
namespace {

using test::EncodeMovie;
using test::FakeClock;

struct RecordingSurface final : PlaybackSurface {
  int begins = 0, ends = 0;
  std::vector<std::vector<uint8_t>> shown;
  std::vector<int64_t> shownAtFrame;
  int64_t frameBytes = 0;
  int64_t decodedSoFar = 0;  // set by the listener, so Show knows the index
  std::vector<uint8_t> converted;
  void Begin(const MovieHeader&, int64_t f) override {
    ++begins;
    frameBytes = f;
  }
  void Show(const uint8_t* frame) override {
    shown.emplace_back(frame, frame + frameBytes);
    shownAtFrame.push_back(decodedSoFar - 1);
  }
  uint8_t* ToDeviceIndependent(const uint8_t* frame) override {
    converted.assign(frame, frame + frameBytes);
    converted[0] ^= 0xFF;  // marks that the conversion ran
    return converted.data();
  }
  void End() override { ++ends; }
};

struct ScriptedListener final : PlaybackListener {
  RecordingSurface* surface = nullptr;
  std::function<void(int64_t)> onDecoded;  // index of the frame just decoded
  std::function<void(int64_t, bool&)> onDrawing;
  std::vector<std::vector<uint8_t>> decoded;
  std::vector<int64_t> drawingFrames;
  std::vector<double> drawingMs;
  void FrameDecoded() override {
    const int64_t i = surface->decodedSoFar++;
    if (onDecoded) onDecoded(i);
  }
  void CP_Decode(uint8_t* data, int64_t bytes, int64_t, int64_t) override {
    decoded.emplace_back(data, data + bytes);
  }
  void CP_Drawing(int64_t i, int64_t count, double ms, bool& cancel) override {
    EXPECT_EQ(count, 10);
    drawingFrames.push_back(i);
    drawingMs.push_back(ms);
    if (onDrawing) onDrawing(i, cancel);
  }
};

// 10 frames at 10 fps (100 ms slots), 8 x 2 pixels of 32 bits; frame i has
// its first 8 bytes = i + 1 and the rest 0.
struct PlaybackFixture : ::testing::Test {
  MovieHeader header{1, 32, 8, 2, 10, 1};
  std::vector<std::vector<uint8_t>> frames;
  FakeClock clock;
  RecordingSurface surface;
  ScriptedListener listener;
  Playback playback{clock};

  PlaybackFixture() {
    for (int i = 0; i < 10; ++i) {
      frames.emplace_back(64, 0);
      std::fill_n(frames.back().begin(), 8, static_cast<uint8_t>(i + 1));
    }
    listener.surface = &surface;
    clock.zeroSleepMs = 0.25;
  }
  int32_t Run(const std::vector<uint8_t>& bytes, bool decodeOnly = false) {
    movie = bytes;
    return playback.Play(std::make_unique<MemoryByteSource>(movie), surface, listener, decodeOnly);
  }
  std::vector<uint8_t> movie;
};

TEST_F(PlaybackFixture, FastFramesAreAllShownAndPacedToTheirSlots) {
  listener.onDecoded = [&](int64_t) { clock.now += 1; };  // decoding costs 1 ms
  ASSERT_EQ(Run(EncodeMovie(header, frames)), 0);
  EXPECT_EQ(surface.shown, frames);
  EXPECT_EQ(listener.drawingFrames.size(), 10u);
  EXPECT_DOUBLE_EQ(listener.drawingMs[3], 1.0);
  // Each wait ends at the first reading strictly past 100 ms after the last.
  EXPECT_GT(clock.now - 1000, 1000.0);
  EXPECT_LT(clock.now - 1000, 1000.0 + 10 * (1 + 2 * clock.zeroSleepMs));
  EXPECT_GT(clock.pumps, 0);
  EXPECT_EQ(surface.begins, 1);
  EXPECT_EQ(surface.ends, 1);
}

TEST_F(PlaybackFixture, LateFramesAreSkippedButStillDecoded) {
  // Frame 0 ends exactly at its slot end (not due: the test is strict),
  // frame 1 just before its slot ends (due), then decoding takes 150 ms.
  listener.onDecoded = [&](int64_t i) {
    if (i == 0)
      clock.now = 1100;
    else if (i == 1)
      clock.now = 1199.5;
    else
      clock.now += 150;
  };
  ASSERT_EQ(Run(EncodeMovie(header, frames)), 0);
  ASSERT_EQ(surface.shownAtFrame, std::vector<int64_t>{1});
  EXPECT_EQ(surface.shown[0], frames[1]);
  EXPECT_EQ(listener.drawingFrames.size(), 10u);
}

// Cancelling through the drawing event stops with success, the surface ended.
TEST_F(PlaybackFixture, StartTimeMovedIntoTheFutureMakesLaterFramesDueUntilCancelled) {
  listener.onDecoded = [&](int64_t) { clock.now += 500; };
  listener.onDrawing = [&](int64_t i, bool& cancel) {
    if (i == 2) playback.SetStartT(clock.now + 1e6);
    cancel = i == 8;
  };
  ASSERT_EQ(Run(EncodeMovie(header, frames)), 0);
  EXPECT_EQ(surface.shownAtFrame, (std::vector<int64_t>{3, 4, 5, 6, 7, 8}));
  EXPECT_EQ(surface.shown.back(), frames[8]);
  EXPECT_EQ(listener.drawingFrames.size(), 9u);
  EXPECT_EQ(surface.ends, 1);
}

TEST_F(PlaybackFixture, DecodeOnlyDeliversEveryFrameWithoutWaiting) {
  listener.onDecoded = [&](int64_t) { clock.now += 500; };  // far too slow for timed mode
  ASSERT_EQ(Run(EncodeMovie(header, frames), true), 0);
  EXPECT_EQ(listener.decoded, frames);  // Type1: the frame itself
  EXPECT_TRUE(surface.shown.empty());
  EXPECT_TRUE(clock.sleeps.empty());

  header.method = 0;  // Type0 frames go through the device-independent conversion
  listener.decoded.clear();
  surface.decodedSoFar = 0;
  ASSERT_EQ(Run(EncodeMovie(header, frames), true), 0);
  ASSERT_EQ(listener.decoded.size(), 10u);
  EXPECT_EQ(listener.decoded[4][0], static_cast<uint8_t>(5 ^ 0xFF));
  EXPECT_EQ(listener.decoded[4][1], 5);
  EXPECT_EQ(listener.decoded[4][9], 0);
}

TEST_F(PlaybackFixture, DamagedMoviesEndWithTheirCodes) {
  auto bytes = EncodeMovie(header, frames);
  const size_t secondRecord = 32 + 8 + (bytes[36] | bytes[37] << 8);
  auto badTag = bytes;
  badTag[secondRecord] = 'X';
  EXPECT_EQ(Run(badTag), -4);
  EXPECT_EQ(listener.drawingFrames.size(), 1u);  // one frame was handed on first
  EXPECT_EQ(surface.ends, 1);

  auto badMagic = bytes;
  badMagic[0] = 'Z';
  EXPECT_EQ(Run(badMagic), -3);
  EXPECT_EQ(surface.ends, 1) << "refused before anything was made";

  EXPECT_EQ(playback.PlayFile("/nonexistent/velmora/none.QRK", surface, listener, false), -2);
}

}  // namespace
}  // namespace velmora
