// The remembered top-left corners of the capture frame window and the
// conversion progress window, their text file form (QRXSetting.ini, six
// lines, CR LF) and the positions used when there is no file.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "app/capture_settings.h"

namespace velmora {

struct WindowPositions {
  int32_t CaptureWindowX = 0;
  int32_t CaptureWindowY = 0;
  int32_t AviWindowX = 0;
  int32_t AviWindowY = 0;
  friend bool operator==(const WindowPositions&, const WindowPositions&) = default;
};

// The file's text (UTF-8 here; written in the ANSI code page). Its second
// line tells a user editing it that the order matters.
std::string WindowPositionsText(const WindowPositions& p);

// Reads the four numbers from the third to the sixth line, each the leading
// number of its line (the comment after it is ignored). A shorter file keeps
// what it could read and leaves the rest of `p` as it was. Returns -2 for an
// empty text, otherwise 0 (a partial file counts as read).
int32_t ParseWindowPositions(std::string_view utf8Text, WindowPositions& p);

struct ScreenRect {
  int32_t left, top, right, bottom;
  friend bool operator==(const ScreenRect&, const ScreenRect&) = default;
};
struct WindowSize {
  int32_t width, height;
};
// The capture window in the work area's bottom-right corner; the progress
// window centred on the work area's size measured from the screen origin, so
// a task bar at the left or top puts it off centre. That placement is what
// users of earlier versions know, and it is kept.
WindowPositions DefaultWindowPositions(const ScreenRect& workArea, WindowSize captureWindow,
                                       WindowSize progressWindow);

// Where the capture frame window opens: the remembered corner pulled back
// into the work area. A corner before the left (top) edge goes to 0, not to
// the edge; one that would let the window reach past the right (bottom)
// edge goes to that edge minus the window's size.
struct ScreenPoint {
  int32_t x, y;
  friend bool operator==(const ScreenPoint&, const ScreenPoint&) = default;
};
ScreenPoint ClampIntoWorkArea(ScreenPoint remembered, WindowSize window,
                              const ScreenRect& workArea);

// The file itself, through `codec` (the system's ANSI code page on Windows).
// Loading: 0 when read (a partial file included), -2 when the file is
// missing or empty, -1 when it cannot be opened or does not convert.
int32_t LoadWindowPositions(const std::string& utf8Path, const AnsiCodec& codec,
                            WindowPositions& p);
// Replaces the file; 0 on success, -1 on failure.
int32_t SaveWindowPositions(const std::string& utf8Path, const WindowPositions& p,
                            const AnsiCodec& codec);

}  // namespace velmora
