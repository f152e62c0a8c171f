// Form2, the main window: every recording option on screen. This class only
// moves values between the controls and MainWindowValues (app/
// main_window_values.h), where every decision is made, and wires the
// commands to their dialogs and files.
#pragma once
#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "app/capture_settings.h"
#include "app/main_window_values.h"
#include "app/startup_values.h"
#include "app/window_positions.h"
#include "app/win/recording_run.h"
#include "conversion/win/avi_library.h"
#include "engine/win/handles.h"
#include "ui/win/asker.h"
#include "ui/win/dialog.h"
#include "ui/win/tool_tip.h"

namespace velmora::win {

// What the window needs from the session and from the outside world. The
// defaults are the real ones; tests replace the dialogs and the shell.
struct MainWindowSetup {
  StartupPaths paths;
  bool soundAvailable = false;           // the recorder answered at start-up
  WindowPositions* positions = nullptr;  // saved at close when given
  Asker* asker = nullptr;                // null: the application's message box
  // The file chosen in an open (`save` false) or save dialog; empty on cancel.
  std::function<std::string(bool save, const std::string& filter, const std::string& folder,
                            const std::string& proposedName)>
      chooseFile;
  // Opens a file or program with the shell's "open" verb.
  std::function<void(const std::string& file, const std::string& parameters)> shellOpen;
  // The recorder started with the application; null: pictures only.
  RecorderControl* recorder = nullptr;
  // The hooks of one recording run; empty: the frame window.
  std::function<std::unique_ptr<RecordingRunHooks>()> makeRunHooks;
};

class MainWindow final : public Dialog {
 public:
  explicit MainWindow(MainWindowSetup setup);
  ~MainWindow() override;

  // Creates the window, fills its lists, applies default.QRT (or the
  // defaults) and shows it.
  HWND Open(HINSTANCE instance, int show);

  MainWindowValues ReadControls() const;
  void WriteControls(const MainWindowValues& v);
  CaptureSettings Settings() const;
  // Applies a record to the controls and redraws the information list.
  void Apply(const CaptureSettings& s);

  void LoadSettingsCommand();
  void SaveSettingsCommand();
  void RestoreDefaultsCommand();

  // While set, the estimate and the preview do nothing (a recording or a
  // measuring run owns the screen and the processor).
  void SetBusy(bool busy) { busy_ = busy; }

 protected:
  bool OnInit() override;
  bool OnCommand(int id, int code, HWND control) override;
  void OnScroll(int id) override;
  void OnTimer(UINT_PTR timerId) override;
  void OnClose() override;
  void OnDestroy() override;
  bool OnMessage(UINT msg, WPARAM wp, LPARAM lp, INT_PTR& result) override;

 private:
  WindowContext Context() const;
  void FillLists();
  void MakeToolTips();
  void ApplyStartupSettings();
  void SetSound(bool on);
  void ApplyEnables();
  void ShowScrollLabels();
  void ReCalc();
  void DrawInfo();
  void ShowCompressorName(const std::string& name);
  void ValidateRegionBox(int id);
  void ChooseMovieFile();
  void ChooseCompressor();
  // Command1: the region dragged on the frozen screen, or the window picked
  // with the mouse when Check1(0) is checked.
  void SelectRegionByMouse();
  void TryMethodsCommand();
  void StartCommand();
  void OpenPlayer();
  void SavePositions(bool quiet);
  void DrawPreview(const DRAWITEMSTRUCT& item) const;

  MainWindowSetup setup_;
  std::unique_ptr<Asker> ownAsker_;
  Asker* asker_ = nullptr;
  ToolTip tips_;
  AviLibrary aviLibrary_;
  bool mixerUsable_ = false;
  bool busy_ = true;  // until the window is filled
  bool estimateWarns_ = false;
  bool validating_ = false;
  UniqueBrush infoBackground_;
  WindowPositions sessionPositions_;  // the frame window's corner when the session keeps none
};

}  // namespace velmora::win
