#include "app/win/capture_frame_window.h"

#include <windowsx.h>

#include "app/capture_frame_texts.h"
#include "app/win/main_window_ids.h"
#include "engine/win/handles.h"
#include "engine/win/text_encoding.h"
#include "ui/message_style.h"
#include "ui/win/message_box.h"

namespace velmora::win {
namespace {

constexpr wchar_t kPictureClass[] = L"VelmoraStatisticsText";
constexpr LONG_PTR kCaptionBits = 0x00C00000;  // WS_CAPTION: the title bar and the border
constexpr int kStopHotkeyId = 1;
constexpr int kEscapeHotkeyId = 2;  // only while the panel is being moved
constexpr int32_t kStyleIconExclamation = 48;
constexpr COLORREF kPictureBackground = RGB(16, 24, 48);
constexpr COLORREF kPictureInk = RGB(240, 240, 240);
// The texts' cells: rows 8 pixels apart and columns 100 apart, the first
// row starting 2 pixels above the picture so the glyphs sit at its top.
constexpr int kTextCellHeight = 10;
constexpr int kColumnWidth = 100;

struct PictureText {
  int id, x, y, width;
};
constexpr PictureText kPictureTexts[] = {
    {IDC_FORM1_MESSAGE, 0, 0, 3 * kColumnWidth},
    {IDC_FORM1_FRAME, 0, -2, kColumnWidth},
    {IDC_FORM1_DROP, kColumnWidth, -2, kColumnWidth},
    {IDC_FORM1_DROP_RATE, 2 * kColumnWidth, -2, kColumnWidth},
    {IDC_FORM1_TIME, 0, 6, kColumnWidth},
    {IDC_FORM1_CAPTURE, kColumnWidth, 6, kColumnWidth},
    {IDC_FORM1_CAPTURE_AVE, 2 * kColumnWidth, 6, kColumnWidth},
};

// A taken hotkey is told once per session, not before every run.
bool g_hotkeyFailureShown = false;

void DrawPictureTexts(HWND picture, HDC dc) {
  RECT all{};
  GetClientRect(picture, &all);
  UniqueBrush background(CreateSolidBrush(kPictureBackground));
  FillRect(dc, &all, background.get());
  SelectGuard font(dc, reinterpret_cast<HGDIOBJ>(GetWindowLongPtrW(picture, GWLP_USERDATA)));
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, kPictureInk);
  for (HWND child = GetWindow(picture, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    wchar_t text[128] = {};
    const int length = GetWindowTextW(child, text, 128);
    RECT at{};
    GetWindowRect(child, &at);
    MapWindowPoints(nullptr, picture, reinterpret_cast<POINT*>(&at), 2);
    if (length > 0) TextOutW(dc, at.left, at.top, text, length);
  }
}

// Picture1 and its children, one class: the children only hold the texts,
// so that what the user reads is a window text, and Picture1 draws them all
// (the rows overlap). Both let the mouse through to the panel. Picture1's
// font is kept in its user data, not set with WM_SETFONT: the texts stand
// at fixed pixels, so the dialog's font, rescaled for another monitor, must
// not replace it.
LRESULT CALLBACK PictureProc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  switch (msg) {
    case WM_NCHITTEST:
      return HTTRANSPARENT;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT: {
      const PaintDc paint(wnd);
      HDC dc = paint.get();
      if (GetDlgCtrlID(wnd) == IDC_FORM1_PICTURE1) DrawPictureTexts(wnd, dc);
      return 0;
    }
  }
  return DefWindowProcW(wnd, msg, wp, lp);
}

void RegisterClasses(HINSTANCE instance) {
  static bool registered = false;
  if (registered) return;
  WNDCLASSEXW wc{sizeof wc};
  wc.style = CS_GLOBALCLASS;
  wc.hInstance = instance;
  wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  wc.lpfnWndProc = PictureProc;
  wc.lpszClassName = kPictureClass;
  RegisterClassExW(&wc);
  registered = true;
}

int CALLBACK NoteFontFound(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM found) {
  *reinterpret_cast<bool*>(found) = true;
  return 0;
}

// "Comic Sans MS" where the system has it, else the face of the system's
// message font, which can show the texts on any machine.
UniqueFont MakePictureFont() {
  LOGFONTW font{};
  font.lfHeight = kTextCellHeight;
  font.lfCharSet = DEFAULT_CHARSET;
  font.lfQuality = CLEARTYPE_QUALITY;
  wcscpy_s(font.lfFaceName, L"Comic Sans MS");
  bool found = false;
  WindowDc screen = WindowDc::Get(nullptr);
  EnumFontFamiliesExW(screen.get(), &font, NoteFontFound, reinterpret_cast<LPARAM>(&found), 0);
  if (!found) {
    NONCLIENTMETRICSW metrics{sizeof metrics};
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    wcscpy_s(font.lfFaceName, metrics.lfMessageFont.lfFaceName);
  }
  return UniqueFont(CreateFontIndirectW(&font));
}

}  // namespace

CaptureFrameWindow::CaptureFrameWindow(HINSTANCE instance, WindowPositions& positions, Asker* asker)
    : positions_(positions), asker_(asker) {
  RegisterClasses(instance);
  Create(instance, IDD_FORM1_CAPTURE, nullptr);
}

CaptureFrameWindow::~CaptureFrameWindow() {
  if (running_) RunEnded();
  Destroy();  // before the font that Picture1 draws with goes
}

bool CaptureFrameWindow::OnInit() {
  HideTitle();
  HWND picture = Item(IDC_FORM1_PICTURE1);
  pictureFont_ = MakePictureFont();
  SetWindowLongPtrW(picture, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(pictureFont_.get()));
  for (const PictureText& t : kPictureTexts) {
    CreateWindowExW(0, kPictureClass, L"", WS_CHILD | WS_VISIBLE, t.x, t.y, t.width,
                    kTextCellHeight, picture, reinterpret_cast<HMENU>(static_cast<INT_PTR>(t.id)),
                    Instance(), nullptr);
  }
  if (tips_.Init(Handle())) {
    tips_.MakeToolTip(Item(IDC_FORM1_COMMAND1_CANCEL), kCancelTip);
    tips_.MakeToolTip(Item(IDC_FORM1_COMMAND1_MOVE), kMoveTip);
  }
  return true;  // no focus: the window is never shown activated
}

void CaptureFrameWindow::HideTitle() {
  RECT client{};
  GetClientRect(Handle(), &client);
  const LONG_PTR style = GetWindowLongPtrW(Handle(), GWL_STYLE) & ~kCaptionBits;
  SetWindowLongPtrW(Handle(), GWL_STYLE, style);
  // Same client area as before: the window shrinks by its title bar.
  AdjustWindowRectEx(&client, static_cast<DWORD>(style), FALSE,
                     static_cast<DWORD>(GetWindowLongPtrW(Handle(), GWL_EXSTYLE)));
  SetWindowPos(Handle(), nullptr, 0, 0, client.right - client.left, client.bottom - client.top,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

WindowSize CaptureFrameWindow::Size() const {
  RECT r{};
  GetWindowRect(Handle(), &r);
  return {r.right - r.left, r.bottom - r.top};
}

void CaptureFrameWindow::MoveMe() {
  RECT work{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
  const ScreenPoint at = ClampIntoWorkArea({positions_.CaptureWindowX, positions_.CaptureWindowY},
                                           Size(), {work.left, work.top, work.right, work.bottom});
  SetWindowPos(Handle(), nullptr, at.x, at.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void CaptureFrameWindow::SaveMe() {
  RECT r{};
  GetWindowRect(Handle(), &r);
  positions_.CaptureWindowX = r.left;
  positions_.CaptureWindowY = r.top;
}

void CaptureFrameWindow::RunStarting(const RecordingJob& job) {
  stats_.emplace(job.fps, job.seconds);
  cancelled_ = false;
  loggingOff_ = false;
  running_ = true;
  grabStartMs_ = clock_.NowMs();
  ShowTexts({});
  band_.Show(job.left, job.top, job.width, job.height);
  RegisterStopHotkey();
  MoveMe();
  ShowWindow(Handle(), SW_SHOWNOACTIVATE);
  clock_.PumpMessages();
  clock_.SleepMs(1);
  SetPictureText(IDC_FORM1_MESSAGE, kWaitForInitializeText);
  UpdateWindow(Handle());
}

void CaptureFrameWindow::GrabbingBegins() { grabStartMs_ = clock_.NowMs(); }

void CaptureFrameWindow::FrameRecorded(int32_t frameNumber, double captureMs, int32_t dropCount,
                                       bool isDrop) {
  if (!stats_) return;
  const auto texts =
      stats_->Add(frameNumber, captureMs, dropCount, isDrop, clock_.NowMs() - grabStartMs_);
  if (!texts) return;
  ShowTexts(*texts);
  // A click on the cancel button is taken here.
  clock_.PumpMessages();
}

void CaptureFrameWindow::RegionMoved(int32_t left, int32_t top) { band_.MoveTo(left, top); }

void CaptureFrameWindow::ShowTexts(const PanelTexts& texts) {
  const std::pair<int, const std::string*> shown[] = {{IDC_FORM1_FRAME, &texts.frame},
                                                      {IDC_FORM1_DROP, &texts.drop},
                                                      {IDC_FORM1_DROP_RATE, &texts.dropRate},
                                                      {IDC_FORM1_CAPTURE, &texts.capture},
                                                      {IDC_FORM1_CAPTURE_AVE, &texts.captureAve},
                                                      {IDC_FORM1_TIME, &texts.time}};
  HWND picture = Item(IDC_FORM1_PICTURE1);
  SetWindowTextW(GetDlgItem(picture, IDC_FORM1_MESSAGE), L"");
  for (const auto& [id, text] : shown)
    SetWindowTextW(GetDlgItem(picture, id), Widen(*text).c_str());
  InvalidateRect(picture, nullptr, FALSE);
  UpdateWindow(picture);
}

void CaptureFrameWindow::SetPictureText(int id, const std::string& utf8) {
  HWND picture = Item(IDC_FORM1_PICTURE1);
  SetWindowTextW(GetDlgItem(picture, id), Widen(utf8).c_str());
  InvalidateRect(picture, nullptr, FALSE);
  UpdateWindow(picture);
}

void CaptureFrameWindow::Command1_Click(int index) {
  if (index == 0) {
    cancelled_ = true;
    return;
  }
  if (moving_) return;
  RECT r{};
  GetWindowRect(Handle(), &r);
  movingFrom_ = {r.left, r.top};
  moving_ = true;
  // The next click anywhere comes here; Esc is taken from everyone for as
  // long as that lasts, since the panel need not have the keyboard.
  SetCapture(Handle());
  RegisterHotKey(Handle(), kEscapeHotkeyId, MOD_NOREPEAT, VK_ESCAPE);
  Enable(IDC_FORM1_COMMAND1_CANCEL, false);
}

void CaptureFrameWindow::EndMoving() {
  if (!moving_) return;
  moving_ = false;  // first: releasing the capture comes back here
  UnregisterHotKey(Handle(), kEscapeHotkeyId);
  if (GetCapture() == Handle()) ReleaseCapture();
  Enable(IDC_FORM1_COMMAND1_CANCEL, true);
}

bool CaptureFrameWindow::OnCommand(int id, int code, HWND) {
  if (code != BN_CLICKED) return false;
  if (id == IDC_FORM1_COMMAND1_CANCEL)
    Command1_Click(0);
  else if (id == IDC_FORM1_COMMAND1_MOVE)
    Command1_Click(1);
  else
    return false;
  return true;
}

bool CaptureFrameWindow::OnMessage(UINT msg, WPARAM wp, LPARAM lp, INT_PTR& result) {
  switch (msg) {
    case WM_HOTKEY:
      if (wp == kStopHotkeyId) Command1_Click(0);
      if (wp == kEscapeHotkeyId) EndMoving();
      return true;
    case WM_LBUTTONDOWN:
      if (!moving_) return false;
      // The click's position relative to the panel moves it there; the
      // panel has no border, so its corner lands on the click.
      SetWindowPos(Handle(), nullptr, movingFrom_.x + GET_X_LPARAM(lp),
                   movingFrom_.y + GET_Y_LPARAM(lp), 0, 0,
                   SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
      EndMoving();
      return true;
    case WM_RBUTTONDOWN:
      if (!moving_) return false;
      EndMoving();
      return true;
    case WM_CAPTURECHANGED:
      if (moving_ && reinterpret_cast<HWND>(lp) != Handle()) EndMoving();
      return false;
    case WM_QUERYENDSESSION:
      if (!running_) return false;
      // The recording stops at its next whole second and keeps its files;
      // the log-off waits for that, with the reason shown to the user.
      cancelled_ = true;
      loggingOff_ = true;
      ShutdownBlockReasonCreate(Handle(), L"録画を保存しています。");
      result = FALSE;
      return true;
    case WM_ENDSESSION:
      if (running_ && wp) {
        cancelled_ = true;
        loggingOff_ = true;
      }
      return false;
  }
  return false;
}

void CaptureFrameWindow::RegisterStopHotkey() {
  stopHotkey_ =
      RegisterHotKey(Handle(), kStopHotkeyId, MOD_CONTROL | MOD_SHIFT | MOD_NOREPEAT, VK_F9) != 0;
  if (stopHotkey_ || g_hotkeyFailureShown) return;
  g_hotkeyFailureShown = true;
  Ask(kHotkeyTakenText, kStyleOk | kStyleIconExclamation);
}

void CaptureFrameWindow::ComeForward() {
  // The panel was shown without taking the focus; a question must not hide
  // behind the window the user was recording.
  SetForegroundWindow(Handle());
}

int32_t CaptureFrameWindow::Ask(const std::string& utf8Text, int32_t style) {
  if (asker_) return asker_->Msg(utf8Text, style);
  ComeForward();
  return MsgBoxEx::Show(utf8Text, Handle(), style);
}

bool CaptureFrameWindow::ContinueAfterCancel() {
  if (loggingOff_) return true;  // nobody is there to answer: keep what was recorded
  return Ask(kCancelledQuestion, kStyleYesNo | kStyleIconQuestion) == kAnswerYes;
}

void CaptureFrameWindow::ShowError(const std::string& utf8Text) {
  Ask(utf8Text, kStyleOk | kStyleIconError);
}

void CaptureFrameWindow::ShowRecorderMessage(const std::string& utf8Text) {
  if (asker_) {
    asker_->Msg(utf8Text, kStyleOk | kStyleIconExclamation);
    return;
  }
  ComeForward();
  MessageBoxW(Handle(), Widen(utf8Text).c_str(), Widen(kApplicationTitle).c_str(),
              MB_OK | MB_ICONEXCLAMATION | MB_SETFOREGROUND);
}

void CaptureFrameWindow::RunEnded() {
  EndMoving();
  SaveMe();
  if (stopHotkey_) UnregisterHotKey(Handle(), kStopHotkeyId);
  stopHotkey_ = false;
  if (loggingOff_) ShutdownBlockReasonDestroy(Handle());
  band_.Hide();
  ShowWindow(Handle(), SW_HIDE);
  running_ = false;
}

WindowSize CaptureFrameWindowSize(HINSTANCE instance) {
  WindowPositions unused;
  CaptureFrameWindow window(instance, unused);
  if (!window.Window()) return {0, 0};
  return window.Size();
}

}  // namespace velmora::win
