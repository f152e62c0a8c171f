// Icons, default and Esc answers by style number, the buttons' exact
// captions; where the box's parts go. The title is checked on the real box.
#include <gtest/gtest.h>

#include "ui/message_box_layout.h"
#include "ui/message_style.h"

namespace velmora {
namespace {

TEST(MessageStyle, IconsAndDefaultAndEscapeAnswers) {
  struct Case {
    int32_t style;
    int32_t defaultAnswer;
    MessageIcon icon;
    int32_t escape;
  } cases[] = {
      {16, 1, MessageIcon::kError, 1},        // OK with the error icon
      {36, 6, MessageIcon::kQuestion, 0},     // yes/no must be answered
      {20 + 256, 7, MessageIcon::kError, 0},  // second button default
      {3 + 512 + 48, 2, MessageIcon::kExclamation, 2},
      {2 + 256, 4, MessageIcon::kNone, 0},
      {5 + 64, 4, MessageIcon::kInformation, 2},
      {1 + 768, 1, MessageIcon::kNone, 2},         // a fourth position does not exist
      {4 + 512 + 80, 6, MessageIcon::kNone, 0},    // 80 is no icon
      {15 + 64, 1, MessageIcon::kInformation, 1},  // unknown sets are OK
  };
  for (const Case& c : cases) {
    EXPECT_EQ(DefaultAnswer(c.style), c.defaultAnswer) << c.style;
    EXPECT_EQ(IconOf(c.style), c.icon) << c.style;
    EXPECT_EQ(EscapeAnswer(c.style), c.escape) << c.style;
  }
}

TEST(MessageStyle, CaptionsAndAccessKeys) {
  auto captions = [](int32_t style) {
    std::string all;
    for (const MessageButton& b : MessageButtons(style)) all += std::string(b.caption) + "/";
    return all;
  };
  // The yes/no/cancel set shows access keys, the yes/no set deliberately not.
  EXPECT_EQ(captions(3), "はい(&Y)/いいえ(&N)/キャンセル/");
  EXPECT_EQ(captions(36), "はい/いいえ/");
  EXPECT_EQ(captions(2), "中止/再試行/無視/");
  EXPECT_EQ(captions(1), "OK/キャンセル/");
  EXPECT_EQ(captions(5), "再試行/キャンセル/");
  // Alt+Y/Alt+N answer only where the box has that button.
  EXPECT_EQ(AccessKeyAnswer(4, 'N'), kAnswerNo);
  EXPECT_EQ(AccessKeyAnswer(3, 'y'), kAnswerYes);
  EXPECT_EQ(AccessKeyAnswer(5, 'n'), 0);
  EXPECT_EQ(AccessKeyAnswer(4, 'x'), 0);
}

bool Inside(const BoxRect& r, const MessageBoxLayout& l) {
  return r.left >= 0 && r.top >= 0 && r.left + r.width <= l.clientWidth &&
         r.top + r.height <= l.clientHeight;
}

TEST(MessageBoxLayout, EveryPartFitsAndNothingOverlaps) {
  EXPECT_EQ(MaxPromptWidth(100000, 16), 640);  // long prompts wrap at 40 lines' worth
  EXPECT_EQ(MaxPromptWidth(800, 16), 480);     // and stay on a narrow screen
  const MessageBoxMetrics cases[] = {
      {20, 16, 60, 16, 32, 3},    // short prompt, three buttons, icon taller than text
      {640, 160, 30, 16, 32, 1},  // wrapped prompt
      {100, 16, 40, 16, 0, 2},    // no icon
  };
  for (const MessageBoxMetrics& m : cases) {
    const MessageBoxLayout l = LayOutMessageBox(m);
    ASSERT_EQ(l.buttons.size(), size_t(m.buttonCount));
    EXPECT_TRUE(Inside(l.prompt, l)) << m.promptWidth;
    if (m.iconSize) {
      EXPECT_GE(l.prompt.left, l.icon.left + l.icon.width);
    }
    for (size_t i = 0; i < l.buttons.size(); ++i) {
      const BoxRect& b = l.buttons[i];
      EXPECT_TRUE(Inside(b, l)) << m.promptWidth << " " << i;
      EXPECT_GT(b.width, m.widestCaption);
      EXPECT_GT(b.top, l.prompt.top + l.prompt.height);  // a gap above the buttons
      EXPECT_GT(b.top, l.icon.top + l.icon.height);
      if (i > 0) {
        EXPECT_GT(b.left, l.buttons[i - 1].left + l.buttons[i - 1].width);
      }
    }
    // The row of buttons is centred.
    EXPECT_EQ(l.buttons.front().left,
              l.clientWidth - (l.buttons.back().left + l.buttons.back().width));
  }
}

}  // namespace
}  // namespace velmora
