#include "conversion/win/progress_window.h"

#include <cmath>
#include <tuple>

#include "conversion/win/movie_reencoder.h"
#include "conversion/win/movie_to_avi.h"
#include "engine/numbers.h"
#include "engine/win/text_encoding.h"
#include "engine/win/win_idioms.h"
#include "ui/message_style.h"

namespace velmora::win {
namespace {

constexpr wchar_t kClass[] = L"VelmoraProgressWindow";
constexpr wchar_t kStripClass[] = L"VelmoraProgressStrip";
constexpr int kClientWidth = ProgressWindow::kStripWidth + 16;
constexpr int kClientHeight = 64;
constexpr COLORREF kStripBackground = RGB(48, 48, 64);
constexpr const char* kKeepAviQuestion = "キャンセルしました。AVIファイルは残しておきますか？";

// The merge library reports progress to a plain function: it finds the
// window that runs the merge here (one conversion at a time, one thread).
ProgressWindow* g_merging = nullptr;
void __stdcall WaveAddCallback(int32_t done, int32_t total) {
  if (g_merging) g_merging->WaveAdd(done, total);
}

// A blue bar, lighter towards its middle row.
void PaintBar(HDC dc) {
  for (int y = 0; y < ProgressWindow::kStripHeight; ++y) {
    const int light = 255 - std::abs(y - ProgressWindow::kStripHeight / 2) * 14;
    UniqueBrush brush(CreateSolidBrush(RGB(40, light / 2, light)));
    RECT row{0, y, ProgressWindow::kStripWidth, y + 1};
    FillRect(dc, &row, brush.get());
  }
}

}  // namespace

ProgressWindow::ProgressWindow(Asker& asker, std::optional<POINT> position) : asker_(asker) {
  RegisterWindowClass(kClass, &Proc, reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1));
  RegisterWindowClass(kStripClass, &StripProc);
  const DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU;
  RECT outer{0, 0, kClientWidth, kClientHeight};
  AdjustWindowRectEx(&outer, style, FALSE, WS_EX_TOOLWINDOW);
  const int w = outer.right - outer.left, h = outer.bottom - outer.top;
  if (!position) {
    // Centred on the work area's size measured from the screen origin.
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    position = POINT{static_cast<LONG>(RoundHalfEven((work.right - work.left - w) / 2.0)),
                     static_cast<LONG>(RoundHalfEven((work.bottom - work.top - h) / 2.0))};
  }
  HINSTANCE inst = GetModuleHandleW(nullptr);
  wnd_.reset(CreateWindowExW(WS_EX_TOOLWINDOW, kClass, L"", style, position->x, position->y, w, h,
                             nullptr, nullptr, inst, nullptr));
  SetWindowLongPtrW(wnd_.get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  strip_ = CreateWindowExW(0, kStripClass, L"", WS_CHILD | WS_VISIBLE | WS_BORDER, 8, 8,
                           kStripWidth, kStripHeight, wnd_.get(), nullptr, inst, nullptr);
  SetWindowLongPtrW(strip_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  command1_ = CreateWindowExW(0, L"BUTTON", L"キャンセル", WS_CHILD | WS_VISIBLE | BS_PUSHBUTTON,
                              kClientWidth - 96, 32, 88, 24, wnd_.get(),
                              reinterpret_cast<HMENU>(static_cast<INT_PTR>(kCancelButtonId)), inst,
                              nullptr);
  SendMessageW(command1_, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)),
               0);

  WindowDc screen = WindowDc::Get(nullptr);
  stripDc_.reset(CreateCompatibleDC(screen.get()));
  stripBitmap_.reset(CreateCompatibleBitmap(screen.get(), kStripWidth, kStripHeight));
  stripSelection_ = SelectGuard(stripDc_.get(), stripBitmap_.get());
  barDc_.reset(CreateCompatibleDC(screen.get()));
  barBitmap_.reset(CreateCompatibleBitmap(screen.get(), kStripWidth, kStripHeight));
  barSelection_ = SelectGuard(barDc_.get(), barBitmap_.get());
  PaintBar(barDc_.get());
  DrawStrip();
}

ProgressWindow::~ProgressWindow() {
  if (g_merging == this) g_merging = nullptr;
  wnd_.reset();  // the window goes before the pictures its strip draws from
}

POINT ProgressWindow::Position() const {
  RECT r{};
  GetWindowRect(wnd_.get(), &r);
  return POINT{r.left, r.top};
}

void ProgressWindow::SetTitle(const std::string& utf8) {
  SetWindowTextW(wnd_.get(), Widen(utf8).c_str());
}

void ProgressWindow::LetMessagesRun() {
  clock_.PumpMessages();
  clock_.SleepMs(1);
}

void ProgressWindow::Begin(const char* title, bool reencoding) {
  // No Close entry while converting: the conversion must end by itself or by cancel.
  DeleteMenu(GetSystemMenu(wnd_.get(), FALSE), SC_CLOSE, MF_BYCOMMAND);
  converting_ = true;
  reencoding_ = reencoding;
  cancelled_ = false;
  ring_.Clear();
  view_ = ProgressView{};
  DrawStrip();
  ShowWindow(wnd_.get(), SW_SHOWNOACTIVATE);
  startMs_ = clock_.NowMs();
  EnableWindow(command1_, TRUE);
  SetTitle(title);
  LetMessagesRun();
}

void ProgressWindow::End() {
  converting_ = false;
  cancelRun_ = nullptr;
  GetSystemMenu(wnd_.get(), TRUE);  // the menu as it was
  ShowWindow(wnd_.get(), SW_HIDE);
}

int32_t ProgressWindow::ShowConversion(const std::string& qrkFile, const std::string& aviFile,
                                       const std::string& waveFile,
                                       const uint8_t* compressorSettings, bool modifyAVI24bit) {
  // Every report sleeps 1 ms to let the cancel button work; at the default
  // timer resolution that sleep would last a whole scheduler tick.
  TimerResolutionScope timerResolution;
  MovieToAvi conversion(this);
  cancelRun_ = [&conversion] { conversion.Cancel(); };
  Begin(kWritingAviTitle, false);
  const int32_t rc = conversion.Convert(qrkFile, aviFile, compressorSettings, modifyAVI24bit);
  if (!waveFile.empty()) {
    startMs_ = std::round(clock_.NowMs());
    g_merging = this;
    conversion.MergeWave(waveFile, aviFile, reinterpret_cast<intptr_t>(&WaveAddCallback));
    g_merging = nullptr;
  }
  if (cancelled_ && asker_.Msg(kKeepAviQuestion, kStyleYesNo + kStyleIconQuestion) == kAnswerNo) {
    ForceDelete(aviFile);
  }
  End();
  return rc;
}

int32_t ProgressWindow::ShowReencoding(const std::string& sourceFile, const std::string& targetFile,
                                       int32_t targetBits, int32_t targetType) {
  TimerResolutionScope timerResolution;  // as in ShowConversion
  MovieReencoder reencoder(this);
  cancelRun_ = [&reencoder] { reencoder.Cancel(); };
  Begin(kWritingQrkTitle, true);
  const int32_t rc = reencoder.Reencode(sourceFile, targetFile, targetBits, targetType);
  End();
  return rc;
}

void ProgressWindow::Command1_Click() {
  if (cancelRun_) cancelRun_();
  cancelled_ = true;
}

void ProgressWindow::ShowFrameProgress(int64_t frameIndex, int64_t frameCount, int32_t elapsedMs) {
  view_ = BuildProgressView(frameIndex, frameCount, elapsedMs, kStripWidth, reencoding_, ring_);
  DrawStrip();
  SetTitle(view_.title);
  LetMessagesRun();
  if (onProgress) onProgress(frameIndex, frameCount);
}

void ProgressWindow::WaveAdd(int32_t done, int32_t total) {
  SetTitle(WaveAddTitle(done, total, clock_.NowMs() - startMs_));
  LetMessagesRun();
  if (onProgress) onProgress(done, total);
}

void ProgressWindow::DrawStrip() {
  HDC dc = stripDc_.get();
  UniqueBrush background(CreateSolidBrush(kStripBackground));
  RECT all{0, 0, kStripWidth, kStripHeight};
  FillRect(dc, &all, background.get());
  BitBlt(dc, 0, 0, view_.barWidth, kStripHeight, barDc_.get(), 0, 0, SRCCOPY);
  SelectGuard font(dc, GetStockObject(DEFAULT_GUI_FONT));
  SetBkMode(dc, TRANSPARENT);
  const std::string* texts[] = {&view_.strip.percent, &view_.strip.counter, &view_.strip.total,
                                &view_.strip.rest};
  constexpr int kX[] = {9, 54, 184, 264};
  // Black one pixel right and down, then white: a shadow that reads on any bar.
  for (const auto& [colour, dx, y] :
       {std::tuple{RGB(0, 0, 0), 0, 1}, std::tuple{RGB(255, 255, 255), -2, -1}}) {
    SetTextColor(dc, colour);
    for (int k = 0; k < 4; ++k) {
      const std::wstring text = Widen(*texts[k]);
      TextOutW(dc, kX[k] + dx, y, text.c_str(), static_cast<int>(text.size()));
    }
  }
  if (strip_) {
    InvalidateRect(strip_, nullptr, FALSE);
    UpdateWindow(strip_);
  }
}

LRESULT CALLBACK ProgressWindow::Proc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  auto* self = reinterpret_cast<ProgressWindow*>(GetWindowLongPtrW(wnd, GWLP_USERDATA));
  if (self) {
    if (msg == WM_COMMAND && LOWORD(wp) == kCancelButtonId) {
      self->Command1_Click();
      return 0;
    }
    if (msg == WM_CLOSE && self->converting_) return 0;
    if (msg == WM_CLOSE) {
      ShowWindow(wnd, SW_HIDE);
      return 0;
    }
  }
  return DefWindowProcW(wnd, msg, wp, lp);
}

LRESULT CALLBACK ProgressWindow::StripProc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  auto* self = reinterpret_cast<ProgressWindow*>(GetWindowLongPtrW(wnd, GWLP_USERDATA));
  if (msg == WM_PAINT && self) {
    const PaintDc paint(wnd);
    HDC dc = paint.get();
    BitBlt(dc, 0, 0, kStripWidth, kStripHeight, self->stripDc_.get(), 0, 0, SRCCOPY);
    return 0;
  }
  return DefWindowProcW(wnd, msg, wp, lp);
}

}  // namespace velmora::win
