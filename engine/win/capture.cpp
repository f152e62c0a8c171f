#include "engine/win/capture.h"

#include "engine/movie_header_file.h"
#include "engine/recording_loop.h"
#include "engine/result_codes.h"
#include "engine/win/application_folder.h"
#include "engine/win/gdi_playback_surface.h"
#include "engine/win/movie_file_sink.h"
#include "engine/win/screen_grabber.h"
#include "engine/win/system_error_text.h"
#include "engine/win/text_encoding.h"

extern "C" __declspec(dllimport) int32_t
    Compress(uint8_t* out, const uint8_t* cur, const uint8_t* prev, int32_t units);

namespace velmora::win {
namespace {

// A listener that hears nothing, for an owner that wants no notifications.
CaptureListener& SilentListener() {
  static CaptureListener silent;
  return silent;
}
PlaybackListener& SilentPlaybackListener() {
  static PlaybackListener silent;
  return silent;
}

}  // namespace

Capture::Capture(CaptureListener* listener) : listener_(listener) {
  session_.bitCount = DisplayBitCount();
}

std::string Capture::GetErrorUtf8(int32_t errorNo) const { return ResultText(errorNo); }

std::wstring Capture::GetError(int32_t errorNo) const { return Widen(GetErrorUtf8(errorNo)); }

void Capture::Init(int32_t x, int32_t y, int32_t w, int32_t h) {
  session_.x = x;
  session_.y = y;
  session_.width = w;
  session_.height = h;
}

void Capture::Init_Capture(int32_t fps, int32_t sec, int32_t method, int32_t maxSizeMB,
                           int32_t cpuReleaseCount, int32_t cpuReleaseTime, bool drawMouse) {
  session_.fps = fps;
  session_.sec = sec;
  session_.method = method;
  session_.maxSizeMB = maxSizeMB;
  session_.cpuReleaseCount = cpuReleaseCount;
  session_.cpuReleaseTime = cpuReleaseTime;
  session_.drawMouse = drawMouse;
}

int32_t Capture::Rec(const std::string& tempPath, int32_t /*memSize*/, bool userCapture,
                     int32_t* retFirstCaptureTime, int32_t waitForStartTime, bool useAsync) {
  return Record(tempPath, userCapture, retFirstCaptureTime, waitForStartTime, useAsync);
}

int32_t Capture::Rec1(const std::string& tempPath, int32_t /*memSize*/, bool userCapture,
                      int32_t* retFirstCaptureTime, int32_t waitForStartTime) {
  return Record(tempPath, userCapture, retFirstCaptureTime, waitForStartTime, false);
}

int32_t Capture::Record(const std::string& tempPath, bool userCapture, int32_t* retFirstCaptureTime,
                        int32_t waitForStartTime, bool mapped) {
  RecordingRequest request;
  request.path = ResolveInApplicationFolder(tempPath);
  request.userCapture = userCapture;
  request.waitForStartTime = waitForStartTime;
  request.retFirstCaptureTime = retFirstCaptureTime;

  // 1 ms sleeps must be 1 ms for the pacing to hold its schedule.
  TimerResolutionScope timerResolution;
  std::unique_ptr<FrameSource> source = userCapture ? nullptr : MakeScreenGrabber(session_.method);
  std::unique_ptr<MovieSink> sink = MakeMovieFileSink(mapped);
  const RecordingPorts ports{clock_, source.get(), *sink, listener_ ? *listener_ : SilentListener(),
                             &::Compress};
  // The follow-mouse handler moves the origin, and the loop restores the
  // depth (to 0 after the early refusals, which leaves this object unfit to
  // record): both stay in the session.
  return RunRecordingLoop(session_, request, ports);
}

int32_t Capture::GetQRXFileData(const std::string& movieFile, int32_t* w, int32_t* h,
                                int32_t* bitCount, int32_t* fps, int32_t* sec,
                                int32_t* method) const {
  MovieHeader header{};
  header.bitCount = -1;  // marks "not filled"
  const int32_t rc = QueryMovieHeader(ResolveInApplicationFolder(movieFile), &header);
  if (rc != 0) return rc;
  if (header.bitCount != -1) {
    if (w) *w = header.width;
    if (h) *h = header.height;
    if (bitCount) *bitCount = header.bitCount;
    if (fps) *fps = header.fps;
    if (sec) *sec = header.sec;
    if (method) *method = header.method;
  }
  return 0;
}

void Capture::SetQRXFileData(const std::string& movieFile, int32_t w, int32_t h, int32_t bitCount,
                             int32_t fps, int32_t sec) const {
  PatchMovieHeader(ResolveInApplicationFolder(movieFile), w, h, bitCount, fps, sec);
}

int32_t Capture::Play(const std::string& movieFile, HDC targetDc, HBITMAP targetBitmap,
                      int32_t drawX, int32_t drawY, bool decodeOnly) {
  GdiPlaybackSurface surface(targetDc, targetBitmap, drawX, drawY);
  return playback_.PlayFile(ResolveInApplicationFolder(movieFile), surface,
                            playbackListener_ ? *playbackListener_ : SilentPlaybackListener(),
                            decodeOnly);
}

}  // namespace velmora::win
