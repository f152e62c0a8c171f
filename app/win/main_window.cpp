#include "app/win/main_window.h"

#include <shellapi.h>

#include <algorithm>
#include <array>

#include "app/capture_info.h"
#include "app/region_selection.h"
#include "app/start_checks.h"
#include "app/win/ansi.h"
#include "app/win/capture_frame_window.h"
#include "app/win/main_window_ids.h"
#include "app/win/main_window_tips.h"
#include "app/win/method_trial.h"
#include "app/win/preview.h"
#include "app/win/record_and_save.h"
#include "app/win/target_facts.h"
#include "app/win/region_selector.h"
#include "app/win/volume_description.h"
#include "engine/win/screen_grabber.h"
#include "engine/win/text_encoding.h"
#include "sound/sound_formats.h"
#include "sound/win/mixer.h"
#include "ui/message_style.h"
#include "ui/win/file_dialog.h"
#include "ui/win/message_box.h"

namespace velmora::win {
namespace {

constexpr char kSettingsFilter[] = "QRX設定ファイル|*.QRT";
constexpr char kMovieFilter[] = "Velmoraファイル|*.QRK";
constexpr char kUncompressed[] = "未圧縮";
constexpr UINT_PTR kPreviewTimer = 1;
constexpr UINT kPreviewIntervalMs = 250;

constexpr std::array<int, 4> kRegionBoxes = {IDC_TEXT1_LEFT, IDC_TEXT1_TOP, IDC_TEXT1_WIDTH,
                                             IDC_TEXT1_HEIGHT};
constexpr std::array<int, 3> kMethodOptions = {IDC_OPTION1_TYPE0, IDC_OPTION1_TYPE1,
                                               IDC_OPTION1_TYPE2};
constexpr std::array<int, 3> kSaveOptions = {IDC_OPTION2_AVI_AND_QRK, IDC_OPTION2_AVI_ONLY,
                                             IDC_OPTION2_QRK_ONLY};
struct ScrollControl {
  int bar;
  int label;
  ScrollBar which;
};
constexpr std::array<ScrollControl, 4> kScrolls = {{
    {IDC_HSCROLL1_FPS, IDC_LABEL5_FPS, ScrollBar::Fps},
    {IDC_HSCROLL1_SECONDS, IDC_LABEL5_SECONDS, ScrollBar::Seconds},
    {IDC_HSCROLL2_COUNT, IDC_LABEL6_COUNT, ScrollBar::CpuReleaseCount},
    {IDC_HSCROLL2_TIME, IDC_LABEL6_TIME, ScrollBar::CpuReleaseTime},
}};

// The 64-bit program runs only on the NT family.
constexpr bool kNtPlatform = true;

std::string DefaultChooseFile(HWND owner, bool save, const std::string& filter,
                              const std::string& folder, const std::string& proposedName) {
  ComD6 dialog;
  dialog.Filter = filter;
  dialog.DefaultDirectory = folder;
  dialog.flags.Flag_Save_Overwriteprompt = 1;  // saving over a file asks first
  return save ? dialog.ShowSave(owner, proposedName) : dialog.ShowOpenSingle(owner, proposedName);
}

void DefaultShellOpen(const std::string& file, const std::string& parameters) {
  ShellExecuteW(nullptr, L"open", Widen(file).c_str(),
                parameters.empty() ? nullptr : Widen(parameters).c_str(), nullptr, SW_SHOWNORMAL);
}

// The folder part of a typed path, for the movie file dialog.
std::string FolderOf(const std::string& path) {
  const size_t slash = path.find_last_of("\\/");
  return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

}  // namespace

MainWindow::MainWindow(MainWindowSetup setup) : setup_(std::move(setup)) {
  if (setup_.asker) {
    asker_ = setup_.asker;
  }
  if (!setup_.shellOpen) setup_.shellOpen = DefaultShellOpen;
}

MainWindow::~MainWindow() = default;

HWND MainWindow::Open(HINSTANCE instance, int show) {
  HWND wnd = Create(instance, IDD_MAIN_WINDOW, nullptr);
  if (wnd) ShowWindow(wnd, show);
  return wnd;
}

WindowContext MainWindow::Context() const {
  return WindowContext{DisplayBitCount(), setup_.soundAvailable,
                       ComboCount(IDC_COMBO2_RECORDING_LINE)};
}

bool MainWindow::OnInit() {
  if (!asker_) {
    ownAsker_ = std::make_unique<MsgBoxEx>(Handle());
    asker_ = ownAsker_.get();
  }
  if (!setup_.makeRunHooks) {
    // The frame window shows the run and asks its questions in its own boxes.
    setup_.makeRunHooks = [this]() -> std::unique_ptr<RecordingRunHooks> {
      WindowPositions& positions = setup_.positions ? *setup_.positions : sessionPositions_;
      return std::make_unique<CaptureFrameWindow>(Instance(), positions);
    };
  }
  if (!setup_.chooseFile) {
    setup_.chooseFile = [wnd = Handle()](bool save, const std::string& filter,
                                         const std::string& folder, const std::string& name) {
      return DefaultChooseFile(wnd, save, filter, folder, name);
    };
  }
  const auto icon = [this](int size) {
    return reinterpret_cast<LPARAM>(
        LoadImageW(Instance(), MAKEINTRESOURCEW(IDI_VELMORA), IMAGE_ICON, size, size, LR_SHARED));
  };
  SendMessageW(Handle(), WM_SETICON, ICON_BIG, icon(GetSystemMetrics(SM_CXICON)));
  SendMessageW(Handle(), WM_SETICON, ICON_SMALL, icon(GetSystemMetrics(SM_CXSMICON)));
  infoBackground_.reset(CreateSolidBrush(GetSysColor(COLOR_WINDOW)));

  for (const ScrollControl& s : kScrolls) {
    const ScrollRange range = ScrollRangeOf(s.which);
    SetScrollRange(s.bar, range.min, range.max);
  }
  FillLists();
  MakeToolTips();
  ApplyStartupSettings();
  busy_ = false;
  ReCalc();
  SetTimer(Handle(), kPreviewTimer, kPreviewIntervalMs, nullptr);
  // A user who opens the window mostly wants to record what is set.
  Focus(IDC_COMMAND5_START);
  return true;
}

void MainWindow::FillLists() {
  for (const PriorityItem& item : PriorityItems()) {
    ComboAdd(IDC_COMBO3_PRIORITY, std::string(item.text), item.priorityClass);
  }
  ComboSelect(IDC_COMBO3_PRIORITY, 0);

  if (setup_.soundAvailable) {
    for (std::string_view label : sound::kSoundFormatLabels) {
      ComboAdd(IDC_COMBO1_SOUND_FORMAT, std::string(label));
    }
    ComboSelect(IDC_COMBO1_SOUND_FORMAT, 0);
  }

  Mixer mixer;
  std::optional<std::vector<std::string>> lines;
  if (mixer.IsEnableMixer()) lines = mixer.GetWaveInLines();
  mixerUsable_ = lines && !lines->empty();
  if (!mixerUsable_) lines.reset();
  for (const std::string& item : RecordingLineItems(lines))
    ComboAdd(IDC_COMBO2_RECORDING_LINE, item);
  ComboSelect(IDC_COMBO2_RECORDING_LINE, 0);
}

void MainWindow::MakeToolTips() {
  if (!tips_.Init(Handle())) return;
  for (const ControlTip& tip : MainWindowTips()) {
    HWND control = Item(tip.id);
    const std::string& text =
        tip.id == IDC_CHECK3_SOUND && !setup_.soundAvailable ? NoRecorderTip() : tip.text;
    wchar_t cls[16] = {};
    GetClassNameW(control, cls, 16);
    const bool label = lstrcmpiW(cls, L"Static") == 0;
    const bool frame = lstrcmpiW(cls, L"Button") == 0 &&
                       (GetWindowLongW(control, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX;
    // Labels and frames let the mouse through, and the sound box without a
    // recorder stays disabled (no mouse at all), so their tips sit on the window.
    const bool neverEnabled = tip.id == IDC_CHECK3_SOUND && !setup_.soundAvailable;
    if (label || frame || neverEnabled) {
      tips_.MakeToolTipForObject(text, control, Handle());
    } else {
      tips_.MakeToolTip(control, text);
    }
  }
}

void MainWindow::ApplyStartupSettings() {
  CaptureSettings s = ReadSettingsFile(setup_.paths.DefaultSettingsFile, SystemAnsiCodec());
  if (s.Width == 0 || s.Height == 0) s = DefaultSettings(kNtPlatform);
  Apply(s);
}

MainWindowValues MainWindow::ReadControls() const {
  MainWindowValues v;
  for (size_t i = 0; i < kRegionBoxes.size(); ++i) v.region[i] = Text(kRegionBoxes[i]);
  v.fps = ScrollValue(IDC_HSCROLL1_FPS);
  v.seconds = ScrollValue(IDC_HSCROLL1_SECONDS);
  v.cpuReleaseCount = ScrollValue(IDC_HSCROLL2_COUNT);
  v.cpuReleaseTime = ScrollValue(IDC_HSCROLL2_TIME);
  v.method = -1;
  for (size_t i = 0; i < kMethodOptions.size(); ++i) {
    if (Checked(kMethodOptions[i])) v.method = static_cast<int32_t>(i);
  }
  v.movieFile = Text(IDC_TEXT2_MOVIE_FILE);
  v.drawMouse = Checked(IDC_CHECK2_DRAW_MOUSE);
  v.followMouse = Checked(IDC_CHECK5_FOLLOW_MOUSE);
  v.sound = Checked(IDC_CHECK3_SOUND);
  v.soundFormat = ComboText(IDC_COMBO1_SOUND_FORMAT);
  v.deleteWave = Checked(IDC_CHECK4_DELETE_WAVE);
  v.recordingLine = ComboSelection(IDC_COMBO2_RECORDING_LINE);
  v.priorityIndex = ComboSelection(IDC_COMBO3_PRIORITY);
  v.asyncWrite = Checked(IDC_CHECK7_ASYNC_WRITE);
  v.saveMode = SaveMode::AviAndMovie;
  if (Checked(IDC_OPTION2_AVI_ONLY)) v.saveMode = SaveMode::AviOnly;
  if (Checked(IDC_OPTION2_QRK_ONLY)) v.saveMode = SaveMode::MovieOnly;
  v.avi24Bit = Checked(IDC_CHECK6_AVI24);
  v.compressorName = aviLibrary_.CompressorChosen() ? aviLibrary_.CompressorName() : std::string();
  return v;
}

void MainWindow::WriteControls(const MainWindowValues& v) {
  for (size_t i = 0; i < kRegionBoxes.size(); ++i) SetText(kRegionBoxes[i], v.region[i]);
  SetScrollValue(IDC_HSCROLL1_FPS, v.fps);
  SetScrollValue(IDC_HSCROLL1_SECONDS, v.seconds);
  SetScrollValue(IDC_HSCROLL2_COUNT, v.cpuReleaseCount);
  SetScrollValue(IDC_HSCROLL2_TIME, v.cpuReleaseTime);
  ShowScrollLabels();
  if (v.method >= 0 && v.method < static_cast<int32_t>(kMethodOptions.size())) {
    CheckRadioButton(Handle(), kMethodOptions.front(), kMethodOptions.back(),
                     kMethodOptions[v.method]);
  }
  SetText(IDC_TEXT2_MOVIE_FILE, v.movieFile);
  SetChecked(IDC_CHECK2_DRAW_MOUSE, v.drawMouse);
  SetChecked(IDC_CHECK5_FOLLOW_MOUSE, v.followMouse);
  CheckRadioButton(Handle(), kSaveOptions.front(), kSaveOptions.back(),
                   kSaveOptions[static_cast<size_t>(v.saveMode)]);
  // Set twice so the sound box's reaction runs even when its state is unchanged.
  SetSound(!v.sound);
  SetSound(v.sound);
  ShowCompressorName(v.compressorName);
  SetChecked(IDC_CHECK6_AVI24, v.avi24Bit);
  SetChecked(IDC_CHECK4_DELETE_WAVE, v.deleteWave);
  if (v.recordingLine >= 0) ComboSelect(IDC_COMBO2_RECORDING_LINE, v.recordingLine);
  if (v.priorityIndex >= 0) ComboSelect(IDC_COMBO3_PRIORITY, v.priorityIndex);
  SetChecked(IDC_CHECK7_ASYNC_WRITE, v.asyncWrite);
  ApplyEnables();
}

CaptureSettings MainWindow::Settings() const {
  return SettingsFromControls(ReadControls(), Context());
}

void MainWindow::Apply(const CaptureSettings& s) {
  MainWindowValues v = ReadControls();
  SettingsToControls(s, Context(), v);
  WriteControls(v);
  DrawInfo();
}

void MainWindow::SetSound(bool on) {
  SetChecked(IDC_CHECK3_SOUND, on && setup_.soundAvailable);
  ApplyEnables();
  ReCalc();
}

void MainWindow::ApplyEnables() {
  const ControlEnables e =
      EnablesFor(ReadControls(), Checked(IDC_CHECK1_WINDOW), Context(), mixerUsable_);
  for (int id : {IDC_TEXT1_LEFT, IDC_TEXT1_TOP, IDC_LABEL1_LEFT, IDC_LABEL2_TOP})
    Enable(id, e.regionPosition);
  Enable(IDC_CHECK1_CLIENT, e.clientAreaOnly);
  Enable(IDC_CHECK3_SOUND, e.soundBox);
  for (int id : {IDC_COMBO1_SOUND_FORMAT, IDC_CHECK4_DELETE_WAVE, IDC_LABEL_SOUND_FORMAT}) {
    Enable(id, e.soundOptions);
  }
  Enable(IDC_COMBO2_RECORDING_LINE, e.recordingLine);
  Enable(IDC_LABEL_RECORDING_LINE, e.recordingLine);
}

void MainWindow::ShowScrollLabels() {
  for (const ScrollControl& s : kScrolls)
    SetText(s.label, ScrollLabelText(s.which, ScrollValue(s.bar)));
}

void MainWindow::ReCalc() {
  if (busy_) return;
  const CaptureSettings s = Settings();
  const DiskEstimate estimate = EstimateDisk(s, DescribeMovieVolume(s.MovieFile));
  estimateWarns_ = estimate.warn;
  SetText(IDC_LABEL9_ESTIMATE, estimate.text);
  InvalidateRect(Item(IDC_LABEL9_ESTIMATE), nullptr, TRUE);
  DrawInfo();
}

void MainWindow::DrawInfo() {
  if (busy_) return;
  // The list is the static's window text: what is drawn is what a screen
  // reader reads.
  SetText(IDC_PICTURE2_INFO, CaptureInfoText(Settings(), ReadControls().compressorName));
}

void MainWindow::ShowCompressorName(const std::string& name) {
  // No name means no compressor: the chosen options go too, so the label,
  // the information list and the AVI always agree.
  if (name.empty()) aviLibrary_ = AviLibrary();
  SetText(IDC_LABEL11_COMPRESSOR_NAME, name.empty() ? kUncompressed : name);
}

void MainWindow::LoadSettingsCommand() {
  const std::string path = setup_.chooseFile(false, kSettingsFilter, setup_.paths.SettingsDir, {});
  if (path.empty()) return;
  const CaptureSettings s = ReadSettingsFile(path, SystemAnsiCodec());
  if (s.Width == 0) asker_->Msg("読み込みに失敗しました。", kStyleOk | kStyleIconError);
  Apply(s);
}

void MainWindow::SaveSettingsCommand() {
  const CaptureSettings s = Settings();
  const std::string path =
      setup_.chooseFile(true, kSettingsFilter, setup_.paths.SettingsDir, "default.QRT");
  if (path.empty()) return;
  if (WriteSettingsFile(path, s, SystemAnsiCodec()) != 0) {
    asker_->Msg("保存に失敗しました。", kStyleOk | kStyleIconError);
  }
}

void MainWindow::RestoreDefaultsCommand() { Apply(DefaultSettings(kNtPlatform)); }

void MainWindow::ValidateRegionBox(int id) {
  if (validating_) return;
  const auto at = std::find(kRegionBoxes.begin(), kRegionBoxes.end(), id);
  const auto index = static_cast<int32_t>(at - kRegionBoxes.begin());
  const RegionBoxCheck check = CheckRegionBox(index, Text(id));
  if (!check.accepted) {
    // The plain system box, and focus back to the box; the flag keeps the
    // focus change the box itself causes from asking again.
    validating_ = true;
    MessageBoxW(Handle(), Widen(kInvalidNumberText).c_str(), L"Velmora", MB_OK);
    Focus(id);
    validating_ = false;
    return;
  }
  std::string text = check.text;
  if (id == IDC_TEXT1_WIDTH) {
    const int32_t width =
        RegionWidthForDepth(check.value, DisplayBitCount(), ReadControls().method);
    if (width > 0) text = std::to_string(width);
  }
  if (Text(id) != text) SetText(id, text);
  ReCalc();
  InvalidateRect(Item(IDC_PICTURE1_PREVIEW), nullptr, FALSE);
}

void MainWindow::ChooseMovieFile() {
  const std::string typed = Text(IDC_TEXT2_MOVIE_FILE);
  const std::string path = setup_.chooseFile(true, kMovieFilter, FolderOf(typed), {});
  if (path.empty()) return;
  SetText(IDC_TEXT2_MOVIE_FILE, path);
  const auto end = static_cast<LPARAM>(GetWindowTextLengthW(Item(IDC_TEXT2_MOVIE_FILE)));
  SendDlgItemMessageW(Handle(), IDC_TEXT2_MOVIE_FILE, EM_SETSEL, static_cast<WPARAM>(end), end);
  ReCalc();
}

void MainWindow::ChooseCompressor() {
  aviLibrary_.SelectCompressor(reinterpret_cast<intptr_t>(Handle()));
  ShowCompressorName(aviLibrary_.CompressorChosen() ? aviLibrary_.CompressorName() : std::string());
  DrawInfo();
}

void MainWindow::OpenPlayer() {
  // Quoted, so a path with spaces reaches the player as one argument.
  std::string quoted = "\"";
  quoted += Text(IDC_TEXT2_MOVIE_FILE);
  quoted += '"';
  setup_.shellOpen(setup_.paths.PlayerExe, quoted);
}

void MainWindow::StartCommand() {
  const CaptureSettings s = Settings();
  if (!StartIsValid(s, GatherTargetFacts(s.MovieFile))) {
    asker_->Msg(InvalidTargetText(s.MovieFile), kStyleOk | kStyleIconError);
    return;
  }
  if (!s.AviFile.empty() && !aviLibrary_.CompressorChosen()) {
    asker_->Msg(kNoCompressorText, kStyleOk | kStyleIconError);
    return;
  }
  const std::string question = OverwriteQuestion(s, FileExists);
  if (!question.empty() && asker_->Msg(question, kStyleYesNo | kStyleIconQuestion) != kAnswerYes)
    return;

  AviLibrary::CompVars cv{};
  aviLibrary_.CopySettings(cv.data());
  const std::unique_ptr<RecordingRunHooks> hooks = setup_.makeRunHooks();
  busy_ = true;
  ShowWindow(Handle(), SW_HIDE);
  // The run's achieved frame rate is not written back into the frame-rate
  // bar: the setting stays what the user chose for the next recording.
  RecordAndSave(s, cv.data(), *hooks, *asker_, setup_.recorder, setup_.positions);
  ShowWindow(Handle(), SW_SHOW);
  busy_ = false;
  // The files named in the list may have come or gone, and the volume filled.
  ReCalc();
  InvalidateRect(Item(IDC_PICTURE1_PREVIEW), nullptr, FALSE);
}

void MainWindow::SelectRegionByMouse() {
  SelectorMode mode = SelectorMode::DragRegion;
  if (Checked(IDC_CHECK1_WINDOW)) {
    mode = Checked(IDC_CHECK1_CLIENT) ? SelectorMode::PickClientArea : SelectorMode::PickWindow;
  }
  const int32_t method = Settings().Method;
  // Out of the way before the screen is frozen, so the picture shows what
  // lies under the window and a pick cannot land on it.
  ShowWindow(Handle(), SW_HIDE);
  const RegionChoice choice = SelectRegion(Instance(), Handle(), mode, method);
  ShowWindow(Handle(), SW_SHOW);
  SetForegroundWindow(Handle());
  if (choice.cancelled) return;
  const auto boxes = RegionBoxesFor(choice.rect, DisplayBitCount(), method);
  if (!boxes) return;
  for (size_t i = 0; i < kRegionBoxes.size(); ++i) SetText(kRegionBoxes[i], (*boxes)[i]);
  ReCalc();
  InvalidateRect(Item(IDC_PICTURE1_PREVIEW), nullptr, FALSE);
}

void MainWindow::TryMethodsCommand() {
  SetBusy(true);
  const std::string lines = TryCaptureMethods(JobFromSettings(Settings()), Handle());
  SetBusy(false);
  asker_->Msg(lines, kStyleOk | kStyleIconInformation, kMethodTrialTitle);
}

bool MainWindow::OnCommand(int id, int code, HWND) {
  switch (id) {
    case IDC_TEXT1_LEFT:
    case IDC_TEXT1_TOP:
    case IDC_TEXT1_WIDTH:
    case IDC_TEXT1_HEIGHT:
      if (code == EN_KILLFOCUS) ValidateRegionBox(id);
      return true;
    case IDC_TEXT2_MOVIE_FILE:
      if (code == EN_KILLFOCUS) ReCalc();
      return true;
    case IDC_COMBO1_SOUND_FORMAT:
    case IDC_COMBO2_RECORDING_LINE:
    case IDC_COMBO3_PRIORITY:
      if (code == CBN_SELCHANGE) ReCalc();
      return true;
    case IDC_CHECK3_SOUND:
      SetSound(Checked(IDC_CHECK3_SOUND));
      return true;
    case IDC_CHECK1_WINDOW:
    case IDC_CHECK5_FOLLOW_MOUSE:
      ApplyEnables();
      DrawInfo();
      return true;
    case IDC_CHECK1_CLIENT:
    case IDC_CHECK2_DRAW_MOUSE:
    case IDC_CHECK4_DELETE_WAVE:
    case IDC_CHECK6_AVI24:
    case IDC_CHECK7_ASYNC_WRITE:
    case IDC_OPTION1_TYPE0:
    case IDC_OPTION1_TYPE1:
    case IDC_OPTION1_TYPE2:
    case IDC_OPTION2_AVI_AND_QRK:
    case IDC_OPTION2_AVI_ONLY:
    case IDC_OPTION2_QRK_ONLY:
      ReCalc();
      return true;
    case IDC_COMMAND10_LOAD:
      LoadSettingsCommand();
      return true;
    case IDC_COMMAND7_SAVE:
      SaveSettingsCommand();
      return true;
    case IDC_COMMAND9_RESTORE:
      RestoreDefaultsCommand();
      return true;
    case IDC_COMMAND2_BROWSE:
      ChooseMovieFile();
      return true;
    case IDC_COMMAND4_PLAYER:
      OpenPlayer();
      return true;
    case IDC_COMMAND11_HELP:
      setup_.shellOpen(setup_.paths.HelpFile, {});
      return true;
    case IDC_COMMAND8_COMPRESSOR:
      ChooseCompressor();
      return true;
    case IDC_COMMAND6_REDRAW:
      ReCalc();
      InvalidateRect(Item(IDC_PICTURE1_PREVIEW), nullptr, FALSE);
      return true;
    case IDC_COMMAND3_BENCHMARK:
      TryMethodsCommand();
      return true;
    case IDC_COMMAND5_START:
      StartCommand();
      return true;
    case IDC_COMMAND1_BY_MOUSE:
      SelectRegionByMouse();
      return true;
    case IDCANCEL:  // Esc does not close the main window
      return true;
  }
  return false;
}

void MainWindow::OnScroll(int) {
  ShowScrollLabels();
  ReCalc();
}

void MainWindow::OnTimer(UINT_PTR timerId) {
  if (timerId != kPreviewTimer || busy_ || !IsWindowVisible(Handle()) || IsIconic(Handle())) return;
  InvalidateRect(Item(IDC_PICTURE1_PREVIEW), nullptr, FALSE);
}

void MainWindow::SavePositions(bool quiet) {
  if (!setup_.positions) return;
  if (SaveWindowPositions(setup_.paths.IniFile, *setup_.positions, SystemAnsiCodec()) != 0 &&
      !quiet) {
    asker_->Msg("ウィンドウの位置を保存できませんでした。\r\n" + setup_.paths.IniFile +
                    " に書き込めるか確かめてください。",
                kStyleOk | kStyleIconError);
  }
}

void MainWindow::OnClose() {
  // Every other window of the application goes first, then the positions
  // they may have moved are written.
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND wnd, LPARAM self) -> BOOL {
        // Visible ones only: the thread's hidden helper windows are not the
        // application's; the window's own tool tips end with it.
        if (wnd != reinterpret_cast<HWND>(self) && IsWindowVisible(wnd) &&
            GetWindow(wnd, GW_OWNER) != reinterpret_cast<HWND>(self)) {
          SendMessageW(wnd, WM_CLOSE, 0, 0);
        }
        return TRUE;
      },
      reinterpret_cast<LPARAM>(Handle()));
  SavePositions(false);
  Destroy();
}

void MainWindow::OnDestroy() {
  KillTimer(Handle(), kPreviewTimer);
  PostQuitMessage(0);
}

bool MainWindow::OnMessage(UINT msg, WPARAM wp, LPARAM lp, INT_PTR& result) {
  switch (msg) {
    case WM_QUERYENDSESSION:
      // Written already here: a session may end before WM_ENDSESSION arrives.
      SavePositions(true);
      result = TRUE;
      return true;
    case WM_ENDSESSION:
      // The session ends without WM_CLOSE; positions are kept all the same.
      if (wp) SavePositions(true);
      result = 0;
      return true;
    case WM_CTLCOLORSTATIC: {
      HDC dc = reinterpret_cast<HDC>(wp);
      const int id = GetDlgCtrlID(reinterpret_cast<HWND>(lp));
      if (id == IDC_LABEL9_ESTIMATE && estimateWarns_) {
        SetTextColor(dc, RGB(255, 0, 0));
        SetBkMode(dc, TRANSPARENT);
        result = reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_BTNFACE));
        return true;
      }
      if (id == IDC_PICTURE2_INFO) {
        SetBkColor(dc, GetSysColor(COLOR_WINDOW));
        result = reinterpret_cast<INT_PTR>(infoBackground_.get());
        return true;
      }
      return false;
    }
    case WM_DRAWITEM: {
      const auto* item = reinterpret_cast<const DRAWITEMSTRUCT*>(lp);
      if (item->CtlID != IDC_PICTURE1_PREVIEW) return false;
      DrawPreview(*item);
      result = TRUE;
      return true;
    }
  }
  return false;
}

void MainWindow::DrawPreview(const DRAWITEMSTRUCT& item) const {
  if (busy_) return;
  const CaptureSettings s = Settings();
  DrawRegionPreview(item.hDC, item.rcItem, PreviewSource(s));
}

}  // namespace velmora::win
