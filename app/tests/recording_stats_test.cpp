#include "app/recording_stats.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace velmora
