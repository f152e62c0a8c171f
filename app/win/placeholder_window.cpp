#include "app/win/placeholder_window.h"

#include "engine/win/system_message.h"

namespace velmora::win {
namespace {

constexpr wchar_t kStandingText[] =
    L"メインウィンドウは準備中です。\r\n録画は velmora.exe /record 設定.QRT で行えます。";

LRESULT CALLBACK Proc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  switch (msg) {
    case WM_SIZE: {
      HWND text = GetWindow(wnd, GW_CHILD);
      if (text) MoveWindow(text, 8, 16, LOWORD(lp) - 16, HIWORD(lp) - 24, TRUE);
      return 0;
    }
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
  }
  return DefWindowProcW(wnd, msg, wp, lp);
}

}  // namespace

HWND CreatePlaceholderWindow(HINSTANCE instance, int x, int y, const std::string& extraLine) {
  WNDCLASSW wc{};
  wc.lpfnWndProc = Proc;
  wc.hInstance = instance;
  wc.lpszClassName = L"VelmoraPlaceholder";
  wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  RegisterClassW(&wc);
  HWND wnd = CreateWindowW(wc.lpszClassName, L"Velmora", WS_OVERLAPPEDWINDOW, x, y, 420, 160,
                           nullptr, nullptr, instance, nullptr);
  if (!wnd) return nullptr;
  std::wstring text = kStandingText;
  if (!extraLine.empty()) text += L"\r\n" + Widen(extraLine);
  HWND label = CreateWindowW(L"STATIC", text.c_str(), WS_CHILD | WS_VISIBLE | SS_CENTER, 0, 0, 0, 0,
                             wnd, nullptr, instance, nullptr);
  SendMessageW(label, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
  RECT client{};
  GetClientRect(wnd, &client);
  SendMessageW(wnd, WM_SIZE, SIZE_RESTORED, MAKELPARAM(client.right, client.bottom));
  return wnd;
}

int RunPlaceholderWindow(HINSTANCE instance, int show, const std::string& extraLine) {
  HWND wnd = CreatePlaceholderWindow(instance, CW_USEDEFAULT, CW_USEDEFAULT, extraLine);
  ShowWindow(wnd, show);
  MSG msg;
  while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
  return static_cast<int>(msg.wParam);
}

}  // namespace velmora::win
