// Start of velmora.exe to its main window shown and filled, from a fresh
// application folder without a recorder (so no sound is waited for), under
// Wine. The reference, measured alternately in the same run, is this program
// started again as a bare window program: a process start plus one plain
// window, what any program pays under Wine before its own start-up.
// "Filled" is the first moment from which the window's pixels on the screen
// stay the same for 150 ms. Median of VELMORA_BENCH_STARTS starts (default 7).
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/win/launch.h"
#include "tests/win/pattern_window.h"
#include "engine/win/handles.h"
#include "engine/win/win_clock.h"
#include "engine/win/win_idioms.h"

namespace velmora::win {
namespace {

namespace fs = std::filesystem;

constexpr double kSettledMs = 150;
constexpr double kGiveUpMs = 20000;

// --- the reference: a window of the main window's size with some text and
// colour, painted once, closed by WM_CLOSE.
LRESULT CALLBACK ReferenceProc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  if (msg == WM_PAINT) {
    const PaintDc paint(wnd);
    HDC dc = paint.get();
    RECT r{10, 10, 200, 40};
    FillRect(dc, &r, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    DrawTextW(dc, L"reference", -1, &r, DT_LEFT);
    return 0;
  }
  if (msg == WM_DESTROY) PostQuitMessage(0);
  return DefWindowProcW(wnd, msg, wp, lp);
}

int RunReferenceWindow() {
  WNDCLASSW wc{};
  wc.lpfnWndProc = ReferenceProc;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  wc.lpszClassName = L"VelmoraStartReference";
  RegisterClassW(&wc);
  HWND wnd = CreateWindowExW(0, wc.lpszClassName, L"reference", WS_OVERLAPPEDWINDOW, 100, 100, 890,
                             500, nullptr, nullptr, wc.hInstance, nullptr);
  ShowWindow(wnd, SW_SHOWNORMAL);
  MSG msg;
  while (GetMessageW(&msg, nullptr, 0, 0) > 0) DispatchMessageW(&msg);
  return 0;
}

// --- the measurement.
HWND VisibleWindowOf(DWORD pid) {
  struct Search {
    DWORD pid;
    HWND found;
  } search{pid, nullptr};
  EnumWindows(
      [](HWND w, LPARAM p) -> BOOL {
        auto* found = reinterpret_cast<Search*>(p);
        DWORD owner = 0;
        GetWindowThreadProcessId(w, &owner);
        if (owner != found->pid || !IsWindowVisible(w)) return TRUE;
        found->found = w;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.found;
}

// The window's pixels as the screen shows them.
std::vector<uint8_t> WindowPixels(HWND wnd) {
  RECT r{};
  GetWindowRect(wnd, &r);
  return test::ScreenPixels(r);
}

struct StartTimes {
  double shownMs = -1;   // a window of the process is visible
  double filledMs = -1;  // and its pixels have settled
};

// From the start of `exe` to its window shown and filled; the program is then
// closed. Negative times when it never got there.
StartTimes TimeToFilledWindow(const std::wstring& exe, const std::wstring& args) {
  WinClock clock;
  const double t0 = clock.NowMs();
  UniqueHandleObj process = test::Launch(exe, args);
  StartTimes result;
  if (!process) return result;
  const DWORD pid = GetProcessId(process.get());
  HWND wnd = nullptr;
  std::vector<uint8_t> last;
  double lastChangeMs = -1;
  while (clock.NowMs() - t0 < kGiveUpMs) {
    if (!wnd && (wnd = VisibleWindowOf(pid)) != nullptr) result.shownMs = clock.NowMs() - t0;
    if (wnd) {
      std::vector<uint8_t> now = WindowPixels(wnd);
      const double at = clock.NowMs();
      if (now != last) {
        last = std::move(now);
        lastChangeMs = at;
      } else if (at - lastChangeMs >= kSettledMs) {
        result.filledMs = lastChangeMs - t0;
        break;
      }
    }
    Sleep(1);
  }
  if (wnd) PostMessageW(wnd, WM_CLOSE, 0, 0);
  if (test::ExitCodeWithin(process, 10000) == STILL_ACTIVE) test::Kill(pid);
  return result;
}

// Medians of each time.
StartTimes Median(std::vector<StartTimes> v) {
  if (v.empty()) return {};
  StartTimes m;
  std::sort(v.begin(), v.end(), [](auto& a, auto& b) { return a.shownMs < b.shownMs; });
  m.shownMs = v[v.size() / 2].shownMs;
  std::sort(v.begin(), v.end(), [](auto& a, auto& b) { return a.filledMs < b.filledMs; });
  m.filledMs = v[v.size() / 2].filledMs;
  return m;
}

int Measure() {
  const char* env = std::getenv("VELMORA_BENCH_STARTS");
  const int starts = env && std::atoi(env) > 0 ? std::atoi(env) : 7;
  // A fresh folder with the program and the DLLs it loads, no recorder.
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  const fs::path folder = fs::path(temp) / L"velmora_bench_start";
  std::error_code ec;
  fs::remove_all(folder, ec);
  fs::create_directories(folder);
  for (const wchar_t* name : {L"velmora.exe", L"QRX.dll", L"AVI5.DLL"}) {
    fs::copy_file(test::BesideThisProgram(name), folder / name, ec);
    if (ec) {
      std::printf("cannot copy %ls beside the benchmark\n", name);
      return 1;
    }
  }
  wchar_t self[MAX_PATH * 2] = {};
  GetModuleFileNameW(nullptr, self, MAX_PATH * 2);
  const std::wstring velmora = (folder / L"velmora.exe").wstring();

  // The pointer goes to a corner where no window opens: a tool tip that
  // pops up under it would count as painting.
  SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
  // The pointer goes to a corner where no window opens: a tool tip that
  // pops up under it would count as painting.
  SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
  // One start of each first, uncounted: the first start reads the files cold.
  TimeToFilledWindow(self, L"--reference");
  TimeToFilledWindow(velmora, L"");
  std::vector<StartTimes> reference, program;
  for (int i = 0; i < starts; ++i) {
    reference.push_back(TimeToFilledWindow(self, L"--reference"));
    program.push_back(TimeToFilledWindow(velmora, L""));
  }
  fs::remove_all(folder, ec);
  if (std::any_of(program.begin(), program.end(),
                  [](const StartTimes& t) { return t.filledMs < 0; })) {
    std::printf("velmora.exe did not show a settled window within %.0f s\n", kGiveUpMs / 1000);
    return 1;
  }
  const StartTimes ref = Median(reference), app = Median(program);
  std::printf("start to a shown / filled window, median of %d (VELMORA_BENCH_STARTS):\n", starts);
  std::printf("  bare window program %7.1f / %7.1f ms\n", ref.shownMs, ref.filledMs);
  std::printf("  velmora.exe         %7.1f / %7.1f ms  filled: %.2f x the bare program, %+.0f ms\n",
              app.shownMs, app.filledMs, app.filledMs / ref.filledMs, app.filledMs - ref.filledMs);
  return 0;
}

}  // namespace
}  // namespace velmora::win

int main(int argc, char** argv) {
  if (argc > 1 && std::strcmp(argv[1], "--reference") == 0)
    return velmora::win::RunReferenceWindow();
  return velmora::win::Measure();
}
