// A /record job over a pattern window: 64 x 48 pixels at (left, top), 20
// frames a second for one second, without cursor, ordinary writes, movie
// only. Tests that run at the same time on the display each keep their
// pattern window at a place of its own.
#pragma once
#include <string>

#include "app/capture_settings.h"

namespace velmora::test {

inline CaptureSettings PatternJob(int32_t method, const std::string& movieFile, int32_t left,
                                  int32_t top) {
  CaptureSettings s = DefaultSettings(true);
  s.Left = left;
  s.Top = top;
  s.Width = 64;
  s.Height = 48;
  s.Fps = 20;
  s.Seconds = 1;
  s.Method = method;
  s.DrawMouse = kFalse16;
  s.AsyncWrite = kFalse16;
  s.MovieFile = movieFile;
  s.AviFile.clear();
  return s;
}

}  // namespace velmora::test
