#include "sound/recorder_protocol.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "engine/clock_low32.h"
#include "sound/recording_schedule.h"
#include "tests/fake_clock.h"

namespace velmora::sound {
namespace {

using test::FakeClock;

// A block in memory whose other side is a script: `recorder` runs before every
// read, seeing the time and the block as the application left it.
class ScriptedPort final : public BlockPort {
 public:
  explicit ScriptedPort(Clock& clock) : clock_(clock) {}
  void Read(BlockBytes& bytes) override {
    ++reads;
    if (!present) return;
    if (recorder) recorder(clock_.NowMs(), block);
    bytes = EncodeRecorderBlock(block);
  }
  void Write(const BlockBytes& bytes) override {
    if (!present) return;
    block = DecodeRecorderBlock(bytes);
    writes.push_back(block.state);
  }
  bool present = true;
  RecorderBlock block;
  std::function<void(double, RecorderBlock&)> recorder;
  std::vector<int32_t> writes;
  int reads = 0;

 private:
  Clock& clock_;
};

// Messages run in every round; without an answer the wait lasts just over
// five seconds, whether the recorder is silent or the memory is gone.
TEST(HelloWait, AnswerGivesTheRecordersProcessIdElseZeroAfterFiveSeconds) {
  const BlockBytes hello = EncodeRecorderBlock({.state = kStateHello});
  for (const double answerAt : {1200.0, 1e9, -1.0}) {  // -1: no memory
    FakeClock clock;
    clock.now = 1000.25;
    ScriptedPort port(clock);
    port.present = answerAt >= 0;
    port.block.state = kStateHello;
    port.recorder = [&](double now, RecorderBlock& b) {
      if (now > answerAt) b = {.state = kStateIdle, .bitsOrProcessId = 4242};
    };
    const bool answered = answerAt == 1200;
    EXPECT_EQ(WaitForHelloAnswer(clock, port, hello), answered ? 4242u : 0u) << answerAt;
    EXPECT_GT(clock.now - 1000.25, answered ? 199 : 5000) << answerAt;
    EXPECT_LT(clock.now - 1000.25, answered ? 300 : 5003) << answerAt;
    EXPECT_EQ(clock.pumps, port.reads);
  }
}

TEST(StopWait, AnswerOnTheFirstPollEndsAtOnceWithStateZero) {
  FakeClock clock;
  ScriptedPort port(clock);
  port.block.state = kStateComplete;
  EXPECT_EQ(StopAndWait(clock, port), StopOutcome::kComplete);
  EXPECT_EQ(port.reads, 1);
  EXPECT_EQ(port.writes, std::vector<int32_t>{kStateIdle});
  EXPECT_EQ(StopOutcomeMessage(StopOutcome::kComplete), "");
}

TEST(StopWait, StopIsRequestedAndRequestedAgainAfterTheRecorderChangesTheState) {
  FakeClock clock;
  ScriptedPort port(clock);
  port.block.state = kStateStart;  // still recording
  port.block.seconds = 17;
  int polls = 0;
  port.recorder = [&](double, RecorderBlock& b) {
    ++polls;
    if (polls == 3) b.state = kStateStart;  // a recorder that wrote over our stop
    if (polls == 6) b.state = kStateFailed;
  };
  EXPECT_EQ(StopAndWait(clock, port), StopOutcome::kFailed);
  EXPECT_EQ(port.writes, (std::vector<int32_t>{kStateStop, kStateStop, kStateIdle}));
  EXPECT_EQ(port.block.seconds, 17);  // the rest of the block goes back as it was
  EXPECT_EQ(StopOutcomeMessage(StopOutcome::kFailed),
            "録音部分にエラーが発生しました。\r\n正常に録音できませんでした。");
}

// Polls are 100 ms apart: 51 reads are just over five seconds.
TEST(StopWait, ASilentRecorderOrNoMemoryEndsWithTheNoAnswerMessage) {
  for (const bool present : {true, false}) {
    FakeClock clock;
    ScriptedPort port(clock);
    port.present = present;
    port.block.state = kStateStart;
    EXPECT_EQ(StopAndWait(clock, port), StopOutcome::kNoAnswer) << present;
    EXPECT_EQ(port.writes, std::vector<int32_t>(present, kStateStop)) << present;
    EXPECT_EQ(port.reads, 51) << present;
  }
  EXPECT_EQ(StopOutcomeMessage(StopOutcome::kNoAnswer),
            "録音完了の返答がありません。\r\n録音が失敗している可能性があります。");
}

// The recorder's start decision on a clock that has just passed nothing, 2^31
// ms (the planned start reads negative) and 2^32 ms (it reads small again).
TEST(RecorderStart, LateStartsWithinTheLengthAreServedRepeatsAndNonsenseAreNot) {
  const RecorderBlock base = [] {
    RecorderBlock b;
    EXPECT_EQ(BuildStartRequest({11025, 1, 8}, 2, "a.wav", 0, b), StartRequestError::kNone);
    return b;
  }();
  struct Case {
    double aheadMs;
    StartRefusal want;
  } cases[] = {{200, StartRefusal::kNone},
               {-1500, StartRefusal::kNone},
               {-2000, StartRefusal::kTooLate},
               {60000, StartRefusal::kNone},
               {60001, StartRefusal::kTooFarAhead}};
  for (const double now : {1000.25, 2147483640.25, 4294967290.25}) {
    for (const Case& c : cases) {
      RecorderBlock r = base;
      r.plannedStartMs = Low32Ms(static_cast<int64_t>(now - 0.25 + c.aheadMs));
      const StartDecision d = DecideStart(r, nullptr, now);
      EXPECT_EQ(d.refusal, c.want) << now << " " << c.aheadMs;
      if (d.refusal == StartRefusal::kNone) {
        EXPECT_EQ(d.startAtMs, now - 0.25 + c.aheadMs) << now << " " << c.aheadMs;
      }
    }
    RecorderBlock r = base;
    r.plannedStartMs = Low32Ms(static_cast<int64_t>(now) + 100);
    EXPECT_EQ(DecideStart(r, &r, now).refusal, StartRefusal::kRepeat) << now;
    RecorderBlock other = r;
    other.waveName[0] = 'b';
    EXPECT_EQ(DecideStart(other, &r, now).refusal, StartRefusal::kNone) << now;
    other.seconds = 0;
    EXPECT_EQ(DecideStart(other, &r, now).refusal, StartRefusal::kInvalid) << now;
  }
}

TEST(RecorderStart, CommandLineIsOneDecimalProcessIdOrRefused) {
  const struct {
    const wchar_t* text;
    uint32_t id;
  } cases[] = {{L"4020", 4020},    {L" \"4242\"\t", 4242}, {L"4294967295", 0xFFFFFFFF},
               {L"4294967296", 0}, {L"00000000001", 0},    {L"12x", 0},
               {L"12 34", 0}};
  for (const auto& c : cases) EXPECT_EQ(ParseApplicationProcessId(c.text), c.id);
}

// Silence for a late start counts toward the length; an early stop keeps
// sound up to the stop and never less than what is already written.
TEST(RecorderStart, TheWaveHoldsSilenceForALateHeadAndEndsAtTheStop) {
  const PcmFormat mono8{11025, 1, 8}, stereo16{44100, 2, 16};
  EXPECT_EQ(SilenceByte(mono8), 0x80);
  EXPECT_EQ(SilenceByte(stereo16), 0x00);

  SoundTake late(stereo16, 2, 1000);
  EXPECT_EQ(late.LeadSilence(1250.99), 11068u * 4);  // 250.99 ms: 11068.6 frames, whole ones
  uint64_t device = 0;
  while (!late.Full()) device += late.Take(8820);
  EXPECT_EQ(late.Kept(), 2u * 44100 * 4);
  EXPECT_EQ(device, late.Kept() - 11068u * 4);
  EXPECT_EQ(late.Take(8820), 0u);

  SoundTake onTime(mono8, 10, 1000);
  EXPECT_EQ(onTime.LeadSilence(1000), 0u);
  EXPECT_EQ(onTime.Take(5000), 5000u);
  onTime.StopAt(1000 + 1000.01);  // 11025.11 frames: up to and with the one under way
  EXPECT_EQ(onTime.Take(100000), 11026u - 5000);
  EXPECT_TRUE(onTime.Full());
  onTime.StopAt(1100);  // before what is written: nothing more, nothing taken back
  EXPECT_EQ(onTime.Kept(), 11026u);
  EXPECT_EQ(onTime.Take(100), 0u);
  EXPECT_FALSE(onTime.Stalled(1e9));
  EXPECT_TRUE(SoundTake(mono8, 10, 1000).Stalled(1000 + 10000 + 15000.5));

  const struct {
    PcmFormat format;
    int32_t kb;
    uint32_t bytes, count;
  } sizes[] = {{stereo16, 445, 8820, 51},
               {mono8, 122, 551, 226},
               {mono8, 1000, 551, 256},
               {stereo16, 1, 8820, 4}};
  for (const auto& s : sizes) {
    const CaptureBuffers b = SizeCaptureBuffers(s.format, s.kb);
    EXPECT_EQ(b.bytes, s.bytes) << s.kb;
    EXPECT_EQ(b.count, s.count) << s.kb;
  }
}

}  // namespace
}  // namespace velmora::sound
