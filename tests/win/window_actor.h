// Acting on this program's windows from a second thread while the test
// thread sits in a modal loop, and keeping pictures of them for a person to
// look at.
#pragma once
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "engine/win/handles.h"
#include "tests/win/launch.h"
#include "tests/win/pattern_window.h"

namespace velmora::test {

// Runs `act` on another thread with this program's shown window of `cls`
// (the test thread is inside a modal loop meanwhile); joins on destruction,
// so the modal call under test must return first. A window that `act` left
// open (a failed ASSERT inside it) is closed after 10 s, so the test fails
// instead of hanging in its modal loop.
class WindowActor {
 public:
  WindowActor(const wchar_t* cls, std::function<void(HWND)> act)
      : thread_([=] {
          HWND w = WaitForWindow(GetCurrentProcess(), cls, 20000);
          if (!w) return;
          act(w);
          for (int waited = 0; IsWindow(w) && waited < 10000; waited += 50) Sleep(50);
          if (IsWindow(w)) {
            ADD_FAILURE() << "the window was still open after the actor's steps";
            PostMessageW(w, WM_CLOSE, 0, 0);
          }
        }) {}
  ~WindowActor() { thread_.join(); }

 private:
  std::thread thread_;
};

inline RECT ScreenRect(HWND wnd, HWND also = nullptr) {
  RECT r{};
  GetWindowRect(wnd, &r);
  if (also) {
    RECT a{};
    GetWindowRect(also, &a);
    UnionRect(&r, &r, &a);
  }
  return r;
}

// Saves the screen in `r` as a BMP in the build's artefact folder and returns
// its path, for a person to look at: once it shows the same picture twice in
// a row (up to 5 s), so animations and late paints have finished.
inline std::wstring SaveScreenPicture(const RECT& r, const wchar_t* name) {
  BITMAPINFOHEADER header{};
  std::vector<uint8_t> pixels = ScreenPixels(r, &header);
  for (int waited = 0; waited < 5000; waited += 100) {
    Sleep(100);
    std::vector<uint8_t> now = ScreenPixels(r, &header);
    if (now == pixels) break;
    pixels = std::move(now);
  }
  BITMAPFILEHEADER fh{0x4D42, DWORD(sizeof fh + sizeof header + pixels.size()), 0, 0,
                      DWORD(sizeof fh + sizeof header)};
  std::wstring dir = L"artefacts";
  if (const char* bin = std::getenv("VELMORA_BIN_DIR")) {
    dir = L"Z:";
    for (const char* c = bin; *c; ++c) dir += *c == '/' ? L'\\' : wchar_t(*c);
    dir += L"\\..\\artefacts";
  }
  CreateDirectoryW(dir.c_str(), nullptr);
  const std::wstring path = dir + L"\\" + name + L".bmp";
  win::UniqueFile f(
      CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
  DWORD written = 0;
  ::WriteFile(f.get(), &fh, sizeof fh, &written, nullptr);
  ::WriteFile(f.get(), &header, sizeof header, &written, nullptr);
  ::WriteFile(f.get(), pixels.data(), DWORD(pixels.size()), &written, nullptr);
  return path;
}

// A plain shown top-level window to own what a test opens.
class OwnerWindow {
 public:
  OwnerWindow()
      : wnd_(CreateWindowExW(0, L"STATIC", L"owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 60, 60, 360,
                             240, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr)) {}
  HWND Handle() const { return wnd_.get(); }

 private:
  win::UniqueWindow wnd_;
};

}  // namespace velmora::test
