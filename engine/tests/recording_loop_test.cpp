// The recording loop against a fake clock: which slots drop, what the file
// holds, where the loop pauses, how cancel and validation end it.
#include "engine/recording_loop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <regex>

#include "engine/byte_order.h"
#include "engine/frame_codec.h"
#include "engine/movie_reader.h"
#include "engine/result_codes.h"
#include "engine/tests/fake_capture.h"

namespace velmora {
namespace {

using test::FakeClock;
using test::FakeSource;
using test::LoggingSink;
using test::RecordingListener;

struct Rig {
  test::EventLog log;
  FakeClock clock{log};
  FakeSource source{log, clock};
  LoggingSink sink{log};
  RecordingListener listener{log};
  RecordingSession session{.x = 5, .y = 7, .width = 8, .height = 4, .fps = 10, .sec = 2,
                           .method = 1, .bitCount = 32};
  RecordingRequest request{.path = "movie.QRK"};

  int32_t Run() {
    RecordingPorts ports{clock, &source, sink, listener, &CompressFrame};
    return RunRecordingLoop(session, request, ports);
  }
  const std::vector<uint8_t>& Bytes() const { return sink.mem.Bytes(); }
};

// Splits a movie's bytes into the records behind the header (sizes only).
std::vector<uint32_t> RecordSizes(const std::vector<uint8_t>& b) {
  std::vector<uint32_t> sizes;
  for (size_t pos = 32; pos + 8 <= b.size();) {
    EXPECT_EQ(0, std::memcmp(b.data() + pos, "FRAM", 4)) << "offset " << pos;
    const uint32_t n = LoadLE32U(b.data() + pos + 4);
    sizes.push_back(n);
    pos += 8 + n;
  }
  return sizes;
}

// Decodes the movie and returns every frame.
std::vector<std::vector<uint8_t>> Decode(const std::vector<uint8_t>& bytes) {
  MovieReader r;
  EXPECT_EQ(0, r.Open(std::make_unique<MemoryByteSource>(bytes)));
  std::vector<std::vector<uint8_t>> frames;
  while (r.Next() == 0) frames.emplace_back(r.Current(), r.Current() + r.FrameSize());
  EXPECT_EQ(r.FramesRead(), r.FrameCount());
  return frames;
}

// A grab that takes 1.5 intervals: with interval 100 ms the slot test
// (i + 1) x 100 <= last - start drops exactly slots 2, 5, 8, ... (slot 2
// on equality: the previous wait ended at 300 exactly).
TEST(RecordingLoop, SlowGrabDropsExactlyThePassedSlots) {
  Rig r;
  r.source.grabMs = 150;
  ASSERT_EQ(0, r.Run());
  const std::vector<int> dropped{2, 5, 8, 11, 14, 17};
  ASSERT_EQ(r.listener.reports.size(), 20u);
  int32_t drops = 0, lastCompress = 0;
  for (int i = 0; i < 20; ++i) {
    const auto& rep = r.listener.reports[i];
    const bool isDrop = std::find(dropped.begin(), dropped.end(), i) != dropped.end();
    drops += isDrop;
    EXPECT_EQ(rep.nowFrame, i);
    EXPECT_EQ(rep.isDrop, isDrop) << "slot " << i;
    EXPECT_EQ(rep.dropCount, drops) << "slot " << i;
    EXPECT_EQ(rep.noCompressSize, 8 * 4 * 4 / 4);
    if (isDrop) {
      EXPECT_EQ(rep.compressSize, lastCompress) << "a drop repeats the last compressed size";
      EXPECT_EQ(rep.frameCaptureTime, 0.0);
    } else {
      EXPECT_GT(rep.compressSize, 0);
      EXPECT_EQ(rep.frameCaptureTime, 150.0);
    }
    lastCompress = rep.compressSize;
  }
  EXPECT_EQ(r.source.origins.size(), 14u);

  const auto sizes = RecordSizes(r.Bytes());
  ASSERT_EQ(sizes.size(), 20u);
  for (int i : dropped) EXPECT_EQ(sizes[i], 4u) << "dropped slot " << i << " is a 12-byte record";

  const auto frames = Decode(r.Bytes());
  ASSERT_EQ(frames.size(), 20u);
  int32_t grab = -1;
  for (int i = 0; i < 20; ++i) {
    if (std::find(dropped.begin(), dropped.end(), i) == dropped.end()) ++grab;
    EXPECT_EQ(frames[i], r.source.FrameFor(grab)) << "slot " << i;
  }
}

TEST(RecordingLoop, FastGrabKeepsEverySlotAndPacesToItsEnd) {
  Rig r;
  r.session.sleepTime = 7;
  r.source.grabMs = 10;
  ASSERT_EQ(0, r.Run());
  EXPECT_EQ(r.source.origins.size(), 20u);
  EXPECT_EQ(r.listener.reports.back().dropCount, 0);
  // The last slot waits in 7 ms steps to the first reading past its end;
  // the header is written once with the requested length.
  EXPECT_GT(r.clock.NowMs() - 1000.0, 2000.0);
  EXPECT_LE(r.clock.NowMs() - 1000.0, 2007.0);
  MovieHeader h = *DecodeMovieHeader(std::span<const uint8_t, 32>(r.Bytes().data(), 32));
  EXPECT_EQ(h, (MovieHeader{1, 32, 8, 4, 10, 2}));
  EXPECT_EQ(r.sink.mem.SlotsBegun(), 20);
  EXPECT_EQ(r.sink.mem.CloseCount(), 1);
  EXPECT_EQ(r.source.setUps, 1);
  EXPECT_EQ(r.source.releases, 1);
  EXPECT_EQ(r.source.setup.frameBytes, 128);
}

// SleepCo 2: a pause after the grab and one after the write; SleepCo 1 only
// the latter (also after a drop); every pacing turn pumps, then pauses.
TEST(RecordingLoop, CpuReleasePausesByKind) {
  for (int32_t sleepCo : {0, 1, 2}) {
    Rig r;
    r.session.sleepCo = sleepCo;
    r.session.sleepTime = 40;
    r.session.sec = 1;
    r.source.grabMs = 150;
    ASSERT_EQ(0, r.Run());
    const std::string grabbed = sleepCo == 2 ? "BGSWS" : sleepCo == 1 ? "BGWS" : "BGW";
    const std::string dropped = sleepCo >= 1 ? "BDS" : "BD";
    const std::regex slot("(" + grabbed + "|" + dropped + ")(PS)*C");
    std::string rest = r.log.substr(1);  // after 'A'
    ASSERT_EQ(r.log[0], 'A');
    int slots = 0, drops = 0;
    std::smatch m;
    while (std::regex_search(rest, m, slot, std::regex_constants::match_continuous)) {
      drops += m[1].str()[1] == 'D';
      ++slots;
      rest = m.suffix();
    }
    EXPECT_EQ(rest, "") << "SleepCo " << sleepCo << ": " << r.log;
    EXPECT_EQ(slots, 10);
    EXPECT_GT(drops, 0) << "the drop path must be exercised";
    for (int32_t ms : r.clock.sleeps) EXPECT_EQ(ms, 40);
    EXPECT_EQ(r.clock.pumps, static_cast<int64_t>(std::count(r.log.begin(), r.log.end(), 'P')));
  }
}

TEST(RecordingLoop, WaitsForTheStartTimeYieldingAndRoundsItHalfToEven) {
  Rig r;
  r.request.waitForStartTime = 1010.5;
  int32_t first = -1;
  r.request.retFirstCaptureTime = &first;
  r.clock.zeroSleepMs = 0.25;
  r.session.sec = 0;
  ASSERT_EQ(0, r.Run());
  // 1000 -> 1010.75 in 43 zero-length sleeps: the first reading past 1010.5.
  EXPECT_EQ(r.clock.sleeps, std::vector<int32_t>(43, 0));
  EXPECT_EQ(first, 1011);
  for (auto [start, rounded] : {std::pair{1012.5, 1012}, {1013.5, 1014}, {1013.49, 1013}}) {
    Rig q;
    q.clock.Advance(start - 1000.0);
    q.request.retFirstCaptureTime = &first;
    q.session.sec = 0;
    ASSERT_EQ(0, q.Run());
    EXPECT_EQ(first, rounded) << start;
    EXPECT_TRUE(q.clock.sleeps.empty()) << "no wait without a start time";
  }
}

TEST(RecordingLoop, ZeroSecondsWritesTheHeaderOnly) {
  Rig r;
  r.session.sec = 0;
  ASSERT_EQ(0, r.Run());
  EXPECT_EQ(r.Bytes().size(), 32u);
  EXPECT_EQ(LoadLE32(r.Bytes().data() + 28), 0);
  EXPECT_EQ(r.log, "A");
  EXPECT_EQ(r.sink.mem.CloseCount(), 1);
}

TEST(RecordingLoop, CancelAtEitherEvent) {
  Rig start;
  start.listener.cancelAtStart = true;
  EXPECT_EQ(start.Run(), MakeResultCode(kErrCancelled, 0));
  EXPECT_EQ(start.Bytes().size(), 32u);
  EXPECT_EQ(start.log, "A");
  EXPECT_EQ(start.sink.mem.CloseCount(), 1);
  EXPECT_EQ(start.source.releases, 1);

  for (int32_t k : {0, 6}) {
    Rig r;
    r.listener.cancelAtFrame = k;
    r.source.grabMs = 150;
    EXPECT_EQ(r.Run(), MakeResultCode(kErrCancelled, k + 1));
    EXPECT_EQ(RecordSizes(r.Bytes()).size(), static_cast<size_t>(k + 1));
    EXPECT_EQ(LoadLE32(r.Bytes().data() + 28), 2) << "the header keeps the requested length";
    EXPECT_EQ(r.sink.mem.CloseCount(), 1);
  }
}

TEST(RecordingLoop, InvalidSessionIsRefusedBeforeAnythingOpens) {
  const std::vector<std::pair<const char*, void (*)(RecordingSession&)>> cases{
      {"width", [](RecordingSession& s) { s.width = 0; }},
      {"height", [](RecordingSession& s) { s.height = 0; }},
      {"x", [](RecordingSession& s) { s.x = -1; }},
      {"y", [](RecordingSession& s) { s.y = -1; }},
      {"fps", [](RecordingSession& s) { s.fps = 0; }},
      {"sec", [](RecordingSession& s) { s.sec = -1; }},
      {"method", [](RecordingSession& s) { s.method = 3; }},
  };
  for (const auto& [name, spoil] : cases) {
    for (bool user : {false, true}) {
      Rig r;
      spoil(r.session);
      r.request.userCapture = user;  // -1 wins over -9
      EXPECT_EQ(r.Run(), MakeResultCode(kErrNotInitialised)) << name;
      EXPECT_EQ(r.sink.mem.OpenCount(), 0) << name;
      EXPECT_EQ(r.session.bitCount, 0) << name << ": restored to the never-taken value";
      EXPECT_EQ(r.listener.bitmapInfoCalls + r.listener.startCalls, 0);
    }
  }
  Rig fresh;
  fresh.session = RecordingSession{};
  fresh.session.bitCount = 32;
  EXPECT_EQ(fresh.Run(), MakeResultCode(kErrNotInitialised));
  EXPECT_EQ(fresh.session.bitCount, 0);

  Rig negativeMethod;  // the method has no lower bound
  negativeMethod.session.method = -1;
  negativeMethod.session.sec = 0;
  EXPECT_EQ(negativeMethod.Run(), 0);
}

TEST(RecordingLoop, UserCaptureNeedsType1) {
  for (int32_t method : {0, 2}) {
    Rig r;
    r.session.method = method;
    r.request.userCapture = true;
    EXPECT_EQ(r.Run(), MakeResultCode(kErrUserCaptureType1Only));
    EXPECT_EQ(r.sink.mem.OpenCount(), 0);
    EXPECT_EQ(r.listener.bitmapInfoCalls, 0);
    EXPECT_EQ(r.session.bitCount, 0);
  }
}

// The handler's depth sizes the frames and the header; handlers that take
// longer than a slot still never cause a drop; the depth is given back.
TEST(RecordingLoop, UserCaptureNeverDropsAndUsesTheHandlersDepth) {
  Rig r;
  r.request.userCapture = true;
  r.listener.userBitCount = 16;
  int32_t calls = 0;
  r.listener.onUserData = [&](uint8_t* frame, int32_t bytes) {
    for (int32_t j = 0; j < bytes; ++j) frame[j] = j < bytes / 2 ? static_cast<uint8_t>(j + calls) : 0;
    ++calls;
    r.clock.Advance(250);
  };
  ASSERT_EQ(0, r.Run());
  EXPECT_EQ(r.listener.bitCountSeen, 32);
  EXPECT_EQ(r.listener.userFrameBytes, 8 * 4 * 2);
  EXPECT_EQ(calls, 20);
  EXPECT_EQ(r.listener.reports.back().dropCount, 0);
  EXPECT_EQ(r.session.bitCount, 32);
  const auto frames = Decode(r.Bytes());
  ASSERT_EQ(frames.size(), 20u);
  EXPECT_EQ(LoadLE32(r.Bytes().data() + 12), 16);
  EXPECT_EQ(frames[19][0], 19);
  EXPECT_EQ(frames[19][31], static_cast<uint8_t>(31 + 19));
}

TEST(RecordingLoop, HandlerMovesTheRegionForTheNextGrab) {
  Rig r;
  r.listener.moveBy = 3;
  r.session.sec = 1;
  ASSERT_EQ(0, r.Run());
  ASSERT_EQ(r.source.origins.size(), 10u);
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(r.source.origins[i], std::make_pair(5 + 3 * i, 7 + 6 * i)) << "grab " << i;
  }
  EXPECT_EQ(r.session.x, 35);
}

// Type2 hands back memory it owns: the loop must copy it, not swap, or the
// next frame would be compared against itself.
TEST(RecordingLoop, SourceOwnedFrameMemoryIsCopied) {
  Rig r;
  r.source.ownsMemory = true;
  ASSERT_EQ(0, r.Run());
  const auto frames = Decode(r.Bytes());
  ASSERT_EQ(frames.size(), 20u);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(frames[i], r.source.FrameFor(i)) << i;
}

// Every other unit changed is the encoder's longest output; the buffer must
// hold it (the sanitizers catch an overrun) and 8-bit frames carry 1024
// palette bytes.
TEST(RecordingLoop, WorstCaseFramesAndEightBitFit) {
  Rig r;
  r.source.worstCase = true;
  r.session.bitCount = 8;
  r.session.width = 12;
  ASSERT_EQ(0, r.Run());
  EXPECT_EQ(r.source.setup.frameBytes, 12 * 4 + 1024);
  // Frame 0 against black: a leading empty unchanged run, then 134 x
  // (literal count, literal unit, unchanged count of 1): about 1.5 x F.
  EXPECT_EQ(RecordSizes(r.Bytes())[0], 4u * (1 + 3 * 134));
  EXPECT_GE(CompressOutputBytes(1072), MaxPayloadBytes(1072));
  EXPECT_EQ(CompressOutputBytes(1 << 20), size_t{3} << 19 | 8) << "floor: the codec's worst case";
}

TEST(RecordingLoop, FailuresFromTheSinkOrSourceEndTheRecording) {
  Rig write;
  write.sink.mem.FailRecordWrite(4, MakeResultCode(kErrApi, 112));
  EXPECT_EQ(write.Run(), MakeResultCode(kErrApi, 112));
  EXPECT_EQ(RecordSizes(write.Bytes()).size(), 4u);
  EXPECT_EQ(write.sink.mem.CloseCount(), 1);
  EXPECT_EQ(write.source.releases, 1);
  EXPECT_EQ(write.listener.reports.size(), 4u);

  Rig open;
  open.sink.mem.FailOpen(MakeResultCode(kErrCannotOpen));
  EXPECT_EQ(open.Run(), MakeResultCode(kErrCannotOpen));
  EXPECT_EQ(open.listener.startCalls, 0);
  EXPECT_EQ(open.source.setUps, 0);
  EXPECT_EQ(open.session.bitCount, 32);

  Rig setUp;
  setUp.source.setUpError = kErrApi;
  EXPECT_EQ(setUp.Run(), MakeResultCode(kErrApi));
  EXPECT_EQ(setUp.Bytes().size(), 0u);
  EXPECT_EQ(setUp.source.releases, 1);
}

TEST(RoundHalfEven, Halves) {
  EXPECT_EQ(RoundHalfEven(0.5), 0);
  EXPECT_EQ(RoundHalfEven(1.5), 2);
  EXPECT_EQ(RoundHalfEven(2.5), 2);
  EXPECT_EQ(RoundHalfEven(-2.5), -2);
  EXPECT_EQ(RoundHalfEven(-3.5), -4);
  EXPECT_EQ(RoundHalfEven(2.4999), 2);
}

}  // namespace
}  // namespace velmora
