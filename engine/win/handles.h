// Move-only owners for Win32 handles: one template, one line per handle kind.
// Every handle the program makes lives in one of these, so no early return
// can leak it. SelectGuard puts a device context's previous object back.
#pragma once
#include <windows.h>
#include <mmsystem.h>

#include <utility>

namespace velmora::win {

// Traits: `static T Invalid()` and `static void Close(T)`.
template <typename T, typename Traits>
class UniqueHandle {
 public:
  UniqueHandle() = default;
  explicit UniqueHandle(T h) : h_(h) {}
  UniqueHandle(const UniqueHandle&) = delete;
  UniqueHandle& operator=(const UniqueHandle&) = delete;
  UniqueHandle(UniqueHandle&& o) noexcept : h_(std::exchange(o.h_, Traits::Invalid())) {}
  UniqueHandle& operator=(UniqueHandle&& o) noexcept {
    if (this != &o) reset(std::exchange(o.h_, Traits::Invalid()));
    return *this;
  }
  ~UniqueHandle() { reset(); }

  T get() const { return h_; }
  explicit operator bool() const { return h_ != Traits::Invalid(); }
  T release() { return std::exchange(h_, Traits::Invalid()); }
  void reset(T h = Traits::Invalid()) {
    if (h_ != Traits::Invalid()) Traits::Close(h_);
    h_ = h;
  }

 private:
  T h_ = Traits::Invalid();
};

template <typename T, auto CloseFn>
struct NullInvalid {
  static T Invalid() { return nullptr; }
  static void Close(T h) { CloseFn(h); }
};

struct FileTraits {
  static HANDLE Invalid() { return INVALID_HANDLE_VALUE; }
  static void Close(HANDLE h) { ::CloseHandle(h); }
};

inline void CloseHandleObj(HANDLE h) { ::CloseHandle(h); }
inline void DeleteGdi(HGDIOBJ h) { ::DeleteObject(h); }
inline void UnmapView(void* p) { ::UnmapViewOfFile(p); }
inline void UnloadModule(HMODULE h) { ::FreeLibrary(h); }
inline void FreeLocal(wchar_t** p) { ::LocalFree(p); }
// Reset returns every queued buffer first: a device cannot be closed with buffers still queued.
inline void CloseWaveIn(HWAVEIN h) {
  ::waveInReset(h);
  ::waveInClose(h);
}
inline void CloseMixer(HMIXER h) { ::mixerClose(h); }

using UniqueHandleObj =
    UniqueHandle<HANDLE, NullInvalid<HANDLE, CloseHandleObj>>;  // events, mappings, processes
using UniqueFile = UniqueHandle<HANDLE, FileTraits>;
using UniqueMemoryDc = UniqueHandle<HDC, NullInvalid<HDC, ::DeleteDC>>;
using UniqueBitmap = UniqueHandle<HBITMAP, NullInvalid<HBITMAP, DeleteGdi>>;
using UniqueBrush = UniqueHandle<HBRUSH, NullInvalid<HBRUSH, DeleteGdi>>;
using UniquePen = UniqueHandle<HPEN, NullInvalid<HPEN, DeleteGdi>>;
using UniqueFont = UniqueHandle<HFONT, NullInvalid<HFONT, DeleteGdi>>;
using UniqueView = UniqueHandle<void*, NullInvalid<void*, UnmapView>>;
using UniqueModule = UniqueHandle<HMODULE, NullInvalid<HMODULE, UnloadModule>>;
using UniqueWindow = UniqueHandle<HWND, NullInvalid<HWND, ::DestroyWindow>>;
using UniqueRegion = UniqueHandle<HRGN, NullInvalid<HRGN, DeleteGdi>>;
using UniqueArgv =
    UniqueHandle<wchar_t**, NullInvalid<wchar_t**, FreeLocal>>;  // CommandLineToArgvW
using UniqueWaveIn = UniqueHandle<HWAVEIN, NullInvalid<HWAVEIN, CloseWaveIn>>;
using UniqueMixer = UniqueHandle<HMIXER, NullInvalid<HMIXER, CloseMixer>>;

// A device context obtained with GetDC/CreateDC-for-display that goes back
// with ReleaseDC (window DCs) — the window may be null for the screen.
class WindowDc {
 public:
  WindowDc() = default;
  WindowDc(HWND wnd, HDC dc) : wnd_(wnd), dc_(dc) {}
  static WindowDc Get(HWND wnd) { return WindowDc(wnd, ::GetDC(wnd)); }
  WindowDc(const WindowDc&) = delete;
  WindowDc& operator=(const WindowDc&) = delete;
  WindowDc(WindowDc&& o) noexcept : wnd_(o.wnd_), dc_(std::exchange(o.dc_, nullptr)) {}
  WindowDc& operator=(WindowDc&& o) noexcept {
    if (this != &o) {
      reset();
      wnd_ = o.wnd_;
      dc_ = std::exchange(o.dc_, nullptr);
    }
    return *this;
  }
  ~WindowDc() { reset(); }
  HDC get() const { return dc_; }
  explicit operator bool() const { return dc_ != nullptr; }
  void reset() {
    if (dc_) ::ReleaseDC(wnd_, dc_);
    dc_ = nullptr;
  }

 private:
  HWND wnd_ = nullptr;
  HDC dc_ = nullptr;
};

// The device context of one WM_PAINT: BeginPaint on construction, EndPaint
// on every way out, so the update region is always validated.
class PaintDc {
 public:
  explicit PaintDc(HWND wnd) : wnd_(wnd), dc_(::BeginPaint(wnd, &ps_)) {}
  PaintDc(const PaintDc&) = delete;
  PaintDc& operator=(const PaintDc&) = delete;
  ~PaintDc() { ::EndPaint(wnd_, &ps_); }
  HDC get() const { return dc_; }
  const RECT& Area() const { return ps_.rcPaint; }  // the part to repaint

 private:
  HWND wnd_;
  PAINTSTRUCT ps_{};
  HDC dc_;
};

// Selects an object into a DC and selects the previous one back on exit.
class SelectGuard {
 public:
  SelectGuard() = default;
  SelectGuard(HDC dc, HGDIOBJ obj) : dc_(dc), old_(::SelectObject(dc, obj)) {}
  SelectGuard(const SelectGuard&) = delete;
  SelectGuard& operator=(const SelectGuard&) = delete;
  SelectGuard(SelectGuard&& o) noexcept
      : dc_(std::exchange(o.dc_, nullptr)), old_(std::exchange(o.old_, nullptr)) {}
  SelectGuard& operator=(SelectGuard&& o) noexcept {
    if (this != &o) {
      reset();
      dc_ = std::exchange(o.dc_, nullptr);
      old_ = std::exchange(o.old_, nullptr);
    }
    return *this;
  }
  ~SelectGuard() { reset(); }
  void reset() {
    if (dc_ && old_) ::SelectObject(dc_, old_);
    dc_ = nullptr;
    old_ = nullptr;
  }

 private:
  HDC dc_ = nullptr;
  HGDIOBJ old_ = nullptr;
};

}  // namespace velmora::win
