#include "ui/win/dialog.h"

#include <algorithm>

#include "engine/win/text_encoding.h"

#ifndef WM_DPICHANGED
#define WM_DPICHANGED 0x02E0
#endif

namespace velmora::win {

Dialog::~Dialog() { Destroy(); }

HWND Dialog::Create(HINSTANCE instance, int templateId, HWND owner) {
  instance_ = instance;
  return CreateDialogParamW(instance, MAKEINTRESOURCEW(templateId), owner, Proc,
                            reinterpret_cast<LPARAM>(this));
}

void Dialog::Destroy() {
  if (wnd_) DestroyWindow(wnd_);
}

std::string Dialog::Text(int id) const {
  HWND item = Item(id);
  std::wstring text(static_cast<size_t>(GetWindowTextLengthW(item)) + 1, L'\0');
  text.resize(
      static_cast<size_t>(GetWindowTextW(item, text.data(), static_cast<int>(text.size()))));
  return Narrow(text);
}

void Dialog::SetText(int id, const std::string& utf8) {
  SetWindowTextW(Item(id), Widen(utf8).c_str());
}

bool Dialog::Checked(int id) const { return IsDlgButtonChecked(wnd_, id) == BST_CHECKED; }

void Dialog::SetChecked(int id, bool checked) {
  CheckDlgButton(wnd_, id, checked ? BST_CHECKED : BST_UNCHECKED);
}

void Dialog::Enable(int id, bool enabled) { EnableWindow(Item(id), enabled); }

bool Dialog::Enabled(int id) const { return IsWindowEnabled(Item(id)) != FALSE; }

void Dialog::Focus(int id) {
  SendMessageW(wnd_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Item(id)), TRUE);
}

int Dialog::ComboAdd(int id, const std::string& utf8, intptr_t data) {
  const std::wstring text = Widen(utf8);
  const auto index =
      SendDlgItemMessageW(wnd_, id, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
  if (index >= 0) SendDlgItemMessageW(wnd_, id, CB_SETITEMDATA, static_cast<WPARAM>(index), data);
  return static_cast<int>(index);
}

int Dialog::ComboCount(int id) const {
  return static_cast<int>(SendDlgItemMessageW(wnd_, id, CB_GETCOUNT, 0, 0));
}

int Dialog::ComboSelection(int id) const {
  return static_cast<int>(SendDlgItemMessageW(wnd_, id, CB_GETCURSEL, 0, 0));
}

void Dialog::ComboSelect(int id, int index) {
  SendDlgItemMessageW(wnd_, id, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

std::string Dialog::ComboText(int id) const {
  const int index = ComboSelection(id);
  if (index < 0) return {};
  const auto length = SendDlgItemMessageW(wnd_, id, CB_GETLBTEXTLEN, static_cast<WPARAM>(index), 0);
  if (length < 0) return {};
  std::wstring text(static_cast<size_t>(length) + 1, L'\0');
  SendDlgItemMessageW(wnd_, id, CB_GETLBTEXT, static_cast<WPARAM>(index),
                      reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<size_t>(length));
  return Narrow(text);
}

void Dialog::SetScrollRange(int id, int min, int max, int page) {
  SCROLLINFO info{sizeof info, SIF_RANGE | SIF_PAGE};
  info.nMin = min;
  // A page above 1 makes the highest reachable position max - page + 1.
  info.nMax = max + page - 1;
  info.nPage = static_cast<UINT>(page);
  SetScrollInfo(Item(id), SB_CTL, &info, TRUE);
}

int Dialog::ScrollValue(int id) const { return GetScrollPos(Item(id), SB_CTL); }

void Dialog::SetScrollValue(int id, int value) {
  SCROLLINFO info{sizeof info, SIF_RANGE | SIF_PAGE};
  GetScrollInfo(Item(id), SB_CTL, &info);
  const int top = info.nMax - std::max(1, static_cast<int>(info.nPage)) + 1;
  SetScrollPos(Item(id), SB_CTL, std::clamp(value, info.nMin, std::max(info.nMin, top)), TRUE);
}

void Dialog::OnClose() { Destroy(); }

void Dialog::Scroll(HWND bar, int code, int thumb) {
  SCROLLINFO info{sizeof info, SIF_ALL};
  GetScrollInfo(bar, SB_CTL, &info);
  const int page = std::max(1, static_cast<int>(info.nPage));
  const int step = std::max(1, (info.nMax - info.nMin + 1) / 10);
  int pos = info.nPos;
  switch (code) {
    case SB_LINELEFT:
      pos -= 1;
      break;
    case SB_LINERIGHT:
      pos += 1;
      break;
    case SB_PAGELEFT:
      pos -= std::max(page, step);
      break;
    case SB_PAGERIGHT:
      pos += std::max(page, step);
      break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      pos = thumb;
      break;
    case SB_LEFT:
      pos = info.nMin;
      break;
    case SB_RIGHT:
      pos = info.nMax;
      break;
    default:
      return;  // SB_ENDSCROLL
  }
  const int id = GetDlgCtrlID(bar);
  const int before = ScrollValue(id);
  SetScrollValue(id, pos);
  if (ScrollValue(id) != before) OnScroll(id);
}

void Dialog::Rescale(int newDpi, const RECT& suggested) {
  if (newDpi <= 0 || newDpi == dpi_) return;
  LOGFONTW font{};
  GetObjectW(reinterpret_cast<HFONT>(SendMessageW(wnd_, WM_GETFONT, 0, 0)), sizeof font, &font);
  font.lfHeight = MulDiv(font.lfHeight, newDpi, dpi_);
  UniqueFont scaled(CreateFontIndirectW(&font));
  for (HWND child = GetWindow(wnd_, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    RECT r{};
    GetWindowRect(child, &r);
    MapWindowPoints(nullptr, wnd_, reinterpret_cast<POINT*>(&r), 2);
    MoveWindow(child, MulDiv(r.left, newDpi, dpi_), MulDiv(r.top, newDpi, dpi_),
               MulDiv(r.right - r.left, newDpi, dpi_), MulDiv(r.bottom - r.top, newDpi, dpi_),
               FALSE);
    if (scaled) SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(scaled.get()), FALSE);
  }
  if (scaled) {
    SendMessageW(wnd_, WM_SETFONT, reinterpret_cast<WPARAM>(scaled.get()), FALSE);
    scaledFont_ = std::move(scaled);  // the old one is freed only after nothing uses it
  }
  dpi_ = newDpi;
  SetWindowPos(wnd_, nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
               suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
  InvalidateRect(wnd_, nullptr, TRUE);
}

INT_PTR CALLBACK Dialog::Proc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  Dialog* self = nullptr;
  if (msg == WM_INITDIALOG) {
    self = reinterpret_cast<Dialog*>(lp);
    self->wnd_ = wnd;
    SetWindowLongPtrW(wnd, DWLP_USER, lp);
  } else {
    self = reinterpret_cast<Dialog*>(GetWindowLongPtrW(wnd, DWLP_USER));
  }
  if (!self) return FALSE;
  const INT_PTR result = self->Dispatch(msg, wp, lp);
  if (msg == WM_NCDESTROY) {
    SetWindowLongPtrW(wnd, DWLP_USER, 0);
    self->wnd_ = nullptr;
  }
  return result;
}

INT_PTR Dialog::Dispatch(UINT msg, WPARAM wp, LPARAM lp) {
  switch (msg) {
    case WM_INITDIALOG: {
      WindowDc dc = WindowDc::Get(wnd_);
      dpi_ = GetDeviceCaps(dc.get(), LOGPIXELSY);
      return OnInit() ? FALSE : TRUE;
    }
    case WM_DPICHANGED:
      Rescale(LOWORD(wp), *reinterpret_cast<const RECT*>(lp));
      return TRUE;
    case WM_COMMAND:
      if (OnCommand(LOWORD(wp), HIWORD(wp), reinterpret_cast<HWND>(lp))) return TRUE;
      // Esc arrives as IDCANCEL from no control; unhandled, it closes.
      if (LOWORD(wp) == IDCANCEL && lp == 0) OnClose();
      return TRUE;
    case WM_NOTIFY: {
      auto* header = reinterpret_cast<NMHDR*>(lp);
      SetWindowLongPtrW(wnd_, DWLP_MSGRESULT, OnNotify(static_cast<int>(header->idFrom), header));
      return TRUE;
    }
    case WM_HSCROLL:
    case WM_VSCROLL:
      if (lp) Scroll(reinterpret_cast<HWND>(lp), LOWORD(wp), HIWORD(wp));
      return TRUE;
    case WM_TIMER:
      OnTimer(wp);
      return TRUE;
    case WM_CLOSE:
      OnClose();
      return TRUE;
    case WM_DESTROY:
      OnDestroy();
      return TRUE;
  }
  INT_PTR result = 0;
  if (!OnMessage(msg, wp, lp, result)) return FALSE;
  // The colour messages return their brush directly; the rest go through
  // DWLP_MSGRESULT.
  if (msg >= WM_CTLCOLORMSGBOX && msg <= WM_CTLCOLORSTATIC) return result;
  SetWindowLongPtrW(wnd_, DWLP_MSGRESULT, result);
  return TRUE;
}

}  // namespace velmora::win
