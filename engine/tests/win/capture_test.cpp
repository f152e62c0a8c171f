// The Capture class end to end under Wine: records the painted test window
// with each method into a real file, reads it back and plays it.
#include "engine/win/capture.h"

#include <gtest/gtest.h>

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
  bool started = false;
  void CP_StartCapture(bool&) override { started = true; }
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

// A memory DC holding a top-down 32-bit section, so drawn pixels can be read.
struct DibTarget {
  win::WindowDc screen = win::WindowDc::Get(nullptr);
  win::UniqueMemoryDc memory{CreateCompatibleDC(screen.get())};
  void* bits = nullptr;
  win::UniqueBitmap bitmap;
  DibTarget(int32_t w, int32_t h) {
    BITMAPINFO bi{};
    bi.bmiHeader = {sizeof(BITMAPINFOHEADER), w, -h, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    bitmap.reset(CreateDIBSection(screen.get(), &bi, DIB_RGB_COLORS, &bits, nullptr, 0));
  }
};

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

TEST_F(CaptureFixture, CancelKeepsTheSlotsDoneAndTheRequestedLength) {
  advancer.cancelAfter = 3;
  win::Capture capture(&advancer);
  capture.Init(kLeft, kTop, kW, kH);
  capture.Init_Capture(kFps, kSec, 1);
  const std::string path = dir.Path("cancel.QRK");
  const int32_t rc = capture.Rec1(path);
  EXPECT_EQ(ResultNumber(rc), kErrCancelled);
  EXPECT_EQ(ResultParameter(rc), 3);
  EXPECT_EQ(capture.GetError(rc), L"キャプチャーがユーザーの操作によりキャンセルされました。");
  int32_t sec = 0, method = -1;
  EXPECT_EQ(capture.GetQRXFileData(path, nullptr, nullptr, nullptr, nullptr, &sec, &method), 0);
  EXPECT_EQ(sec, kSec);
  EXPECT_EQ(method, 1);
  capture.SetQRXFileData(path, 0, 0, 0, 3, 1);  // what the recording run does after a cancel
  MovieHeader h{};
  EXPECT_EQ(ReadFrames(path, &h).size(), 3u);

  // A fresh object that was never set up refuses, and is then unfit.
  win::Capture unset;
  EXPECT_EQ(ResultNumber(unset.Rec1(dir.Path("none.QRK"))), kErrNotInitialised);
  EXPECT_EQ(unset.BitCount(), 0);
  EXPECT_EQ(unset.GetError(MakeResultCode(kErrApi, 2)).rfind(L"APIErr:", 0), 0u);
  EXPECT_GT(unset.GetError(MakeResultCode(kErrApi, 2)).size(), 8u);
}

// Collects decode-only frames.
struct Collector final : PlaybackListener {
  std::vector<std::vector<uint8_t>> frames;
  int drawings = 0;
  void CP_Decode(uint8_t* data, int64_t bytes, int64_t, int64_t) override {
    frames.emplace_back(data, data + bytes);
  }
  void CP_Drawing(int64_t, int64_t, double, bool&) override { ++drawings; }
};

TEST_F(CaptureFixture, PlaybackHandsOnDeviceIndependentRowsAndDrawsIntoTheTarget) {
  win::Capture capture(&advancer);
  capture.Init(kLeft, kTop, kW, kH);
  capture.Init_Capture(kFps, 1, 0);
  const std::string path = dir.Path("type0.QRK");
  ASSERT_EQ(capture.Rec1(path), 0);

  // Decode-only: Type0's top-down device rows come out bottom-up.
  Collector collector;
  capture.SetPlaybackListener(&collector);
  ASSERT_EQ(capture.Play(path, nullptr, nullptr, 0, 0, true), 0);
  ASSERT_EQ(collector.frames.size(), static_cast<size_t>(kFps));
  for (size_t i = 0; i < collector.frames.size(); ++i) {
    if (advancer.dropped[i]) continue;
    const auto want = ExpectedFrame(kW, kH, static_cast<int32_t>(i), true);
    EXPECT_EQ(FirstDifferentPixel(collector.frames[i].data(), want.data(), kW * kH), -1) << i;
  }

  // Timed: a Type1 movie drawn into a device context lands top-down there.
  const std::string type1 = dir.Path("type1.QRK");
  capture.Init_Capture(kFps, 1, 1);
  advancer.dropped.clear();
  window.Show(0);
  ASSERT_EQ(capture.Rec1(type1), 0);
  DibTarget target(kW, kH);
  {
    win::SelectGuard selected(target.memory.get(), target.bitmap.get());
    collector.drawings = 0;
    ASSERT_EQ(capture.Play(type1, target.memory.get(), nullptr, 0, 0, false), 0);
    GdiFlush();
  }
  EXPECT_EQ(collector.drawings, kFps);
  const int last = kFps - 1;
  if (!advancer.dropped[static_cast<size_t>(last)]) {
    const auto want = ExpectedFrame(kW, kH, last, false);
    EXPECT_EQ(FirstDifferentPixel(static_cast<uint8_t*>(target.bits), want.data(), kW * kH), -1);
  }

  // A refused movie leaves the caller's bitmap alive; an accepted one is
  // playback's to delete.
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
  ASSERT_EQ(capture.Play(path, nullptr, offered, 0, 0, false), 0);
  EXPECT_EQ(GetObjectType(offered), 0u);
}

// Rec1 puts a relative name in the program's folder, whatever the current
// directory; the header fix and playback must find that same file.
TEST_F(CaptureFixture, RelativeNamesMeanTheProgramFolderForEveryCall) {
  const std::string name = "relative-name-test.QRK";
  const std::wstring beside = test::BesideThisProgram(L"relative-name-test.QRK");
  wchar_t previous[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, previous);
  ASSERT_TRUE(SetCurrentDirectoryW(test::TempDir::Fs(dir.Path("")).c_str()));
  win::Capture capture(&advancer);
  capture.Init(kLeft, kTop, kW, kH);
  capture.Init_Capture(kFps, 2, 1);
  advancer.cancelAfter = kFps;
  EXPECT_EQ(capture.Rec1(name), MakeResultCode(kErrCancelled, kFps));
  capture.SetQRXFileData(name, 0, 0, 0, 0, 1);
  int32_t sec = 0;
  EXPECT_EQ(capture.GetQRXFileData(name, nullptr, nullptr, nullptr, nullptr, &sec), 0);
  EXPECT_EQ(sec, 1);
  EXPECT_EQ(capture.Play(name, nullptr, nullptr, 0, 0, true), 0);
  SetCurrentDirectoryW(previous);
  EXPECT_TRUE(DeleteFileW(beside.c_str()));
}

// 5 pixels of 24 bits make 15-byte rows, which device-independent bitmaps pad
// to 16: every row must still land where it belongs (and GDI must not read
// past the frame), in timed and in decode-only playback.
TEST(CapturePlayback, RowsThatAreNotWholeUnitsArePaddedForDrawing) {
  test::TempDir dir;
  constexpr int32_t w = 5, h = 4;
  std::vector<uint8_t> frame(w * h * 3);
  for (size_t i = 0; i < frame.size(); ++i) frame[i] = static_cast<uint8_t>(17 + 7 * i);
  const std::string path = dir.Path("odd.QRK");
  test::WriteFile(path, test::EncodeMovie({1, 24, w, h, 1, 1}, {frame}));

  DibTarget target(w, h);
  win::Capture capture;
  {
    win::SelectGuard selected(target.memory.get(), target.bitmap.get());
    ASSERT_EQ(capture.Play(path, target.memory.get(), nullptr, 0, 0, false), 0);
    GdiFlush();
  }
  const auto* drawn = static_cast<const uint8_t*>(target.bits);  // top-down, 4 bytes a pixel
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) {
      const uint8_t* want = &frame[static_cast<size_t>((h - 1 - y) * w * 3 + x * 3)];
      const uint8_t* got = drawn + (y * w + x) * 4;
      ASSERT_EQ(0, memcmp(got, want, 3)) << "x " << x << " y " << y;
    }
  }
}

}  // namespace
}  // namespace velmora
