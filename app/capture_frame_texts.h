// What the capture frame window says: its start message, the questions and
// notices of a run, and its tool tips (button captions live in velmora.rc).
#pragma once

namespace velmora {

inline constexpr const char* kWaitForInitializeText = "Please wait for initialize ... ";

inline constexpr const char* kCancelledQuestion =
    "キャンセルしました。\r\nこのまま作業を続行しますか？\r\n\r\n"
    "続行しない場合はQRK、wavファイルは削除します。";

// The stop hotkey is Ctrl+Shift+F9 (app/win/capture_frame_window.cpp).
inline constexpr const char* kStopHotkeyName = "Ctrl+Shift+F9";
inline constexpr const char* kHotkeyTakenText =
    "停止用のホットキー Ctrl+Shift+F9 を登録できませんでした。\r\n"
    "ほかのプログラムが使っています。録画はキャンセルボタンで止めてください。";

inline constexpr const char* kCancelTip =
    "録画をやめます。次の1秒の区切りで止まります。\r\n"
    "ほかのウィンドウを使っていても Ctrl+Shift+F9 で同じように止められます。";
inline constexpr const char* kMoveTip =
    "このパネルを動かします。押したあと、次にクリックした位置へ移ります。\r\n"
    "Escキーか右クリックでやめます。";

}  // namespace velmora
