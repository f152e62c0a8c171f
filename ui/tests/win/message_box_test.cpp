// The application's message box answered from the keyboard as a user would,
// its texts read back through the window texts, its size for long prompts,
// and a picture of it for a person to look at.
#include <gtest/gtest.h>

#include <cstdio>
#include <vector>

#include "engine/win/text_encoding.h"
#include "ui/message_style.h"
#include "tests/win/window_actor.h"
#include "ui/win/message_box.h"

namespace velmora::win {
namespace {

using test::WindowActor;
using test::WindowTextW;

std::string Captions(HWND box) {
  std::string all;
  for (int id = kFirstButtonId; HWND b = GetDlgItem(box, id); ++id)
    all += Narrow(WindowTextW(b)) + "/";
  return all;
}

// Which button each key reaches is the box's own; the answers and captions
// behind a style are checked natively (MessageStyle...).
TEST(MsgBoxEx, AnsweredFromTheKeyboard) {
  struct Key {
    UINT message;
    WPARAM key;
  };
  const Key right{WM_KEYDOWN, VK_RIGHT}, left{WM_KEYDOWN, VK_LEFT}, enter{WM_KEYDOWN, VK_RETURN},
      esc{WM_KEYDOWN, VK_ESCAPE}, altN{WM_SYSCHAR, 'n'};
  struct Case {
    int32_t style;
    std::vector<Key> keys;
    int32_t answer;
  } cases[] = {
      {36, {esc, enter}, kAnswerYes},           // Esc cannot close yes/no
      {3 + 256, {left, enter}, kAnswerYes},     // starts on the second
      {2, {left, enter}, kAnswerIgnore},        // wraps to the last
      {2 + 512, {right, enter}, kAnswerAbort},  // and from the last to the first
      {3, {altN}, kAnswerNo},
      {1 + 48, {esc}, kAnswerCancel},
  };
  for (const Case& c : cases) {
    const std::string prompt = "録画を続けますか？\r\n二行目";
    std::string captions, shownPrompt, shownTitle;
    int32_t answer = 0;
    {
      WindowActor actor(kMessageBoxClass, [&](HWND box) {
        shownTitle = Narrow(WindowTextW(box));
        captions = Captions(box);
        shownPrompt = Narrow(WindowTextW(GetDlgItem(box, kPromptId)));
        for (const Key& k : c.keys) PostMessageW(box, k.message, k.key, 0);
      });
      answer = MsgBoxEx::Show(prompt, nullptr, c.style, "質問");
    }
    std::string want;
    for (const MessageButton& b : MessageButtons(c.style)) want += std::string(b.caption) + "/";
    EXPECT_EQ(answer, c.answer) << c.style;
    EXPECT_EQ(captions, want) << c.style;
    EXPECT_EQ(shownPrompt, prompt) << c.style;
    EXPECT_EQ(shownTitle, "質問") << c.style;
  }
}

TEST(MsgBoxEx, GrowsWithThePromptThenWrapsAndGivesTheOwnerBack) {
  test::OwnerWindow owner;
  RECT client[2]{};
  int lineHeights[2]{};
  const std::string prompts[] = {
      "短い",
      "録画ファイルを保存するフォルダに書き込めませんでした。別のフォルダを選んでから、もう一度"
      "キャプチャを開始してください。空き容量が足りない場合もこの表示になります。",
  };
  for (int i = 0; i < 2; ++i) {
    WindowActor actor(kMessageBoxClass, [&](HWND box) {
      EXPECT_FALSE(IsWindowEnabled(owner.Handle()));
      EXPECT_EQ(WindowTextW(box), L"Velmora");  // no title given
      HWND prompt = GetDlgItem(box, kPromptId);
      GetClientRect(box, &client[i]);
      RECT p{};
      GetWindowRect(prompt, &p);
      lineHeights[i] = p.bottom - p.top;
      if (i == 1) {
        std::wprintf(L"picture: %ls\n",
                     test::SaveScreenPicture(test::ScreenRect(box), L"message-box").c_str());
      }
      PostMessageW(box, WM_KEYDOWN, VK_RETURN, 0);
    });
    EXPECT_EQ(MsgBoxEx::Show(prompts[i], owner.Handle(), 48), kAnswerOk);
  }
  EXPECT_TRUE(IsWindowEnabled(owner.Handle()));
  EXPECT_GT(client[1].right, client[0].right);
  EXPECT_LT(client[1].right, GetSystemMetrics(SM_CXSCREEN) * 3 / 4);
  EXPECT_GE(lineHeights[1], 2 * lineHeights[0]);  // wrapped onto more lines
}

}  // namespace
}  // namespace velmora::win
