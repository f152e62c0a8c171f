#include "ui/win/message_box.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "engine/win/handles.h"
#include "engine/win/win_idioms.h"
#include "engine/win/text_encoding.h"
#include "ui/message_box_layout.h"
#include "ui/message_style.h"

namespace velmora::win {
namespace {

constexpr UINT_PTR kAnimationTimer = 1;
constexpr UINT kAnimationMs = 40;
constexpr int kAnimationSteps = 7;
// The prompt wraps like an edit control, so a Japanese sentence without
// spaces still breaks between characters.
constexpr UINT kPromptDrawFlags = DT_WORDBREAK | DT_EDITCONTROL | DT_EXPANDTABS | DT_NOPREFIX;

struct Box {
  int32_t style = 0;
  std::vector<MessageButton> buttons;
  std::vector<HWND> buttonWnds;
  size_t current = 0;  // the button Enter presses
  HICON icon = nullptr;
  RECT iconRect{};
  int step = 0;
  int32_t answer = 0;
  bool done = false;
};

void Answer(Box& box, int32_t answer) {
  box.answer = answer;
  box.done = true;
}

// Moves the focus and the default-button frame to button `i`.
void FocusButton(Box& box, size_t i) {
  for (size_t k = 0; k < box.buttonWnds.size(); ++k) {
    SendMessageW(box.buttonWnds[k], BM_SETSTYLE, k == i ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON, TRUE);
  }
  box.current = i;
  SetFocus(box.buttonWnds[i]);
}

LRESULT CALLBACK BoxProc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  auto* box = reinterpret_cast<Box*>(GetWindowLongPtrW(wnd, GWLP_USERDATA));
  switch (msg) {
    case WM_NCCREATE:
      SetWindowLongPtrW(
          wnd, GWLP_USERDATA,
          reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(lp)->lpCreateParams));
      break;
    case WM_COMMAND: {
      const size_t i = LOWORD(wp) - kFirstButtonId;
      if (box && HIWORD(wp) == BN_CLICKED && i < box->buttons.size())
        Answer(*box, box->buttons[i].answer);
      return 0;
    }
    case WM_CLOSE:
      // The close box answers like Esc; a box without such an answer stays.
      if (box && EscapeAnswer(box->style) != 0) Answer(*box, EscapeAnswer(box->style));
      return 0;
    case WM_TIMER:
      if (box && wp == kAnimationTimer) {
        if (++box->step >= kAnimationSteps) KillTimer(wnd, kAnimationTimer);
        InvalidateRect(wnd, &box->iconRect, TRUE);
      }
      return 0;
    case WM_PAINT: {
      const PaintDc paint(wnd);
      HDC dc = paint.get();
      if (box && box->icon) {
        // The icon grows from its centre to full size along a quarter sine.
        const int full = box->iconRect.right - box->iconRect.left;
        const double t = std::sin(1.5707963267948966 * box->step / kAnimationSteps);
        const int size = std::max(1, static_cast<int>(full * t + 0.5));
        const int x = box->iconRect.left + (full - size) / 2;
        const int y = box->iconRect.top + (full - size) / 2;
        DrawIconEx(dc, x, y, box->icon, size, size, 0, nullptr, DI_NORMAL);
      }
      return 0;
    }
  }
  return DefWindowProcW(wnd, msg, wp, lp);
}

void RegisterBoxClass() {
  static const bool registered =
      RegisterWindowClass(kMessageBoxClass, BoxProc, GetSysColorBrush(COLOR_BTNFACE));
  (void)registered;
}

HICON SystemIcon(MessageIcon kind) {
  switch (kind) {
    case MessageIcon::kError:
      return LoadIconW(nullptr, IDI_HAND);
    case MessageIcon::kQuestion:
      return LoadIconW(nullptr, IDI_QUESTION);
    case MessageIcon::kExclamation:
      return LoadIconW(nullptr, IDI_EXCLAMATION);
    case MessageIcon::kInformation:
      return LoadIconW(nullptr, IDI_ASTERISK);
    default:
      return nullptr;
  }
}

UniqueFont MessageFont() {
  NONCLIENTMETRICSW ncm{};
  ncm.cbSize = sizeof ncm;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof ncm, &ncm, 0);
  return UniqueFont(CreateFontIndirectW(&ncm.lfMessageFont));
}

RECT WorkAreaFor(HWND owner) {
  MONITORINFO mi{};
  mi.cbSize = sizeof mi;
  GetMonitorInfoW(MonitorFromWindow(owner, MONITOR_DEFAULTTOPRIMARY), &mi);
  return mi.rcWork;
}

// Measures the prompt and captions with `font` and lays the box out.
MessageBoxLayout Measure(HFONT font, const std::wstring& prompt, const Box& box, const RECT& work) {
  WindowDc dc = WindowDc::Get(nullptr);
  SelectGuard select(dc.get(), font);
  TEXTMETRICW tm{};
  GetTextMetricsW(dc.get(), &tm);
  MessageBoxMetrics m;
  m.lineHeight = tm.tmHeight;
  m.buttonCount = static_cast<int32_t>(box.buttons.size());
  m.iconSize = box.icon ? GetSystemMetrics(SM_CXICON) : 0;
  RECT r{0, 0, MaxPromptWidth(work.right - work.left, m.lineHeight), 0};
  DrawTextW(dc.get(), prompt.c_str(), -1, &r, kPromptDrawFlags | DT_CALCRECT);
  // One pixel spare so the static control wraps exactly where we measured.
  m.promptWidth = r.right - r.left + 1;
  m.promptHeight = std::max<int32_t>(r.bottom - r.top, m.lineHeight);
  for (const MessageButton& b : box.buttons) {
    RECT c{};
    DrawTextW(dc.get(), Widen(b.caption).c_str(), -1, &c, DT_CALCRECT | DT_SINGLELINE);
    m.widestCaption = std::max<int32_t>(m.widestCaption, c.right - c.left);
  }
  return LayOutMessageBox(m);
}

// Centred over a visible owner, else on the work area; never off it.
POINT Placement(HWND owner, bool ownerShown, SIZE size, const RECT& work) {
  RECT over = work;
  if (ownerShown) GetWindowRect(owner, &over);
  LONG x = over.left + (over.right - over.left - size.cx) / 2;
  LONG y = over.top + (over.bottom - over.top - size.cy) / 2;
  x = std::max(work.left, std::min(x, work.right - size.cx));
  y = std::max(work.top, std::min(y, work.bottom - size.cy));
  return {x, y};
}

// Keys of the box, handled before dispatch so they work whichever button
// has the focus; true when the message was used.
bool HandleKey(Box& box, HWND wnd, const MSG& msg) {
  if (msg.hwnd != wnd && !IsChild(wnd, msg.hwnd)) return false;
  const size_t n = box.buttons.size();
  if (msg.message == WM_KEYDOWN) {
    switch (msg.wParam) {
      case VK_LEFT:
        FocusButton(box, (box.current + n - 1) % n);
        return true;
      case VK_RIGHT:
        FocusButton(box, (box.current + 1) % n);
        return true;
      case VK_TAB:
        FocusButton(box, (box.current + (GetKeyState(VK_SHIFT) < 0 ? n - 1 : 1)) % n);
        return true;
      case VK_RETURN:
        Answer(box, box.buttons[box.current].answer);
        return true;
      case VK_ESCAPE:
        SendMessageW(wnd, WM_CLOSE, 0, 0);
        return true;
    }
  }
  if (msg.message == WM_SYSCHAR && msg.wParam < 0x80) {
    const int32_t answer = AccessKeyAnswer(box.style, static_cast<char>(msg.wParam));
    if (answer != 0) Answer(box, answer);
    return answer != 0;
  }
  return false;
}

}  // namespace

int32_t MsgBoxEx::Show(const std::string& prompt, HWND owner, int32_t style,
                       const std::string& title, uint32_t beep) {
  if (beep != 0) MessageBeep(beep);
  RegisterBoxClass();
  Box box;
  box.style = style;
  box.buttons = MessageButtons(style);
  box.icon = SystemIcon(IconOf(style));

  const bool ownerShown = owner && IsWindowVisible(owner) && !IsIconic(owner);
  const std::wstring text = Widen(prompt);
  const UniqueFont font = MessageFont();
  const RECT work = WorkAreaFor(owner);
  const MessageBoxLayout layout = Measure(font.get(), text, box, work);

  // Without a shown owner the box would have no taskbar button to find it by.
  const DWORD exStyle = WS_EX_DLGMODALFRAME | (ownerShown ? 0 : WS_EX_APPWINDOW);
  const DWORD wndStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU;
  RECT outer{0, 0, layout.clientWidth, layout.clientHeight};
  AdjustWindowRectEx(&outer, wndStyle, FALSE, exStyle);
  const SIZE size{outer.right - outer.left, outer.bottom - outer.top};
  const POINT at = Placement(owner, ownerShown, size, work);
  UniqueWindow wnd(CreateWindowExW(exStyle, kMessageBoxClass, Widen(MessageTitle(title)).c_str(),
                                   wndStyle, at.x, at.y, size.cx, size.cy, owner, nullptr,
                                   GetModuleHandleW(nullptr), &box));
  if (!wnd) return EscapeAnswer(style) != 0 ? EscapeAnswer(style) : DefaultAnswer(style);
  if (EscapeAnswer(style) == 0)
    EnableMenuItem(GetSystemMenu(wnd.get(), FALSE), SC_CLOSE, MF_GRAYED);

  auto child = [&](const wchar_t* cls, const std::wstring& caption, DWORD extra, const BoxRect& r,
                   int id) {
    HWND c = CreateWindowExW(0, cls, caption.c_str(), WS_CHILD | WS_VISIBLE | extra, r.left, r.top,
                             r.width, r.height, wnd.get(), reinterpret_cast<HMENU>(INT_PTR(id)),
                             GetModuleHandleW(nullptr), nullptr);
    SendMessageW(c, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), FALSE);
    return c;
  };
  child(L"STATIC", text, SS_LEFT | SS_NOPREFIX | SS_EDITCONTROL, layout.prompt, kPromptId);
  for (size_t i = 0; i < box.buttons.size(); ++i) {
    box.buttonWnds.push_back(child(L"BUTTON", Widen(box.buttons[i].caption),
                                   WS_TABSTOP | BS_PUSHBUTTON, layout.buttons[i],
                                   kFirstButtonId + int(i)));
  }
  if (box.icon) {
    const BoxRect& r = layout.icon;
    box.iconRect = {r.left, r.top, r.left + r.width, r.top + r.height};
    SetTimer(wnd.get(), kAnimationTimer, kAnimationMs, nullptr);
  }

  const bool ownerWasEnabled = owner && IsWindowEnabled(owner);
  if (ownerWasEnabled) EnableWindow(owner, FALSE);
  ShowWindow(wnd.get(), SW_SHOW);
  if (!ownerShown) SetForegroundWindow(wnd.get());
  FocusButton(box, DefaultButtonIndex(style));

  MSG msg;
  while (!box.done) {
    const BOOL got = GetMessageW(&msg, nullptr, 0, 0);
    if (got <= 0) {
      // The program is ending: leave the quit message for the outer loop.
      if (got == 0) PostQuitMessage(static_cast<int>(msg.wParam));
      Answer(box, EscapeAnswer(style) != 0 ? EscapeAnswer(style) : DefaultAnswer(style));
      break;
    }
    if (HandleKey(box, wnd.get(), msg)) continue;
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
  KillTimer(wnd.get(), kAnimationTimer);
  // The owner gets the activation back only if it is enabled before the box goes.
  if (ownerWasEnabled) EnableWindow(owner, TRUE);
  wnd.reset();
  return box.answer;
}

}  // namespace velmora::win
