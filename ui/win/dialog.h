// A thin base for dialogs made from a template resource: the class receives
// the messages through a few overridables, and one-line typed helpers hide
// GetDlgItem and SendMessage so window code reads as intent. Text crosses
// this boundary as UTF-8.
#pragma once
#include <windows.h>

#include <cstdint>
#include <string>

#include "engine/win/handles.h"

namespace velmora::win {

class Dialog {
 public:
  Dialog() = default;
  Dialog(const Dialog&) = delete;
  Dialog& operator=(const Dialog&) = delete;
  virtual ~Dialog();

  // Modeless: the window exists (OnInit has run) when this returns; null on
  // failure. The object must outlive the window.
  HWND Create(HINSTANCE instance, int templateId, HWND owner);
  // Destroys a modeless window (no-op when there is none).
  void Destroy();

  HWND Handle() const { return wnd_; }
  HWND Item(int id) const { return GetDlgItem(wnd_, id); }
  HINSTANCE Instance() const { return instance_; }

  // Typed control helpers; ids name controls of this dialog.
  std::string Text(int id) const;
  void SetText(int id, const std::string& utf8);
  bool Checked(int id) const;
  void SetChecked(int id, bool checked);
  void Enable(int id, bool enabled);
  bool Enabled(int id) const;
  void Focus(int id);

  int ComboAdd(int id, const std::string& utf8, intptr_t data = 0);  // index of the item
  int ComboCount(int id) const;
  int ComboSelection(int id) const;  // -1 when none
  void ComboSelect(int id, int index);
  std::string ComboText(int id) const;  // the selected item's text

  // Horizontal scroll-bar controls; the wrapper moves the thumb for every
  // scroll code and then calls OnScroll.
  void SetScrollRange(int id, int min, int max, int page = 1);
  int ScrollValue(int id) const;
  void SetScrollValue(int id, int value);  // clamped to the range

 protected:
  // Return true when focus was set (no default focus wanted).
  virtual bool OnInit() { return false; }
  // Return true when handled.
  virtual bool OnCommand(int /*id*/, int /*code*/, HWND /*control*/) { return false; }
  virtual LRESULT OnNotify(int /*id*/, NMHDR* /*header*/) { return 0; }
  virtual void OnScroll(int /*id*/) {}
  virtual void OnTimer(UINT_PTR /*timerId*/) {}
  // The close box, Alt+F4 and Esc; the default ends a modal dialog with
  // IDCANCEL and destroys a modeless one.
  virtual void OnClose();
  virtual void OnDestroy() {}
  // Any other message: set `result` and return true to handle it.
  virtual bool OnMessage(UINT /*msg*/, WPARAM /*wp*/, LPARAM /*lp*/, INT_PTR& /*result*/) {
    return false;
  }

 private:
  static INT_PTR CALLBACK Proc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp);
  INT_PTR Dispatch(UINT msg, WPARAM wp, LPARAM lp);
  void Scroll(HWND bar, int code, int thumb);  // thumb: the position a drag reports
  // Per-monitor DPI: the layout and the font grow or shrink with the
  // monitor the window moves to.
  void Rescale(int newDpi, const RECT& suggested);

  HWND wnd_ = nullptr;
  HINSTANCE instance_ = nullptr;
  int dpi_ = 96;
  UniqueFont scaledFont_;
};

}  // namespace velmora::win
