// The Capture class end to end under Wine: records the painted test window
// into a real file, reads it back and plays it.
#include "engine/win/capture.h"

#include <gtest/gtest.h>

#include <array>

#include "engine/result_codes.h"
#include "engine/win/handles.h"
#include "tests/files.h"
#include "tests/movie_bytes.h"
#include "tests/temp_dir.h"
#include "tests/win/launch.h"
#include "tests/win/pattern_window.h"

namespace velmora {
namespace {

using test::ExpectedFrame;
using test::FirstDifferentPixel;
using test::PatternWindow;

constexpr int32_t kLeft = 800, kTop = 60, kW = 48, kH = 32, kFps = 5, kSec = 2;

// Paints pattern i + 1 after slot i, so frame i of the movie shows pattern i
// unless it was dropped (then it repeats the frame before).
struct PatternAdvancer final : CaptureListener {
  PatternWindow* window = nullptr;
  std::vector<bool> dropped;
  int32_t cancelAfter = -1;
  void CP_Capture(int32_t nowFrame, double, int32_t, bool isDrop, int32_t, int32_t, int32_t&,
                  int32_t&, bool& isCancel) override {
    dropped.push_back(isDrop);
    window->Show(nowFrame + 1);
    isCancel = nowFrame + 1 == cancelAfter;
  }
};

struct CaptureFixture : ::testing::Test {
  test::TempDir dir;
  PatternWindow window{kLeft, kTop, kW, kH};
  PatternAdvancer advancer;
  CaptureFixture() { advancer.window = &window; }
};

// Collects decode-only frames.
struct Collector final : PlaybackListener {
  std::vector<std::vector<uint8_t>> frames;
  void CP_Decode(uint8_t* data, int64_t bytes, int64_t, int64_t) override {
    frames.emplace_back(data, data + bytes);
  }
};

// A recording cancelled after one second under a relative name, which goes
// to the program's folder whatever the current directory; the header fix
// after the cancel and playback must find that same file. Type0 frames come
// back through playback as bottom-up rows, so a grabber other than the
// session's method would show; Rec's asynchronous flag writes through the
// mapped writer. A Capture that was never set up refuses to record.
TEST_F(CaptureFixture, CancelledRecordingUnderARelativeNameIsFixedAndPlaysThePaintedFrames) {
  const std::string name = "relative-name-test.QRK";
  const std::wstring beside = test::BesideThisProgram(L"relative-name-test.QRK");
  wchar_t previous[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, previous);
  ASSERT_TRUE(SetCurrentDirectoryW(test::TempDir::Fs(dir.Path("")).c_str()));
  window.Show(0);
  win::Capture capture(&advancer);
  EXPECT_EQ(capture.BitCount(), 32);
  capture.Init(kLeft, kTop, kW, kH);
  capture.Init_Capture(kFps, kSec, 0, 0, 1, 1, false);
  advancer.cancelAfter = kFps;
  const int32_t rc = capture.Rec(name, 0, false, nullptr, 0, true);
  EXPECT_EQ(rc, MakeResultCode(kErrCancelled, kFps));
  EXPECT_EQ(capture.GetError(rc), L"キャプチャーがユーザーの操作によりキャンセルされました。");
  std::array<int32_t, 6> got{};
  EXPECT_EQ(capture.GetQRXFileData(name, &got[0], &got[1], &got[2], &got[3], &got[4], &got[5]), 0);
  EXPECT_EQ(got, (std::array<int32_t, 6>{kW, kH, 32, kFps, kSec, 0}));
  capture.SetQRXFileData(name, 0, 0, 0, 0, 1);  // what the recording run does after a cancel
  EXPECT_EQ(capture.GetQRXFileData(name, &got[0], &got[1], &got[2], &got[3], &got[4], &got[5]), 0);
  EXPECT_EQ(got, (std::array<int32_t, 6>{kW, kH, 32, kFps, 1, 0}));
  Collector collector;
  capture.SetPlaybackListener(&collector);
  EXPECT_EQ(capture.Play(name, nullptr, nullptr, 0, 0, true), 0) << "all fps x sec frames read";
  SetCurrentDirectoryW(previous);
  EXPECT_TRUE(DeleteFileW(beside.c_str()));
  const auto& frames = collector.frames;
  ASSERT_EQ(frames.size(), static_cast<size_t>(kFps));
  for (size_t i = 0; i < frames.size(); ++i) {
    if (advancer.dropped[i]) {
      EXPECT_EQ(frames[i], frames[i - 1]) << "dropped frame " << i;
      continue;
    }
    const auto want = ExpectedFrame(kW, kH, static_cast<int32_t>(i), true);
    EXPECT_EQ(FirstDifferentPixel(frames[i].data(), want.data(), kW * kH), -1) << "frame " << i;
  }

  win::Capture unset;
  EXPECT_EQ(ResultNumber(unset.Rec1(dir.Path("none.QRK"))), kErrNotInitialised);
  EXPECT_EQ(unset.GetError(MakeResultCode(kErrApi, 2)).rfind(L"APIErr:", 0), 0u);
  EXPECT_GT(unset.GetError(MakeResultCode(kErrApi, 2)).size(), 8u) << "the system's text follows";
}

// Type1 rows are drawn top-down, 24-bit ones padded to whole units on the way
// (5 pixels make 15-byte rows); a refused movie leaves the caller's bitmap
// alive (the refusal codes themselves are the reader's), an accepted one is
// playback's to delete.
TEST(CapturePlayback, DrawsEveryDepthAndDeletesOnlyAnAcceptedMoviesBitmap) {
  test::TempDir dir;
  win::Capture capture;
  win::WindowDc screen = win::WindowDc::Get(nullptr);
  constexpr int32_t w = 5, h = 4;
  for (const int32_t depth : {24, 32}) {
    const size_t pixel = size_t(depth) / 8;
    std::vector<uint8_t> frame(w * h * pixel), want(w * h * 4);
    for (size_t i = 0; i < frame.size(); ++i) frame[i] = static_cast<uint8_t>(17 + 7 * i);
    for (size_t y = 0; y < h; ++y) {  // the movie's bottom row is drawn last
      for (size_t x = 0; x < w; ++x)
        std::copy_n(&frame[((h - 1 - y) * w + x) * pixel], 3, &want[(y * w + x) * 4]);
    }
    const std::string path = dir.Path("odd" + std::to_string(depth) + ".QRK");
    test::WriteFile(path, test::EncodeMovie({1, depth, w, h, 1, 1}, {frame}));
    win::UniqueMemoryDc memory{CreateCompatibleDC(screen.get())};
    BITMAPINFO bi{};
    bi.bmiHeader = {sizeof(BITMAPINFOHEADER), w, -h, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    win::UniqueBitmap section(
        CreateDIBSection(screen.get(), &bi, DIB_RGB_COLORS, &bits, nullptr, 0));
    win::SelectGuard selected(memory.get(), section.get());
    EXPECT_EQ(capture.Play(path, memory.get(), nullptr, 0, 0, false), 0);
    GdiFlush();
    EXPECT_EQ(FirstDifferentPixel(static_cast<const uint8_t*>(bits), want.data(), w * h), -1)
        << depth;
  }

  HBITMAP offered = CreateCompatibleBitmap(screen.get(), kW, kH);
  test::WriteFile(dir.Path("magic.QRK"), {'Q', 'R', 'X', 'G'});
  EXPECT_EQ(capture.Play(dir.Path("magic.QRK"), nullptr, offered, 0, 0, false), kErrBrokenFile);
  EXPECT_EQ(GetObjectType(offered), static_cast<DWORD>(OBJ_BITMAP));
  ASSERT_EQ(capture.Play(dir.Path("odd32.QRK"), nullptr, offered, 0, 0, false), 0);
  EXPECT_EQ(GetObjectType(offered), 0u);
}

}  // namespace
}  // namespace velmora
