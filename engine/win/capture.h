// The recording engine as the application sees it: one object per recording
// run. It stores the region and the timing, chooses the grabber and the
// writer, runs the recording loop and the timed playback on the caller's
// thread, and turns result codes into texts.
#pragma once
#include <windows.h>

#include <cstdint>
#include <string>

#include "engine/capture_interfaces.h"
#include "engine/playback.h"
#include "engine/recording_loop.h"
#include "engine/win/win_clock.h"

namespace velmora::win {

class Capture {
 public:
  // Reads the display's bit depth (a 1x1 compatible bitmap).
  explicit Capture(CaptureListener* listener = nullptr);

  void SetListener(CaptureListener* listener) { listener_ = listener; }
  void SetPlaybackListener(PlaybackListener* listener) { playbackListener_ = listener; }

  // Text for a result code; -10 carries the system's message for its parameter.
  std::wstring GetError(int32_t errorNo) const;
  std::string GetErrorUtf8(int32_t errorNo) const;

  void Init(int32_t x, int32_t y, int32_t w, int32_t h);
  void Init_Capture(int32_t fps, int32_t sec, int32_t method, int32_t maxSizeMB = 0,
                    int32_t cpuReleaseCount = 0, int32_t cpuReleaseTime = 0,
                    bool drawMouse = false);

  // Every file name given to this class is UTF-8, and a relative one lies
  // in the application's folder, whatever the current directory: the
  // recording, the header fix after it and playback must meet one file.

  // Records into `tempPath`. `memSize` is accepted and ignored. With
  // `useAsync` the file is pre-allocated and written through a mapping.
  // `waitForStartTime` (0: none) and `retFirstCaptureTime` are the engine
  // clock's low 32 bits (engine/clock_low32.h). Returns 0 or a packed result code.
  int32_t Rec(const std::string& tempPath, int32_t memSize = 0, bool userCapture = false,
              int32_t* retFirstCaptureTime = nullptr, int32_t waitForStartTime = 0,
              bool useAsync = false);
  // The same with ordinary file writes.
  int32_t Rec1(const std::string& tempPath, int32_t memSize = 0, bool userCapture = false,
               int32_t* retFirstCaptureTime = nullptr, int32_t waitForStartTime = 0);

  // Header query and patch of a movie file (see engine/movie_header_file.h);
  // the outputs are optional and filled only as the query promises.
  int32_t GetQRXFileData(const std::string& movieFile, int32_t* w = nullptr, int32_t* h = nullptr,
                         int32_t* bitCount = nullptr, int32_t* fps = nullptr,
                         int32_t* sec = nullptr, int32_t* method = nullptr) const;
  void SetQRXFileData(const std::string& movieFile, int32_t w, int32_t h, int32_t bitCount,
                      int32_t fps, int32_t sec) const;

  // Plays a movie: Type1 frames to `targetDc` at (0, 0), Type2 at
  // (drawX, drawY), Type0 as the bits of `targetBitmap`, which playback
  // deletes when it ends once the header was accepted (the caller keeps it
  // after -2, -3 and -8). With `decodeOnly` every frame goes to the
  // playback listener's CP_Decode as device-independent rows, untimed.
  // Returns 0 or the error number (-2, -3, -4, -5, -8).
  int32_t Play(const std::string& movieFile, HDC targetDc, HBITMAP targetBitmap, int32_t drawX,
               int32_t drawY, bool decodeOnly);
  void Play_SetStartT(double val) { playback_.SetStartT(val); }

  int32_t BitCount() const { return session_.bitCount; }
  int32_t X() const { return session_.x; }
  int32_t Y() const { return session_.y; }
  double NowMs() { return clock_.NowMs(); }

 private:
  int32_t Record(const std::string& tempPath, bool userCapture, int32_t* retFirstCaptureTime,
                 int32_t waitForStartTime, bool mapped);

  CaptureListener* listener_;
  PlaybackListener* playbackListener_ = nullptr;
  WinClock clock_;
  Playback playback_{clock_};
  RecordingSession session_;
};

}  // namespace velmora::win
