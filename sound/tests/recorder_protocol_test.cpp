#include "sound/recorder_protocol.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "engine/tests/fake_clock.h"

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

BlockBytes Hello() {
  RecorderBlock b;
  b.state = kStateHello;
  return EncodeRecorderBlock(b);
}

TEST(HelloWait, AnswerGivesTheRecordersProcessId) {
  FakeClock clock;
  ScriptedPort port(clock);
  port.block.state = kStateHello;
  port.recorder = [](double now, RecorderBlock& b) {
    if (now > 1200) {
      b.state = kStateIdle;
      b.bitsOrProcessId = 4242;
    }
  };
  EXPECT_EQ(WaitForHelloAnswer(clock, port, Hello()), 4242u);
  EXPECT_LT(clock.now, 1300);
  EXPECT_EQ(clock.pumps, port.reads);  // messages ran in every round
}

TEST(HelloWait, SilenceOrNoMemoryRunsTheFullFiveSeconds) {
  for (bool present : {true, false}) {
    FakeClock clock;
    clock.now = 1000.25;
    ScriptedPort port(clock);
    port.present = present;
    port.block.state = kStateHello;
    EXPECT_EQ(WaitForHelloAnswer(clock, port, Hello()), 0u) << present;
    EXPECT_GT(clock.now - 1000.25, 5000) << present;
    EXPECT_LT(clock.now - 1000.25, 5003) << present;
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

TEST(StopWait, SilentRecorderTimesOutAfterFiveSecondsAndLeavesTheStopInPlace) {
  FakeClock clock;
  ScriptedPort port(clock);
  port.block.state = kStateStart;
  EXPECT_EQ(StopAndWait(clock, port), StopOutcome::kNoAnswer);
  EXPECT_EQ(port.block.state, kStateStop);
  EXPECT_EQ(port.writes, std::vector<int32_t>{kStateStop});
  EXPECT_GT(clock.now - 1000, 5000);
  EXPECT_LE(clock.now - 1000, 5101);  // polls are 100 ms apart
  EXPECT_EQ(StopOutcomeMessage(StopOutcome::kNoAnswer),
            "録音完了の返答がありません。\r\n録音が失敗している可能性があります。");
}

TEST(StopWait, WithNoMemoryTheWaitEndsWithTheNoAnswerMessage) {
  FakeClock clock;
  ScriptedPort port(clock);
  port.present = false;
  EXPECT_EQ(StopAndWait(clock, port), StopOutcome::kNoAnswer);
  EXPECT_TRUE(port.writes.empty());
}

}  // namespace
}  // namespace velmora::sound
