// The tip window's settings as the tip control reports them, one tool per
// control and label with its text and rectangle, and a tip shown under the
// pointer, kept as a picture for a person to look at.
#include <gtest/gtest.h>

#include <windows.h>
#include <commctrl.h>

#include <cstdio>
#include <utility>

#include "engine/win/text_encoding.h"
#include "tests/win/pattern_window.h"
#include "tests/win/window_actor.h"
#include "ui/tip_text.h"
#include "ui/win/tool_tip.h"

namespace velmora::win {
namespace {

// The text and rectangle of the tool `id` on `wnd`, as the tip control holds them.
std::pair<std::string, RECT> Tool(HWND tip, HWND wnd, HWND id) {
  wchar_t text[512] = {};
  TTTOOLINFOW ti{TTTOOLINFOW_V1_SIZE};
  ti.hwnd = wnd;
  ti.uId = reinterpret_cast<UINT_PTR>(id);
  ti.lpszText = text;
  SendMessageW(tip, TTM_GETTOOLINFOW, 0, reinterpret_cast<LPARAM>(&ti));
  return {Narrow(text), ti.rect};
}

TEST(ToolTip, OneToolPerControlAndLabelShownUnderThePointer) {
  test::OwnerWindow owner;
  auto child = [&](const wchar_t* cls, const wchar_t* text, int x, int y) {
    return UniqueWindow(CreateWindowExW(0, cls, text, WS_CHILD | WS_VISIBLE, x, y, 120, 28,
                                        owner.Handle(), nullptr, GetModuleHandleW(nullptr),
                                        nullptr));
  };
  UniqueWindow button = child(L"BUTTON", L"キャプチャ開始", 20, 20);
  UniqueWindow label = child(L"STATIC", L"フレームレート", 20, 70);
  ToolTip tips;
  ASSERT_TRUE(tips.Init(owner.Handle()));
  HWND tip = tips.Window();
  const std::string twoLines =
      TipText({"キャプチャ方法のType0～2を現在の設定で", "2秒間ずつキャプチャします。"});
  tips.MakeToolTip(button.get(), twoLines);
  tips.MakeToolTipForObject("1秒あたりのフレーム数", label.get(), owner.Handle());
  tips.MakeToolTipEx(owner.Handle(), "右下", RECT{200, 100, 300, 150});

  EXPECT_EQ(SendMessageW(tip, TTM_GETTOOLCOUNT, 0, 0), 3);
  EXPECT_EQ(SendMessageW(tip, TTM_GETMAXTIPWIDTH, 0, 0), 4000);
  EXPECT_EQ(SendMessageW(tip, TTM_GETDELAYTIME, TTDT_INITIAL, 0), 800);
  EXPECT_EQ(SendMessageW(tip, TTM_GETDELAYTIME, TTDT_RESHOW, 0), 1000);
  EXPECT_EQ(SendMessageW(tip, TTM_GETDELAYTIME, TTDT_AUTOPOP, 0), 30000);
  EXPECT_TRUE(GetWindowLongW(tip, GWL_STYLE) & TTS_ALWAYSTIP);
  EXPECT_TRUE(GetWindowLongW(tip, GWL_EXSTYLE) & WS_EX_TOPMOST);
  EXPECT_EQ(GetWindow(tip, GW_OWNER), owner.Handle());
  EXPECT_EQ(Tool(tip, button.get(), button.get()).first, twoLines);
  // The label's tool lies on the owner, where the label stands.
  const auto [labelText, labelTool] = Tool(tip, owner.Handle(), label.get());
  EXPECT_EQ(labelText, "1秒あたりのフレーム数");
  const RECT labelRect{20, 70, 140, 98};
  EXPECT_TRUE(EqualRect(&labelTool, &labelRect));

  test::PointerLock pointer;
  RECT b{};
  GetWindowRect(button.get(), &b);
  SetCursorPos((b.left + b.right) / 2, (b.top + b.bottom) / 2);
  ASSERT_TRUE(test::WaitUntil([&] { return IsWindowVisible(tip) != 0; }, 10000));
  RECT tipRect{};
  GetWindowRect(tip, &tipRect);
  EXPECT_GT(tipRect.bottom - tipRect.top, 2 * 12);  // both lines, not one long one
  const RECT r = test::ScreenRect(owner.Handle(), tip);
  std::wprintf(L"picture: %ls\n", test::SaveScreenPicture(r, L"tool-tip").c_str());
}

}  // namespace
}  // namespace velmora::win
