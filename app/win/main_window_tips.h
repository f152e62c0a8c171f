// The main window's tool-tip texts, one per control, in one table.
#pragma once
#include <span>
#include <string>

namespace velmora::win {

struct ControlTip {
  int id;            // control id (app/win/main_window_ids.h)
  std::string text;  // UTF-8, lines joined by CR LF
};

// Every control of the window, labels and group frames included (frames
// last, so a label's own tip wins over the frame around it).
std::span<const ControlTip> MainWindowTips();

// Check3's tip when the sound recorder did not answer at start-up.
std::string NoRecorderTip();

}  // namespace velmora::win
