// Form1, the capture frame window: a small captionless panel that shows the
// live statistics of one recording run, a cancel button, a button that moves
// the panel, and the band round the recorded rectangle. It is the run's
// RecordingRunHooks: the run's questions and messages are its own boxes,
// brought to the front. While a run lasts, Ctrl+Shift+F9 anywhere acts as the
// cancel button, and a log-off cancels the run and keeps the files.
#pragma once
#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>

#include "app/live_stats.h"
#include "app/window_positions.h"
#include "app/win/recording_run.h"
#include "app/win/region_band_window.h"
#include "engine/win/win_clock.h"
#include "ui/win/asker.h"
#include "ui/win/dialog.h"
#include "ui/win/tool_tip.h"

namespace velmora::win {

class CaptureFrameWindow : public RecordingRunHooks, private Dialog {
 public:
  // `instance` holds the window's template; `positions` the remembered
  // corner, read when the window is placed and written when a run ends.
  // `asker` null: the questions are the window's own boxes (the extended
  // message box, and the system's for the recorder's messages); otherwise
  // they all go to `asker`.
  CaptureFrameWindow(HINSTANCE instance, WindowPositions& positions, Asker* asker = nullptr);
  ~CaptureFrameWindow() override;

  void RunStarting(const RecordingJob& job) override;
  void GrabbingBegins() override;
  void FrameRecorded(int32_t frameNumber, double captureMs, int32_t dropCount,
                     bool isDrop) override;
  void RegionMoved(int32_t left, int32_t top) override;
  bool CancelRequested() override { return cancelled_; }
  bool ContinueAfterCancel() override;
  void ShowError(const std::string& utf8Text) override;
  void ShowRecorderMessage(const std::string& utf8Text) override;
  void RunEnded() override;

  // 0: cancel; 1: the next click places the panel.
  void Command1_Click(int index);
  // Places the window at the remembered corner, kept inside the work area.
  void MoveMe();
  // Remembers where the window stands.
  void SaveMe();

  HWND Window() const { return Handle(); }
  HWND BandWindow() const { return band_.Handle(); }
  WindowSize Size() const;
  bool Moving() const { return moving_; }

 private:
  bool OnInit() override;
  bool OnCommand(int id, int code, HWND control) override;
  bool OnMessage(UINT msg, WPARAM wp, LPARAM lp, INT_PTR& result) override;
  void OnClose() override {}  // the run decides when the window goes

  void HideTitle();
  void ShowTexts(const PanelTexts& texts);
  void SetPictureText(int id, const std::string& utf8);
  void EndMoving();
  void RegisterStopHotkey();
  int32_t Ask(const std::string& utf8Text, int32_t style);
  void ComeForward();

  WindowPositions& positions_;
  Asker* asker_;
  WinClock clock_;
  ToolTip tips_;
  RegionBandWindow band_;
  UniqueFont pictureFont_;
  std::optional<LiveStats> stats_;
  double grabStartMs_ = 0;
  bool running_ = false;
  bool cancelled_ = false;
  bool loggingOff_ = false;
  bool stopHotkey_ = false;
  bool moving_ = false;
  POINT movingFrom_{};
};

// The outer size of the capture frame window made from `instance`'s
// template; {0, 0} when the template is missing.
WindowSize CaptureFrameWindowSize(HINSTANCE instance);

}  // namespace velmora::win
