// Button sets and default answers by style number.
#include <gtest/gtest.h>

#include "ui/message_style.h"

namespace velmora {
namespace {

TEST(MessageStyle, ButtonsAndDefaultAnswers) {
  struct Case {
    int32_t style;
    std::vector<int32_t> buttons;
    int32_t defaultAnswer;
  } cases[] = {
      {16, {1}, 1},              // OK with the error icon
      {36, {6, 7}, 6},           // yes/no, question icon
      {20 + 256, {6, 7}, 7},     // yes/no, second button default
      {3 + 512, {6, 7, 2}, 2},   // yes/no/cancel, third default
      {2 + 256, {3, 4, 5}, 4},
      {5, {4, 2}, 4},
      {1 + 768, {1, 2}, 1},      // a fourth position does not exist
      {4 + 512, {6, 7}, 6},
      {6, {1}, 1},               // unknown sets are OK
      {15 + 64, {1}, 1},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ButtonAnswers(c.style), c.buttons) << c.style;
    EXPECT_EQ(DefaultAnswer(c.style), c.defaultAnswer) << c.style;
  }
}

}  // namespace
}  // namespace velmora
