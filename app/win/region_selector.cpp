#include "app/win/region_selector.h"

#include <dwmapi.h>

#include <array>
#include <optional>
#include <string>

#include "app/win/window_pick.h"
#include "engine/win/handles.h"
#include "engine/win/screen_grabber.h"
#include "engine/win/text_encoding.h"
#include "engine/win/win_idioms.h"

namespace velmora::win {
namespace {

constexpr COLORREF Rgb(BandColour c) { return RGB(c.red, c.green, c.blue); }
constexpr COLORREF kHintText = RGB(0, 0, 0);
constexpr int kBandWidth96 = 2;    // at 96 dpi
constexpr int kHintOffset96 = 16;  // from the pointer, at 96 dpi
constexpr int kHintPadding96 = 4;

// The four edges of `r`, `width` pixels thick, inside it.
std::array<RECT, 4> Edges(const RECT& r, int width) {
  return {{{r.left, r.top, r.right, r.top + width},
           {r.left, r.bottom - width, r.right, r.bottom},
           {r.left, r.top, r.left + width, r.bottom},
           {r.right - width, r.top, r.right, r.bottom}}};
}

// The window and the screen behind it; every decision is the RegionDrag's.
class RegionSelector {
 public:
  RegionSelector(HWND owner, SelectorMode mode, int32_t method)
      : owner_(owner), mode_(mode), method_(method) {}
  RegionChoice Run(HINSTANCE instance);

 private:
  static LRESULT CALLBACK Proc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp);
  LRESULT Handle(UINT msg, WPARAM wp, LPARAM lp);
  bool Freeze();
  void MakeWindow(HINSTANCE instance);
  void Pump();
  // Hands `input` with the pointer's position (and, when picking, the window
  // under it) to the drag, and shows or hides what it then holds.
  void Feed(SelectorInput input, bool rightHeld = false);
  // Replaces the band and the hint with the drag's, repainting only what changes.
  void Show();
  void Invalidate();
  void Paint();
  bool Picking() const { return mode_ != SelectorMode::DragRegion; }
  int Scaled(int px96) const { return MulDiv(px96, dpi_, 96); }
  RECT ToClient(const ScreenRect& r) const {
    return {r.left - origin_.x, r.top - origin_.y, r.right - origin_.x, r.bottom - origin_.y};
  }

  HWND owner_;
  SelectorMode mode_;
  int32_t method_;
  POINT origin_{};  // the virtual screen's top-left corner
  SIZE size_{};
  int dpi_ = 96;
  std::optional<RegionDrag> drag_;
  UniqueMemoryDc frozenDc_;
  UniqueBitmap frozen_;
  SelectGuard frozenSelection_;
  UniqueBrush bandBrush_;
  UniqueBrush hintBrush_;
  UniqueFont font_;
  UniqueWindow wnd_;

  std::optional<RECT> band_;  // client pixels
  RECT hint_{};               // client pixels
  std::wstring hintText_;
};

// What the caller's hiding uncovered is painted again before the picture is
// taken: this thread's windows repaint when their messages run (until the
// queue has been quiet a moment), and the compositor then shows the result.
// Returns false when the application is ending.
bool LetUncoveredWindowsRepaint() {
  constexpr DWORD kQuietMs = 30, kAtMostMs = 500;
  const DWORD start = GetTickCount();
  do {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
      if (msg.message == WM_QUIT) {
        PostQuitMessage(static_cast<int>(msg.wParam));
        return false;
      }
      TranslateMessage(&msg);
      DispatchMessageW(&msg);
    }
  } while (MsgWaitForMultipleObjects(0, nullptr, FALSE, kQuietMs, QS_ALLINPUT) != WAIT_TIMEOUT &&
           GetTickCount() - start < kAtMostMs);
  DwmFlush();
  return true;
}

RegionChoice RegionSelector::Run(HINSTANCE instance) {
  if (!LetUncoveredWindowsRepaint() || !Freeze()) return {};
  MakeWindow(instance);
  if (!wnd_) return {};
  ShowWindow(wnd_.get(), SW_SHOW);
  SetForegroundWindow(wnd_.get());
  SetFocus(wnd_.get());
  Feed(SelectorInput::Move);  // the hint, and the window under the pointer, before it moves
  Pump();
  ReleaseCapture();
  wnd_.reset();
  return drag_->Choice();
}

bool RegionSelector::Freeze() {
  origin_ = {GetSystemMetrics(SM_XVIRTUALSCREEN), GetSystemMetrics(SM_YVIRTUALSCREEN)};
  size_ = {GetSystemMetrics(SM_CXVIRTUALSCREEN), GetSystemMetrics(SM_CYVIRTUALSCREEN)};
  WindowDc screen = WindowDc::Get(nullptr);
  if (!screen) return false;
  dpi_ = GetDeviceCaps(screen.get(), LOGPIXELSY);
  drag_.emplace(Picking(), DisplayBitCount(), method_);
  frozenDc_.reset(CreateCompatibleDC(screen.get()));
  frozen_.reset(CreateCompatibleBitmap(screen.get(), size_.cx, size_.cy));
  if (!frozenDc_ || !frozen_) return false;
  frozenSelection_ = SelectGuard(frozenDc_.get(), frozen_.get());
  // The picture the user marks on; the screen's DC goes back at once.
  BitBlt(frozenDc_.get(), 0, 0, size_.cx, size_.cy, screen.get(), origin_.x, origin_.y, SRCCOPY);
  return true;
}

void RegionSelector::MakeWindow(HINSTANCE instance) {
  RegisterWindowClass(kRegionSelectorClass, Proc, nullptr, IDC_CROSS);
  bandBrush_.reset(CreateSolidBrush(Rgb(kSelectorBandColour)));
  hintBrush_.reset(CreateSolidBrush(Rgb(kSelectorHintColour)));
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  font_.reset(CreateFontIndirectW(&metrics.lfMessageFont));
  // A tool window: no task-bar button for a window that lives seconds.
  wnd_.reset(CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, kRegionSelectorClass, L"Velmora",
                             WS_POPUP, origin_.x, origin_.y, size_.cx, size_.cy, owner_, nullptr,
                             instance, this));
}

void RegionSelector::Pump() {
  constexpr DWORD kRightUpWaitMs = 1000;
  DWORD doneAt = 0;
  MSG msg;
  while (!drag_->Done() || drag_->AwaitingRightUp()) {
    if (drag_->Done() && !PeekMessageW(&msg, nullptr, 0, 0, PM_NOREMOVE)) {
      // Waiting only for a right button's release. The release may go where
      // this program never hears of it (the button then still reads as down
      // here), so the wait is short and bounded.
      if (!doneAt) doneAt = GetTickCount();
      if (!(GetAsyncKeyState(VK_RBUTTON) & 0x8000) || GetTickCount() - doneAt > kRightUpWaitMs)
        return;
      MsgWaitForMultipleObjects(0, nullptr, FALSE, 50, QS_ALLINPUT);
      continue;
    }
    const BOOL got = GetMessageW(&msg, nullptr, 0, 0);
    if (got <= 0) {
      // The application is ending: leave the quit for the outer loop.
      if (got == 0) PostQuitMessage(static_cast<int>(msg.wParam));
      Feed(SelectorInput::Closed);
      return;
    }
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
}

LRESULT CALLBACK RegionSelector::Proc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  if (msg == WM_NCCREATE) {
    const auto* create = reinterpret_cast<const CREATESTRUCTW*>(lp);
    SetWindowLongPtrW(wnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(create->lpCreateParams));
  }
  auto* self = reinterpret_cast<RegionSelector*>(GetWindowLongPtrW(wnd, GWLP_USERDATA));
  if (!self || !self->wnd_) return DefWindowProcW(wnd, msg, wp, lp);
  return self->Handle(msg, wp, lp);
}

LRESULT RegionSelector::Handle(UINT msg, WPARAM wp, LPARAM lp) {
  HWND wnd = wnd_.get();
  switch (msg) {
    case WM_LBUTTONDOWN:
      Feed(SelectorInput::LeftDown);
      return 0;
    case WM_LBUTTONUP:
      Feed(SelectorInput::LeftUp);
      return 0;
    case WM_MOUSEMOVE:
      Feed(SelectorInput::Move, (wp & MK_RBUTTON) != 0);
      return 0;
    case WM_RBUTTONDOWN:
      Feed(SelectorInput::RightDown);
      return 0;
    case WM_RBUTTONUP:
      Feed(SelectorInput::RightUp);
      return 0;
    case WM_KEYDOWN:
      if (wp == VK_ESCAPE) Feed(SelectorInput::Escape);
      return 0;
    case WM_CAPTURECHANGED:
      if (reinterpret_cast<HWND>(lp) != wnd) Feed(SelectorInput::CaptureTaken);
      return 0;
    case WM_CLOSE:
    case WM_DESTROY:
      Feed(SelectorInput::Closed);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      Paint();
      return 0;
  }
  return DefWindowProcW(wnd, msg, wp, lp);
}

void RegionSelector::Feed(SelectorInput input, bool rightHeld) {
  // The pointer is taken from the system rather than from the message: in
  // screen pixels whatever the window's origin.
  POINT cursor{};
  GetCursorPos(&cursor);
  SelectorEvent e{input, {cursor.x, cursor.y}, std::nullopt, rightHeld};
  if (Picking() && (input == SelectorInput::Move || input == SelectorInput::LeftUp)) {
    if (HWND under = TopLevelWindowAt(cursor, wnd_.get(), owner_))
      e.underPointer = PickedRect(under, mode_ == SelectorMode::PickClientArea);
  }
  const CaptureChange capture = drag_->Feed(e);
  if (drag_->Done()) {
    ShowWindow(wnd_.get(), SW_HIDE);
  } else {
    Show();
  }
  if (capture == CaptureChange::Take) SetCapture(wnd_.get());
  if (capture == CaptureChange::Release) ReleaseCapture();
}

void RegionSelector::Show() {
  Invalidate();
  band_.reset();
  if (const auto band = drag_->Band()) band_ = ToClient(*band);
  hintText_ = Widen(drag_->Hint());
  WindowDc dc = WindowDc::Get(wnd_.get());
  SelectGuard font(dc.get(), font_.get());
  SIZE text{};
  GetTextExtentPoint32W(dc.get(), hintText_.c_str(), static_cast<int>(hintText_.size()), &text);
  const int pad = Scaled(kHintPadding96), offset = Scaled(kHintOffset96);
  const ScreenRect screen{origin_.x, origin_.y, origin_.x + size_.cx, origin_.y + size_.cy};
  hint_ =
      ToClient(HintBoxAt(drag_->Pointer(), {text.cx + 2 * pad, text.cy + 2 * pad}, screen, offset));
  Invalidate();
  UpdateWindow(wnd_.get());
}

void RegionSelector::Invalidate() {
  HWND wnd = wnd_.get();
  if (band_) {
    for (const RECT& edge : Edges(*band_, Scaled(kBandWidth96))) InvalidateRect(wnd, &edge, FALSE);
  }
  InvalidateRect(wnd, &hint_, FALSE);
}

void RegionSelector::Paint() {
  const PaintDc paint(wnd_.get());
  HDC dc = paint.get();
  // The update region clips every step to the strips that changed.
  const RECT& p = paint.Area();
  BitBlt(dc, p.left, p.top, p.right - p.left, p.bottom - p.top, frozenDc_.get(), p.left, p.top,
         SRCCOPY);
  if (band_) {
    for (const RECT& edge : Edges(*band_, Scaled(kBandWidth96)))
      FillRect(dc, &edge, bandBrush_.get());
  }
  FillRect(dc, &hint_, hintBrush_.get());
  FrameRect(dc, &hint_, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  SelectGuard font(dc, font_.get());
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, kHintText);
  RECT text = hint_;
  DrawTextW(dc, hintText_.c_str(), static_cast<int>(hintText_.size()), &text,
            DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

}  // namespace

RegionChoice SelectRegion(HINSTANCE instance, HWND owner, SelectorMode mode, int32_t method) {
  RegionSelector selector(owner, mode, method);
  return selector.Run(instance);
}

}  // namespace velmora::win
