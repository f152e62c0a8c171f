#include "sound/recorder_protocol.h"

#include <cmath>

namespace velmora::sound {

uint32_t WaitForHelloAnswer(Clock& clock, BlockPort& port, const BlockBytes& hello) {
  const double start = clock.NowMs();
  BlockBytes bytes = hello;
  for (;;) {
    clock.PumpMessages();
    clock.SleepMs(1);
    port.Read(bytes);
    const RecorderBlock b = DecodeRecorderBlock(bytes);
    if (b.state == kStateIdle) return static_cast<uint32_t>(b.bitsOrProcessId);
    if (clock.NowMs() - start > kRecorderAnswerLimitMs) return 0;
  }
}

namespace {

void WriteState(BlockPort& port, BlockBytes bytes, int32_t state) {
  RecorderBlock b = DecodeRecorderBlock(bytes);
  b.state = state;
  port.Write(EncodeRecorderBlock(b));
}

}  // namespace

StopOutcome StopAndWait(Clock& clock, BlockPort& port) {
  const double start = std::floor(clock.NowMs());
  for (;;) {
    clock.PumpMessages();
    clock.SleepMs(100);
    BlockBytes bytes{};
    port.Read(bytes);
    const int32_t state = DecodeRecorderBlock(bytes).state;
    if (state == kStateComplete || state == kStateFailed) {
      WriteState(port, bytes, kStateIdle);
      return state == kStateComplete ? StopOutcome::kComplete : StopOutcome::kFailed;
    }
    if (state != kStateStop) WriteState(port, bytes, kStateStop);
    if (clock.NowMs() - start > kRecorderAnswerLimitMs) return StopOutcome::kNoAnswer;
  }
}

std::string StopOutcomeMessage(StopOutcome outcome) {
  switch (outcome) {
    case StopOutcome::kComplete:
      return {};
    case StopOutcome::kFailed:
      return "録音部分にエラーが発生しました。\r\n正常に録音できませんでした。";
    case StopOutcome::kNoAnswer:
      return "録音完了の返答がありません。\r\n録音が失敗している可能性があります。";
  }
  return {};
}

}  // namespace velmora::sound
