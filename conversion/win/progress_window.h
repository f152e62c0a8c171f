// ProgressWindow, the conversion progress window: runs a movie-to-AVI conversion
// with its sound merge (ShowConversion) or a re-encoding (ShowReencoding) and shows
// a bar, the percentage, the frame counter and the elapsed and remaining
// time in a strip, the percentage in its title, and a cancel button. The
// texts come from conversion/progress_text.h; this file only draws them.
// While a conversion runs the window has no Close entry and ignores WM_CLOSE.
#pragma once
#include <windows.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "conversion/progress_text.h"
#include "conversion/conversion_listener.h"
#include "engine/win/handles.h"
#include "engine/win/win_clock.h"
#include "ui/win/asker.h"

namespace velmora::win {

class ProgressWindow final : private ConversionListener {
 public:
  static constexpr int kCancelButtonId = 1001;  // the cancel button's control id
  static constexpr int kStripWidth = 336;
  static constexpr int kStripHeight = 16;

  // `position`: top-left corner in screen pixels (the remembered one);
  // without it the window is centred as the default window positions say.
  explicit ProgressWindow(Asker& asker, std::optional<POINT> position = std::nullopt);
  ~ProgressWindow() override;
  ProgressWindow(const ProgressWindow&) = delete;
  ProgressWindow& operator=(const ProgressWindow&) = delete;

  // Converts, merges `waveFile` when it is not empty, and after a cancel asks
  // whether to keep the AVI (No deletes it). Returns Convert's result.
  int32_t ShowConversion(const std::string& qrkFile, const std::string& aviFile,
                         const std::string& waveFile = {},
                         const uint8_t* compressorSettings = nullptr, bool modifyAVI24bit = false);
  // Re-encodes (MovieReencoder) with the titles of a re-encoding; asks nothing.
  int32_t ShowReencoding(const std::string& sourceFile, const std::string& targetFile,
                         int32_t targetBits, int32_t targetType);

  void ShowFrameProgress(int64_t frameIndex, int64_t frameCount, int32_t elapsedMs);
  // Progress of the sound merge (done and total units as the merge reports them).
  void WaveAdd(int32_t done, int32_t total);
  void Command1_Click();

  bool Cancelled() const { return cancelled_; }
  HWND Window() const { return wnd_.get(); }
  POINT Position() const;
  const ProgressView& LastView() const { return view_; }
  // Called after every frame and merge report has been shown (tests drive
  // and read the window from here).
  std::function<void(int64_t frameIndex, int64_t frameCount)> onProgress;

 private:
  void Decoding(int64_t frameIndex, int64_t frameCount, int32_t ms) override {
    ShowFrameProgress(frameIndex, frameCount, ms);
  }
  void Begin(const char* title, bool reencoding);
  void End();
  void DrawStrip();
  void SetTitle(const std::string& utf8);
  void LetMessagesRun();
  static LRESULT CALLBACK Proc(HWND, UINT, WPARAM, LPARAM);
  static LRESULT CALLBACK StripProc(HWND, UINT, WPARAM, LPARAM);

  Asker& asker_;
  WinClock clock_;
  std::function<void()> cancelRun_;  // stops the conversion that runs now
  double startMs_ = 0;
  bool cancelled_ = false;
  bool converting_ = false;
  bool reencoding_ = false;
  ProgressRing ring_;
  ProgressView view_;
  UniqueWindow wnd_;
  HWND strip_ = nullptr;  // Picture2
  HWND command1_ = nullptr;
  // The strip's picture and the bar's image (Picture1), both off screen.
  UniqueMemoryDc stripDc_, barDc_;
  UniqueBitmap stripBitmap_, barBitmap_;
  SelectGuard stripSelection_, barSelection_;
};

}  // namespace velmora::win
