// The progress window's texts: percentage rounding and the optional whole
// digits of "###.0", the minute:second form, the ring's 30-frame delay, the
// title's i + 1 against the strip's i, and the sound merge's title.
#include <gtest/gtest.h>

#include "conversion/progress_text.h"

namespace velmora {
namespace {

TEST(ProgressText, PercentHasOneDecimalAndNoLeadingZero) {
  struct Case {
    int64_t i, n;
    const char* want;
  } cases[] = {
      {0, 300, ".0%"},    {1, 300, ".3%"},  {2, 300, ".7%"},     {3, 300, "1.0%"},
      {1, 8, "12.5%"},    {1, 16, "6.3%"},  {299, 300, "99.7%"}, {300, 300, "100.0%"},
      {29, 100, "29.0%"}, {1, 2000, ".1%"}, {1, 2001, ".0%"},    {0, 0, ".0%"},
  };
  for (const Case& c : cases) EXPECT_EQ(PercentText(c.i, c.n), c.want) << c.i << "/" << c.n;
}

TEST(ProgressText, MinutesAndSecondsRoundToTheNearestSecond) {
  struct Case {
    double ms;
    const char* want;
  } cases[] = {
      {0, "00:00"},      {499, "00:00"},     {500, "00:01"},     {59499, "00:59"}, {59500, "01:00"},
      {754000, "12:34"}, {3599400, "59:59"}, {3600000, "00:00"}, {-20, "00:00"},
  };
  for (const Case& c : cases) EXPECT_EQ(MinutesSeconds(c.ms), c.want) << c.ms;
}

TEST(ProgressText, TimesAppearOnceThirtyFramesAreInTheRing) {
  ProgressRing ring;
  // 100 ms per frame, frame i finished at (i + 1) x 100 ms.
  for (int64_t i = 0; i < 29; ++i) {
    const ProgressView v = BuildProgressView(i, 300, double(i + 1) * 100, 320, false, ring);
    ASSERT_EQ(v.strip.total, "") << i;
    ASSERT_EQ(v.strip.rest, "") << i;
  }
  const ProgressView v = BuildProgressView(29, 300, 3000, 320, false, ring);
  EXPECT_EQ(v.strip.total, "Total 00:03");
  // (3000 - 100) / 30 ms per frame for the 271 frames left: 26.2 s.
  EXPECT_EQ(v.strip.rest, "Rest 00:26");
  EXPECT_EQ(v.strip.counter, "Frame 29/300");
  EXPECT_EQ(v.strip.percent, "9.7%");
  EXPECT_EQ(v.title, "10% AVI Recorded");

  // A first frame that finished at 0 ms leaves its entry looking empty: the
  // times then wait one frame longer.
  ring.Clear();
  for (int64_t i = 0; i < 30; ++i) {
    const ProgressView w = BuildProgressView(i, 100, double(i) * 50, 320, true, ring);
    ASSERT_TRUE(w.strip.total.empty()) << i;
  }
  EXPECT_EQ(BuildProgressView(30, 100, 1500, 320, true, ring).strip.total, "Total 00:02");
}

TEST(ProgressText, TitleCountsTheFinishedFrameAndBarReachesTheEndEarly) {
  ProgressRing ring;
  const ProgressView first = BuildProgressView(0, 300, 10, 300, false, ring);
  EXPECT_EQ(first.strip.counter, "Frame 0/300");
  EXPECT_EQ(first.title, "0% AVI Recorded");
  EXPECT_EQ(first.barWidth, 0);
  EXPECT_EQ(BuildProgressView(2, 300, 30, 300, false, ring).title, "1% AVI Recorded");
  EXPECT_EQ(BuildProgressView(28, 100, 30, 300, true, ring).title, "29% QRK Modified");
  EXPECT_EQ(BuildProgressView(99, 100, 30, 300, true, ring).title, "100% QRK Modified");
  // i / n x 1.01 x width: 297 of 300 already fills the strip.
  EXPECT_EQ(BuildProgressView(100, 300, 30, 300, false, ring).barWidth, 101);
  EXPECT_EQ(BuildProgressView(296, 300, 30, 300, false, ring).barWidth, 299);
  EXPECT_EQ(BuildProgressView(297, 300, 30, 300, false, ring).barWidth, 300);
  EXPECT_EQ(BuildProgressView(299, 300, 30, 300, false, ring).barWidth, 300);
  EXPECT_EQ(BuildProgressView(5, 0, 30, 300, false, ring).title, "0% AVI Recorded");
}

TEST(ProgressText, SoundMergeTitle) {
  // 50 of 200 after 1000 ms: (1000 / 50) x 200 - 200 = 3800 -> 3.8.
  EXPECT_EQ(WaveAddTitle(50, 200, 1000.4), "50/200 Rest:3.8sec.");
  EXPECT_EQ(WaveAddTitle(200, 200, 4000), "200/200 Rest:3.8sec.");
  EXPECT_EQ(WaveAddTitle(1, 3, 1), "1/3 Rest:0sec.");
  EXPECT_EQ(WaveAddTitle(3, 10, 1000), "3/10 Rest:3.3233333333333333sec.");
  EXPECT_EQ(WaveAddTitle(0, 10, 1000), "0/10 Rest:sec.");
}

}  // namespace
}  // namespace velmora
