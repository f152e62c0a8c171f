#include "app/method_trial_text.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

// Rows on the edges of the grading: a < where <= belongs, a truncated
// quarter, half-up or no rounding of the achievable rate each move a mark.
TEST(MethodTrial, LinesGradeTheRequestedRateAgainstTheAchievableOne) {
  const struct {
    int32_t method, result, frameMs, drops, fps;
    const char* line;
  } rows[] = {
      {1, 0, 12, 0, 30, "○ Type 1 ... FrameTime:12msec. 83 Fps. Drop:0\r\n"},
      {1, 0, 12, 0, 20, "◎ Type 1 ... FrameTime:12msec. 83 Fps. Drop:0\r\n"},  // a/4 = 20.75
      {0, 0, 1, 3, 249, "◎ Type 0 ... FrameTime:1msec. 1000 Fps. Drop:3\r\n"},
      {0, 0, 1, 0, 250, "○ Type 0 ... FrameTime:1msec. 1000 Fps. Drop:0\r\n"},
      {2, 0, 1, 0, 500, "△ Type 2 ... FrameTime:1msec. 1000 Fps. Drop:0\r\n"},
      {2, 0, 1, 0, 1000, "× Type 2 ... FrameTime:1msec. 1000 Fps. Drop:0\r\n"},
      {1, 0, 16, 0, 16, "○ Type 1 ... FrameTime:16msec. 62 Fps. Drop:0\r\n"},  // 62.5
      {1, 0, 15, 0, 16, "◎ Type 1 ... FrameTime:15msec. 67 Fps. Drop:0\r\n"},  // 66.6
      {1, -2147483641, 12, 0, 30, "Type 1 ... 計測失敗（エラーか全てDrop）\r\n"},
      {2, 0, 0, 60, 30, "Type 2 ... 計測失敗（エラーか全てDrop）\r\n"},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(MethodTrialLine(r.method, r.result, r.frameMs, r.drops, r.fps), r.line) << r.frameMs;
  }
}

TEST(MethodTrial, FrameTimeIsTheRoundedMeanOfCapturedFramesAndNeverZeroWhenAnyWere) {
  const auto frameMs = [](std::initializer_list<std::pair<double, bool>> reports) {
    RecordingStats s;
    for (const auto& [ms, drop] : reports) s.Add(ms, drop);
    return TrialFrameMs(s);
  };
  EXPECT_EQ(frameMs({{5.0, true}}), 0);  // all dropped: the failure line
  EXPECT_EQ(frameMs({{0.2, false}, {0.4, false}}), 1);
  EXPECT_EQ(frameMs({{2.0, false}, {3.0, false}, {50.0, true}}), 2);  // 2.5 to even
  EXPECT_EQ(frameMs({{3.0, false}, {4.0, false}}), 4);
}

}  // namespace
}  // namespace velmora
