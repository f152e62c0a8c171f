// One tool-tip window for a form and its controls: always shown (even when
// the form is inactive), top-most, 4000 pixels before a line wraps, shown
// after 800 ms and kept for 30 s. Tools are never removed one by one; they
// end with the tip window.
#pragma once
#include <windows.h>

#include <string>

#include "engine/win/handles.h"

namespace velmora::win {

class ToolTip {
 public:
  // Creates the tip window owned by `owner`; false when it cannot.
  bool Init(HWND owner);

  // A tool over the whole client area of `control`. Texts UTF-8; lines are
  // separated by CR LF (ui/tip_text.h).
  void MakeToolTip(HWND control, const std::string& text);
  // A tool for `wnd` over `rect` (client coordinates of `wnd`).
  void MakeToolTipEx(HWND wnd, const std::string& text, const RECT& rect);
  // A tool on `owner` over the rectangle `object` covers: for labels, which
  // let the mouse through to the window beneath them.
  void MakeToolTipForObject(const std::string& text, HWND object, HWND owner);

  // Top-most again, after another window took that place.
  void ReTopMost();

  HWND Window() const { return tip_.get(); }

 private:
  void Add(HWND wnd, UINT_PTR id, const RECT& rect, const std::string& text);
  UniqueWindow tip_;
  // Ids of rectangle tools; the other tools' ids are window handles, far
  // above these small numbers.
  UINT_PTR nextRectId_ = 0;
};

}  // namespace velmora::win
