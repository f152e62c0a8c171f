// A /record job over a pattern window: 64 x 48 pixels at (left, top), 20
// frames a second for one second, without cursor, ordinary writes, movie
// only. Tests that run at the same time on the display each keep their
// pattern window at a place of its own.
#pragma once
#include <string>

#include "app/capture_settings.h"
#ifdef _WIN32
#include "app/win/recording_run.h"
#endif

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

#ifdef _WIN32
// The same for the recording run itself: 64 x 48 at (left, top), 10 frames a
// second for 3 seconds, without cursor.
inline win::RecordingJob PatternRunJob(const std::string& movieFile, int32_t left, int32_t top) {
  win::RecordingJob job;
  job.left = left;
  job.top = top;
  job.width = 64;
  job.height = 48;
  job.fps = 10;
  job.seconds = 3;
  job.drawMouse = false;
  job.movieFile = movieFile;
  return job;
}
#endif

}  // namespace velmora::test
