// QRKPlayer.exe MOVIE.QRK: a window of the movie's size that plays it in real
// time with the engine's timed playback; the title shows the file name and
// the frame counter. A file the engine refuses shows the engine's message.
#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "engine/movie_header_file.h"
#include "engine/result_codes.h"
#include "engine/win/capture.h"
#include "engine/win/handles.h"
#include "engine/win/system_error_text.h"
#include "engine/win/text_encoding.h"
#include "engine/win/win_idioms.h"
#include "player/player_title.h"

namespace velmora::win {
namespace {

constexpr wchar_t kTitle[] = L"QRKPlayer";

class PlayerWindow final : public PlaybackListener {
 public:
  PlayerWindow(HINSTANCE instance, std::string path, const MovieHeader& h)
      : path_(std::move(path)), header_(h) {
    constexpr const wchar_t* kClass = L"VelmoraQRKPlayer";
    RegisterWindowClass(kClass, Proc, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    const DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;
    RECT r{0, 0, h.width, h.height};
    AdjustWindowRect(&r, style, FALSE);
    wnd_ = CreateWindowW(kClass, L"", style, CW_USEDEFAULT, CW_USEDEFAULT, r.right - r.left,
                         r.bottom - r.top, nullptr, nullptr, instance, nullptr);
    SetWindowLongPtrW(wnd_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetTitle(0);
    ShowWindow(wnd_, SW_SHOW);
    UpdateWindow(wnd_);
  }

  int32_t Play(Capture& capture) {
    capture.SetPlaybackListener(this);
    WindowDc dc = WindowDc::Get(wnd_);
    HBITMAP target = nullptr;
    if (header_.method == 0) {
      // Type0 frames arrive as the bits of a device-dependent bitmap, which
      // playback deletes when it ends; each frame is copied to the window.
      target = CreateCompatibleBitmap(dc.get(), header_.width, header_.height);
      type0Bitmap_ = target;
      memory_.reset(CreateCompatibleDC(dc.get()));
    }
    windowDc_ = dc.get();
    return capture.Play(path_, dc.get(), target, 0, 0, false);
  }

  // Keeps the window up after the last frame until the user closes it.
  static void RunUntilClosed() {
    MSG msg;
    while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
      TranslateMessage(&msg);
      DispatchMessageW(&msg);
    }
  }
  bool Closed() const { return closed_; }

  void CP_Drawing(int64_t frameIndex, int64_t frameCount, double, bool& isCancel) override {
    if (type0Bitmap_) {
      SelectGuard selected(memory_.get(), type0Bitmap_);
      BitBlt(windowDc_, 0, 0, header_.width, header_.height, memory_.get(), 0, 0, SRCCOPY);
    }
    frameCount_ = frameCount;
    SetTitle(frameIndex + 1);
    isCancel = closed_;
  }

 private:
  void SetTitle(int64_t played) {
    SetWindowTextW(wnd_, Widen(PlayerTitle(path_, played, frameCount_)).c_str());
  }

  static LRESULT CALLBACK Proc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
    auto* self = reinterpret_cast<PlayerWindow*>(GetWindowLongPtrW(wnd, GWLP_USERDATA));
    if (msg == WM_CLOSE && self) self->closed_ = true;
    if (msg == WM_DESTROY) PostQuitMessage(0);
    return DefWindowProcW(wnd, msg, wp, lp);
  }

  std::string path_;
  MovieHeader header_;
  HWND wnd_ = nullptr;
  HDC windowDc_ = nullptr;
  HBITMAP type0Bitmap_ = nullptr;  // owned by playback
  UniqueMemoryDc memory_;
  int64_t frameCount_ = 0;
  bool closed_ = false;
};

int ShowEngineMessage(int32_t code) {
  MessageBoxW(nullptr, Widen(ResultText(code)).c_str(), kTitle, MB_OK | MB_ICONERROR);
  return 1;
}

int RunPlayer(HINSTANCE instance, const std::wstring& file) {
  // A name typed in a shell means the shell's folder, while the engine takes
  // a relative name as the program's: hand it on absolute.
  std::error_code ignored;
  const std::string path = Narrow(std::filesystem::absolute(file, ignored).wstring());
  MovieHeader h{};
  h.bitCount = -1;
  int32_t rc = QueryMovieHeader(path, &h);
  if (rc == 0 && h.bitCount == -1) rc = kErrBrokenFile;  // a depth no frame can have
  if (rc != 0) return ShowEngineMessage(rc);

  PlayerWindow window(instance, path, h);
  Capture capture;
  rc = window.Play(capture);
  if (rc != 0) return ShowEngineMessage(rc);
  if (!window.Closed()) PlayerWindow::RunUntilClosed();
  return 0;
}

}  // namespace
}  // namespace velmora::win

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR, int) {
  const std::vector<std::wstring> args = velmora::win::ProgramArguments();
  const std::wstring file = args.empty() ? L"" : args[0];
  if (file.empty()) {
    MessageBoxW(nullptr, L"再生する QRK ファイルを指定してください。", velmora::win::kTitle,
                MB_OK | MB_ICONINFORMATION);
    return 2;
  }
  return velmora::win::RunPlayer(instance, file);
}
