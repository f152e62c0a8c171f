// The Capture class end to end under Wine: records the painted test window
// with each method into a real file, reads it back and plays it.
#include "engine/win/capture.h"

#include <gtest/gtest.h>

#include <array>

#include "engine/movie_reader.h"
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

std::vector<std::vector<uint8_t>> ReadFrames(const std::string& path, MovieHeader* header) {
  MovieReader reader;
  EXPECT_EQ(reader.OpenFile(path), 0);
  *header = reader.Header();
  std::vector<std::vector<uint8_t>> frames;
  int32_t rc = 0;
  while ((rc = reader.Next()) == 0)
    frames.emplace_back(reader.Current(), reader.Current() + reader.FrameSize());
  EXPECT_EQ(rc, 1) << "reading stopped after " << frames.size() << " frames";
  return frames;
}

struct CaptureFixture : ::testing::Test {
  test::TempDir dir;
  PatternWindow window{kLeft, kTop, kW, kH};
  PatternAdvancer advancer;
  CaptureFixture() { advancer.window = &window; }
};

TEST_F(CaptureFixture, EachMethodRecordsExactlyThePaintedFrames) {
  for (int32_t method = 0; method <= 2; ++method) {
    SCOPED_TRACE(method);
    window.Show(0);
    advancer.dropped.clear();
    win::Capture capture(&advancer);
    EXPECT_EQ(capture.BitCount(), 32);
    capture.Init(kLeft, kTop, kW, kH);
    capture.Init_Capture(kFps, kSec, method, 0, 1, 1, false);
    const std::string path = dir.Path("録画" + std::to_string(method) + ".QRK");
    ASSERT_EQ(capture.Rec(path, 0, false, nullptr, 0, method == 2), 0);
    MovieHeader h{};
    const auto frames = ReadFrames(path, &h);
    EXPECT_EQ(h, (MovieHeader{method, 32, kW, kH, kFps, kSec}));
    ASSERT_EQ(frames.size(), static_cast<size_t>(kFps * kSec));
    for (size_t i = 0; i < frames.size(); ++i) {
      if (advancer.dropped[i]) {
        EXPECT_EQ(frames[i], frames[i - 1]) << "dropped frame " << i;
        continue;
      }
      const auto want = ExpectedFrame(kW, kH, static_cast<int32_t>(i), method != 0);
      EXPECT_EQ(FirstDifferentPixel(frames[i].data(), want.data(), kW * kH), -1) << "frame " << i;
    }
  }
}

// Rec1 puts a relative name in the program's folder, whatever the current
// directory; the header fix after a cancel and playback must find that same
// file. A Capture that was never set up refuses to record.
TEST_F(CaptureFixture, CancelledRecordingUnderARelativeNameIsFixedAndPlayed) {
  const std::string name = "relative-name-test.QRK";
  const std::wstring beside = test::BesideThisProgram(L"relative-name-test.QRK");
  wchar_t previous[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, previous);
  ASSERT_TRUE(SetCurrentDirectoryW(test::TempDir::Fs(dir.Path("")).c_str()));
  win::Capture capture(&advancer);
  capture.Init(kLeft, kTop, kW, kH);
  capture.Init_Capture(kFps, kSec, 1);
  advancer.cancelAfter = kFps;
  const int32_t rc = capture.Rec1(name);
  EXPECT_EQ(rc, MakeResultCode(kErrCancelled, kFps));
  EXPECT_EQ(capture.GetError(rc), L"キャプチャーがユーザーの操作によりキャンセルされました。");
  capture.SetQRXFileData(name, 0, 0, 0, 0, 1);  // what the recording run does after a cancel
  std::array<int32_t, 6> got{};
  EXPECT_EQ(capture.GetQRXFileData(name, &got[0], &got[1], &got[2], &got[3], &got[4], &got[5]), 0);
  EXPECT_EQ(got, (std::array<int32_t, 6>{kW, kH, 32, kFps, 1, 1}));
  EXPECT_EQ(capture.Play(name, nullptr, nullptr, 0, 0, true), 0) << "all fps x sec frames read";
  SetCurrentDirectoryW(previous);
  EXPECT_TRUE(DeleteFileW(beside.c_str()));

  win::Capture unset;
  EXPECT_EQ(ResultNumber(unset.Rec1(dir.Path("none.QRK"))), kErrNotInitialised);
  EXPECT_EQ(unset.GetError(MakeResultCode(kErrApi, 2)).rfind(L"APIErr:", 0), 0u);
  EXPECT_GT(unset.GetError(MakeResultCode(kErrApi, 2)).size(), 8u) << "the system's text follows";
}

// Collects decode-only frames.
struct Collector final : PlaybackListener {
  std::vector<std::vector<uint8_t>> frames;
  void CP_Decode(uint8_t* data, int64_t bytes, int64_t, int64_t) override {
    frames.emplace_back(data, data + bytes);
  }
};

// Draws a one-frame Type1 movie into a top-down 32-bit section.
std::vector<uint8_t> Drawn(const std::string& path, int32_t w, int32_t h) {
  win::WindowDc screen = win::WindowDc::Get(nullptr);
  win::UniqueMemoryDc memory{CreateCompatibleDC(screen.get())};
  BITMAPINFO bi{};
  bi.bmiHeader = {sizeof(BITMAPINFOHEADER), w, -h, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  win::UniqueBitmap bitmap(CreateDIBSection(screen.get(), &bi, DIB_RGB_COLORS, &bits, nullptr, 0));
  win::SelectGuard selected(memory.get(), bitmap.get());
  EXPECT_EQ(win::Capture().Play(path, memory.get(), nullptr, 0, 0, false), 0);
  GdiFlush();
  const auto* p = static_cast<const uint8_t*>(bits);
  return std::vector<uint8_t>(p, p + size_t(w) * size_t(h) * 4);
}

// Type0 device rows come out of decode-only playback bottom-up; Type1 rows
// are drawn top-down, 24-bit ones padded to whole units on the way (5 pixels
// make 15-byte rows); a refused movie leaves the caller's bitmap alive, an
// accepted one is playback's to delete.
TEST(CapturePlayback, HandsOnDeviceIndependentRowsAndDrawsEveryDepth) {
  test::TempDir dir;
  std::vector<std::vector<uint8_t>> deviceRows;
  for (int32_t i = 0; i < kFps; ++i) deviceRows.push_back(ExpectedFrame(kW, kH, i, false));
  const std::string type0 = dir.Path("type0.QRK");
  test::WriteFile(type0, test::EncodeMovie({0, 32, kW, kH, kFps, 1}, deviceRows));
  win::Capture capture;
  Collector collector;
  capture.SetPlaybackListener(&collector);
  ASSERT_EQ(capture.Play(type0, nullptr, nullptr, 0, 0, true), 0);
  ASSERT_EQ(collector.frames.size(), static_cast<size_t>(kFps));
  for (int32_t i = 0; i < kFps; ++i) {
    const auto want = ExpectedFrame(kW, kH, i, true);
    EXPECT_EQ(FirstDifferentPixel(collector.frames[size_t(i)].data(), want.data(), kW * kH), -1);
  }

  constexpr int32_t w = 5, h = 4;
  for (const int32_t bits : {24, 32}) {
    const size_t pixel = size_t(bits) / 8;
    std::vector<uint8_t> frame(w * h * pixel), want(w * h * 4);
    for (size_t i = 0; i < frame.size(); ++i) frame[i] = static_cast<uint8_t>(17 + 7 * i);
    for (size_t y = 0; y < h; ++y) {  // the movie's bottom row is drawn last
      for (size_t x = 0; x < w; ++x)
        std::copy_n(&frame[((h - 1 - y) * w + x) * pixel], 3, &want[(y * w + x) * 4]);
    }
    const std::string path = dir.Path("odd" + std::to_string(bits) + ".QRK");
    test::WriteFile(path, test::EncodeMovie({1, bits, w, h, 1, 1}, {frame}));
    EXPECT_EQ(FirstDifferentPixel(Drawn(path, w, h).data(), want.data(), w * h), -1) << bits;
  }

  test::WriteFile(dir.Path("magic.QRK"), {'Q', 'R', 'X', 'G'});
  test::WriteFile(dir.Path("eight.QRK"), test::EncodeMovie({0, 8, 4, 4, 1, 1}, {}));
  const std::pair<const char*, int32_t> refused[] = {{"missing.QRK", kErrCannotOpen},
                                                     {"magic.QRK", kErrBrokenFile},
                                                     {"eight.QRK", kErrEightBitType1Only}};
  win::WindowDc screen = win::WindowDc::Get(nullptr);
  HBITMAP offered = CreateCompatibleBitmap(screen.get(), kW, kH);
  for (const auto& [name, code] : refused) {
    EXPECT_EQ(capture.Play(dir.Path(name), nullptr, offered, 0, 0, false), code) << name;
    EXPECT_EQ(GetObjectType(offered), static_cast<DWORD>(OBJ_BITMAP)) << name;
  }
  ASSERT_EQ(capture.Play(type0, nullptr, offered, 0, 0, false), 0);
  EXPECT_EQ(GetObjectType(offered), 0u);
}

}  // namespace
}  // namespace velmora
