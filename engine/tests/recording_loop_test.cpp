// The recording loop against a fake clock: which slots drop, what the file
// holds, where the loop pauses, how cancel and validation end it.
#include "engine/recording_loop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

#include "engine/byte_order.h"
#include "engine/clock_low32.h"
#include "engine/frame_codec.h"
#include "engine/movie_format.h"
#include "engine/result_codes.h"
#include "engine/tests/recording_rig.h"

namespace velmora {
namespace {

using test::Rig;

// A grab that takes 1.5 intervals (150 of 100 ms): the test
// (i + 1) x 100 <= last - start drops exactly slots 2, 5, 8, ... - slot 2
// on equality, the wait before it having ended at 300 exactly. A source that
// owns its pixel memory (Type2) must be copied, not swapped, or the next
// frame would be compared against itself; the handler's moves reach the next
// grab, dropped slots included.
TEST(RecordingLoop, SlowGrabDropsExactlyThePassedSlots) {
  const std::vector<int> dropped{2, 5, 8, 11, 14, 17};
  const auto isDropped = [&](int i) { return std::count(dropped.begin(), dropped.end(), i) > 0; };
  for (const bool ownsMemory : {false, true}) {
    SCOPED_TRACE(ownsMemory);
    Rig r;
    r.source.grabMs = 150;
    r.source.ownsMemory = ownsMemory;
    r.listener.moveBy = 3;
    ASSERT_EQ(0, r.Run());
    ASSERT_EQ(r.listener.reports.size(), 20u);
    int32_t drops = 0, lastCompress = 0;
    for (int i = 0; i < 20; ++i) {
      const auto& rep = r.listener.reports[i];
      drops += isDropped(i);
      EXPECT_EQ(rep.nowFrame, i);
      EXPECT_EQ(rep.isDrop, isDropped(i)) << "slot " << i;
      EXPECT_EQ(rep.dropCount, drops) << "slot " << i;
      EXPECT_EQ(rep.noCompressSize, 32);
      EXPECT_EQ(rep.frameCaptureTime, isDropped(i) ? 0.0 : 150.0);
      if (isDropped(i)) {
        EXPECT_EQ(rep.compressSize, lastCompress) << "a drop repeats the last size";
      }
      lastCompress = rep.compressSize;
    }
    ASSERT_EQ(r.source.origins.size(), 14u);

    const auto sizes = test::RecordSizes(r.Bytes());
    ASSERT_EQ(sizes.size(), 20u);
    for (int i : dropped) EXPECT_EQ(sizes[i], 4u) << "dropped slot " << i << " is a 12-byte record";
    const auto h = DecodeMovieHeader(std::span<const uint8_t, 32>(r.Bytes().data(), 32));
    EXPECT_EQ(h, (MovieHeader{1, 32, 8, 4, 10, 2}));
    const auto frames = test::ReadBack(r.Bytes()).frames;
    ASSERT_EQ(frames.size(), 20u);
    for (int i = 0, grab = -1; i < 20; ++i) {
      if (!isDropped(i)) {
        EXPECT_EQ(r.source.origins[++grab], std::make_pair(5 + 3 * i, 7 + 6 * i)) << "slot " << i;
      }
      EXPECT_EQ(frames[i], r.source.FrameFor(grab)) << "slot " << i;
    }
  }
}

// cpuReleaseCount 2 pauses after the grab and after the write, cpuReleaseCount 1 only after
// the write (a drop included); every pacing turn pumps, then pauses.
TEST(RecordingLoop, CpuReleasePausesByKind) {
  for (int32_t cpuReleaseCount : {0, 1, 2}) {
    Rig r;
    r.session.cpuReleaseCount = cpuReleaseCount;
    r.session.cpuReleaseTime = 40;
    r.session.sec = 1;
    r.source.grabMs = 150;
    ASSERT_EQ(0, r.Run());
    const std::string grabbed = cpuReleaseCount == 2   ? "BGSWS"
                                : cpuReleaseCount == 1 ? "BGWS"
                                                       : "BGW";
    const std::string dropped = cpuReleaseCount >= 1 ? "BDS" : "BD";
    const std::regex slot("(" + grabbed + "|" + dropped + ")(PS)*C");
    std::string rest = r.log.substr(1);
    ASSERT_EQ(r.log[0], 'A');
    int slots = 0, drops = 0;
    std::smatch m;
    while (std::regex_search(rest, m, slot, std::regex_constants::match_continuous)) {
      drops += m[1].str()[1] == 'D';
      ++slots;
      rest = m.suffix();
    }
    EXPECT_EQ(rest, "") << "cpuReleaseCount " << cpuReleaseCount << ": " << r.log;
    EXPECT_EQ(slots, 10);
    EXPECT_GT(drops, 0) << "the drop path must be exercised";
    EXPECT_EQ(std::count(r.clock.sleeps.begin(), r.clock.sleeps.end(), 40),
              std::ssize(r.clock.sleeps));
  }
}

// The start time travels as the clock's low 32 bits: past 2^31 ms of uptime
// it reads negative, past 2^32 ms it is small again; the wait must hold either way.
TEST(RecordingLoop, BusyWaitsForTheStartTimeAndRoundsItHalfToEven) {
  for (const double clockStart : {1000.0, 2147483643.0, 4294967291.0}) {
    int32_t first = -1;
    Rig r;
    r.clock.now = clockStart;
    r.request.waitForStartTime = Low32Ms(static_cast<int64_t>(clockStart) + 10);
    r.request.retFirstCaptureTime = &first;
    r.clock.zeroSleepMs = 0.25;
    r.session.sec = 0;
    ASSERT_EQ(0, r.Run());
    // 41 zero sleeps: start + 10.25 is the first reading past the planned start.
    EXPECT_EQ(r.clock.sleeps, std::vector<int32_t>(41, 0)) << clockStart;
    EXPECT_EQ(first, Low32Ms(static_cast<int64_t>(clockStart) + 10)) << clockStart;
  }
  for (auto [start, rounded] :
       {std::pair{1012.5, 1012}, {1013.5, 1014}, {1013.49, 1013}, {4294967295.5, 0}}) {
    int32_t first = -1;
    Rig q;
    q.clock.now = start;
    q.request.retFirstCaptureTime = &first;
    q.session.sec = 0;
    ASSERT_EQ(0, q.Run());
    EXPECT_EQ(first, rounded) << start;
    EXPECT_TRUE(q.clock.sleeps.empty()) << "no wait without a start time";
  }
}

TEST(RecordingLoop, ZeroSecondsAndCancelAtEitherEvent) {
  Rig empty;
  empty.session.sec = 0;
  ASSERT_EQ(0, empty.Run());
  EXPECT_EQ(empty.Bytes().size(), 32u);
  EXPECT_EQ(empty.log, "A");

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
    EXPECT_EQ(test::RecordSizes(r.Bytes()).size(), static_cast<size_t>(k + 1));
    EXPECT_EQ(LoadLE32(r.Bytes().data() + 28), 2) << "the header keeps the requested length";
  }
}

TEST(RecordingLoop, InvalidSessionOrUserCaptureMethodIsRefusedBeforeAnythingOpens) {
  const std::vector<void (*)(RecordingSession&)> spoilers{
      [](RecordingSession& s) { s.width = 0; },  [](RecordingSession& s) { s.height = 0; },
      [](RecordingSession& s) { s.x = -1; },     [](RecordingSession& s) { s.y = -1; },
      [](RecordingSession& s) { s.fps = 0; },    [](RecordingSession& s) { s.sec = -1; },
      [](RecordingSession& s) { s.method = 3; }, [](RecordingSession& s) { s = {.bitCount = 32}; }};
  for (size_t k = 0; k < spoilers.size(); ++k) {
    for (bool user : {false, true}) {
      Rig r;
      spoilers[k](r.session);
      r.request.userCapture = user;  // -1 is found before -9
      EXPECT_EQ(r.Run(), MakeResultCode(kErrNotInitialised)) << "case " << k;
      EXPECT_EQ(r.sink.mem.OpenCount(), 0);
      EXPECT_EQ(r.session.bitCount, 0) << "restored to the value never taken";
    }
  }
  for (int32_t method : {0, 2}) {
    Rig r;
    r.session.method = method;
    r.request.userCapture = true;
    EXPECT_EQ(r.Run(), MakeResultCode(kErrUserCaptureType1Only));
    EXPECT_EQ(r.sink.mem.OpenCount() + r.listener.bitmapInfoCalls, 0);
    EXPECT_EQ(r.session.bitCount, 0);
  }
  Rig negativeMethod;  // the method has no lower bound
  negativeMethod.session.method = -1;
  EXPECT_EQ(negativeMethod.Run(), 0);
}

// The grabs pad rows (4 bytes for Type1/Type2, 2 for Type0) while frames do
// not: an odd row would let the grab write or read past the frame. Which
// widths are whole is the movie format's; here each argument must reach it.
TEST(RecordingLoop, RegionsWhoseRowsTheGrabWouldPadAreRefused) {
  struct Case {
    int32_t method, bits, width;
    bool records;
  };
  const Case cases[] = {{1, 8, 9, false}, {1, 32, 9, true}, {2, 8, 8, false}, {0, 16, 9, true}};
  for (const auto& c : cases) {
    Rig r;
    r.session.method = c.method;
    r.session.bitCount = c.bits;  // stands in for the display's depth
    r.session.width = c.width;
    EXPECT_EQ(r.Run(), c.records ? 0 : MakeResultCode(kErrNotInitialised))
        << c.method << " " << c.bits << " " << c.width;
    EXPECT_EQ(r.sink.mem.OpenCount(), c.records ? 1 : 0);
  }
}

// The handler's depth sizes frames and header; a handler slower than a slot
// never causes a drop; the display depth is given back afterwards.
TEST(RecordingLoop, UserCaptureNeverDropsAndUsesTheHandlersDepth) {
  Rig r;
  r.request.userCapture = true;
  r.listener.userBitCount = 16;
  int32_t calls = 0;
  r.listener.onUserData = [&](uint8_t* frame, int32_t bytes) {
    for (int32_t j = 0; j < bytes; ++j)
      frame[j] = j < bytes / 2 ? static_cast<uint8_t>(j + calls) : 0;
    ++calls;
    r.clock.now += 250;
  };
  ASSERT_EQ(0, r.Run());
  EXPECT_EQ(r.listener.bitCountSeen, 32);
  EXPECT_EQ(r.listener.userFrameBytes, 64);
  EXPECT_EQ(calls, 20);
  EXPECT_EQ(r.listener.reports.back().dropCount, 0);
  EXPECT_EQ(r.session.bitCount, 32);
  EXPECT_EQ(LoadLE32(r.Bytes().data() + 12), 16);
  const auto frames = test::ReadBack(r.Bytes()).frames;
  ASSERT_EQ(frames.size(), 20u);
  EXPECT_EQ(frames[19][31], static_cast<uint8_t>(31 + 19));
}

// Every other unit changed is the encoder's longest output: the output
// buffer must hold it (the sanitizers catch an overrun); 8-bit frames carry
// the 1024 palette bytes.
TEST(RecordingLoop, WorstCaseEightBitFramesFitTheOutputBuffer) {
  Rig r;
  r.source.worstCase = true;
  r.compress = &test::SplitEveryChange;
  r.session.bitCount = 8;
  r.session.width = 12;
  ASSERT_EQ(0, r.Run());
  // A leading empty unchanged run, then 134 x (literal count, unit, unchanged count).
  EXPECT_EQ(test::RecordSizes(r.Bytes())[0], 4u * (1 + 3 * 134));
  EXPECT_EQ(CompressOutputBytes(1 << 20), MaxPayloadBytes(1 << 20)) << "never below the worst case";
}

TEST(RecordingLoop, FailuresFromTheSinkOrSourceEndTheRecording) {
  Rig write;
  write.sink.mem.FailRecordWrite(4, MakeResultCode(kErrApi, 112));
  EXPECT_EQ(write.Run(), MakeResultCode(kErrApi, 112));
  EXPECT_EQ(test::RecordSizes(write.Bytes()).size(), 4u);
  EXPECT_EQ(write.listener.reports.size(), 4u);
  EXPECT_EQ(write.sink.mem.CloseCount() + write.source.releases, 2);

  Rig open;
  open.sink.mem.FailOpen(MakeResultCode(kErrCannotOpen));
  EXPECT_EQ(open.Run(), MakeResultCode(kErrCannotOpen));
  EXPECT_EQ(open.log, "");
  EXPECT_EQ(open.session.bitCount, 32);

  Rig setUp;
  setUp.source.setUpError = kErrApi;
  EXPECT_EQ(setUp.Run(), MakeResultCode(kErrApi));
  EXPECT_EQ(setUp.Bytes().size(), 0u);
  EXPECT_EQ(setUp.source.releases, 1);
}

}  // namespace
}  // namespace velmora
