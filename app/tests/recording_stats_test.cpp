#include "app/recording_stats.h"

#include <gtest/gtest.h>

#include "engine/clock_low32.h"

namespace velmora {
namespace {

TEST(RecordingStats, DroppedSlotsCountButStayOutOfTheMean) {
  RecordingStats s;
  s.Add(2.0, false);
  s.Add(99.0, true);
  s.Add(4.0, false);
  EXPECT_EQ(s.Slots(), 3);
  EXPECT_EQ(s.Frames(), 2);
  EXPECT_EQ(s.Drops(), 1);
  EXPECT_DOUBLE_EQ(s.AverageCaptureMs(), 3.0);
  EXPECT_EQ(SummaryLine(s, 0, ""), "frames 3, drops 1, average capture 3.00 ms, result 0 OK");
  // The system's texts end in a line break; the summary stays one line.
  EXPECT_EQ(SummaryLine(RecordingStats{}, -2147483382, "APIErr:失敗しました。\r\n"),
            "frames 0, drops 0, average capture 0.00 ms, result -2147483382 APIErr:失敗しました。");
}

// Rec gives the start back as the clock's low 32 bits; past 2^31 and 2^32 ms
// of uptime they must still measure the same 1.5 s.
TEST(RecordingStats, AchievedFpsHoldsPastEveryWrapOfTheStartTime) {
  RecordingStats s;
  for (int i = 0; i < 45; ++i) s.Add(1.0, i % 3 == 0);
  for (const int64_t start : {int64_t{1000}, (int64_t{1} << 31) - 700, (int64_t{1} << 32) - 700}) {
    EXPECT_EQ(AchievedFps(s, Low32Ms(start), start + 1500.2), 20) << start;
    EXPECT_EQ(AchievedFps(s, Low32Ms(start), start + 999.9), 0) << start;
  }
  EXPECT_EQ(AchievedFps(RecordingStats{}, 0, 5000), 0);
}

}  // namespace
}  // namespace velmora
