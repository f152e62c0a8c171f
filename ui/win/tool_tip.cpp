#include "ui/win/tool_tip.h"

#include <commctrl.h>

#include "engine/win/text_encoding.h"

namespace velmora::win {
namespace {
constexpr int kMaxTipWidth = 4000;  // lines break only where the text says
constexpr int kInitialMs = 800;
constexpr int kReshowMs = 1000;
constexpr int kAutoPopMs = 30000;
}  // namespace

bool ToolTip::Init(HWND owner) {
  INITCOMMONCONTROLSEX icc{sizeof icc, ICC_WIN95_CLASSES};
  InitCommonControlsEx(&icc);
  tip_.reset(CreateWindowExW(0, TOOLTIPS_CLASSW, nullptr, TTS_ALWAYSTIP, CW_USEDEFAULT,
                             CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, owner, nullptr,
                             GetModuleHandleW(nullptr), nullptr));
  if (!tip_) return false;
  SendMessageW(tip_.get(), TTM_SETMAXTIPWIDTH, 0, kMaxTipWidth);
  SendMessageW(tip_.get(), TTM_SETDELAYTIME, TTDT_INITIAL, kInitialMs);
  SendMessageW(tip_.get(), TTM_SETDELAYTIME, TTDT_RESHOW, kReshowMs);
  SendMessageW(tip_.get(), TTM_SETDELAYTIME, TTDT_AUTOPOP, kAutoPopMs);
  ReTopMost();
  return true;
}

void ToolTip::Add(HWND wnd, UINT_PTR id, const RECT& rect, const std::string& text) {
  if (!tip_) return;
  std::wstring wide = Widen(text);  // the tip window keeps its own copy
  TTTOOLINFOW ti{};
  ti.cbSize = TTTOOLINFOW_V1_SIZE;
  ti.uFlags = TTF_SUBCLASS;
  ti.hwnd = wnd;
  ti.uId = id;
  ti.rect = rect;
  ti.hinst = GetModuleHandleW(nullptr);
  ti.lpszText = wide.data();
  SendMessageW(tip_.get(), TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&ti));
}

void ToolTip::MakeToolTip(HWND control, const std::string& text) {
  RECT r{};
  GetClientRect(control, &r);
  Add(control, reinterpret_cast<UINT_PTR>(control), r, text);
}

void ToolTip::MakeToolTipEx(HWND wnd, const std::string& text, const RECT& rect) {
  // Several rectangles may share one window, so each gets its own id.
  Add(wnd, ++nextRectId_, rect, text);
}

void ToolTip::MakeToolTipForObject(const std::string& text, HWND object, HWND owner) {
  RECT r{};
  GetWindowRect(object, &r);
  MapWindowPoints(nullptr, owner, reinterpret_cast<POINT*>(&r), 2);
  Add(owner, reinterpret_cast<UINT_PTR>(object), r, text);
}

void ToolTip::ReTopMost() {
  if (tip_)
    SetWindowPos(tip_.get(), HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

}  // namespace velmora::win
