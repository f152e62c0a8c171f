#include "app/win/placeholder_window.h"

namespace velmora::win {
namespace {

LRESULT CALLBACK Proc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  switch (msg) {
    case WM_PAINT: {
      PAINTSTRUCT ps;
      HDC dc = BeginPaint(wnd, &ps);
      RECT r;
      GetClientRect(wnd, &r);
      SetBkMode(dc, TRANSPARENT);
      SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
      DrawTextW(dc, L"メインウィンドウは準備中です。\r\n録画は velmora.exe /record 設定.QRT で行えます。",
                -1, &r, DT_CENTER | DT_VCENTER | DT_WORDBREAK);
      EndPaint(wnd, &ps);
      return 0;
    }
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
  }
  return DefWindowProcW(wnd, msg, wp, lp);
}

}  // namespace

int RunPlaceholderWindow(HINSTANCE instance, int show) {
  WNDCLASSW wc{};
  wc.lpfnWndProc = Proc;
  wc.hInstance = instance;
  wc.lpszClassName = L"VelmoraPlaceholder";
  wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  RegisterClassW(&wc);
  HWND wnd = CreateWindowW(wc.lpszClassName, L"Velmora", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                           CW_USEDEFAULT, 420, 140, nullptr, nullptr, instance, nullptr);
  ShowWindow(wnd, show);
  MSG msg;
  while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
  return static_cast<int>(msg.wParam);
}

}  // namespace velmora::win
