// The recording-line selector against Wine's mixer on PulseAudio, where the
// wave-in line has volume and mute but no single-select input control: the
// path that must leave everything as it is.
#include "sound/win/mixer.h"

#include <gtest/gtest.h>

namespace velmora::win {
namespace {

TEST(Mixer, WithoutASelectorListsAreEmptyAndNothingChanges) {
  Mixer mixer;
  ASSERT_GE(mixerGetNumDevs(), 1u);
  EXPECT_FALSE(mixer.IsEnableMixer());
  int32_t error = -1, selected = 7;
  EXPECT_TRUE(mixer.GetWaveInLines(&error, &selected).empty());
  EXPECT_NE(error, 0);
  EXPECT_EQ(selected, -1);
  const std::string line = "マイク";
  EXPECT_NE(mixer.SetWaveInLine(&line, 0), 0);
  EXPECT_NE(mixer.SetWaveInLine(nullptr, 0), 0);
  EXPECT_TRUE(mixer.GetWaveInLines().empty());
  // Init describes the wave-in sources one per line.
  const std::string& text = mixer.Init();
  EXPECT_EQ(text.find("\r\n\r\n"), std::string::npos);
  EXPECT_FALSE(text.ends_with("\r\n"));
}

}  // namespace
}  // namespace velmora::win
