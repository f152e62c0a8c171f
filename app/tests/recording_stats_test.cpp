#include "app/recording_stats.h"

#include <gtest/gtest.h>

#include "app/live_stats.h"
#include "engine/clock_low32.h"

namespace velmora {
namespace {

TEST(RecordingStats, DroppedSlotsCountButStayOutOfTheMean) {
  RecordingStats s;
  s.Add(2.0, false);
  s.Add(99.0, true);
  s.Add(4.0, false);
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

// Truncation, not rounding, to one decimal (4.2857 is 4.2, 12.99 is 12.9),
// and no ".0" on whole numbers.
TEST(LiveStats, PanelTextFormats) {
  StatsSnapshot s{70, 300, 3, 10, 129.9, 10, 804, 67, 6999};
  EXPECT_EQ(BuildPanelTexts(s),
            (PanelTexts{"Frame 70/300", "Drop 3/70", "DropPer 4.2%", "Capture 12.9ms",
                        "CaptureAve 12ms", "Time 6 / 10sec"}));
  s = {10, 10, 10, 1, 0, 0, 0, 0, 1000};
  EXPECT_EQ(BuildPanelTexts(s),
            (PanelTexts{"Frame 10/10", "Drop 10/10", "DropPer 100%", "", "", "Time 1 / 1sec"}));
}

// Drawn on every tenth frame only; "Capture" is the mean since the last
// refresh (an all-dropped interval shows none), "CaptureAve" the run's.
TEST(LiveStats, RefreshesEveryTenthFrameWithTheIntervalMean) {
  LiveStats stats(15, 2);
  struct Step {
    int32_t from, to;
    double ms;
    bool drop;
    const char* capture;
    const char* captureAve;
  };
  const Step steps[] = {{1, 10, 12.5, false, "Capture 12.5ms", "CaptureAve 12.5ms"},
                        {11, 20, 99, true, "", "CaptureAve 12.5ms"},
                        {21, 30, 20, false, "Capture 20ms", "CaptureAve 16.2ms"}};
  int32_t drops = 0;
  for (const Step& step : steps) {
    for (int32_t n = step.from; n <= step.to; ++n) {
      drops += step.drop;
      const auto texts = stats.Add(n, step.ms, drops, step.drop, n * 66.7);
      ASSERT_EQ(texts.has_value(), n % 10 == 0) << n;
      if (!texts) continue;
      EXPECT_EQ(texts->capture, step.capture) << n;
      EXPECT_EQ(texts->captureAve, step.captureAve) << n;
      EXPECT_EQ(texts->frame, "Frame " + std::to_string(n) + "/30");
    }
  }
}

}  // namespace
}  // namespace velmora
