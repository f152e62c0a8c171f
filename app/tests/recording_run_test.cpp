// The recording run under Wine: follow-mouse, a cancelled run kept (and
// then converted) or deleted, an older file replaced.
#include "app/win/recording_run.h"
#include "app/win/save_step.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "app/tests/pattern_job.h"
#include "engine/movie_reader.h"
#include "engine/result_codes.h"
#include "engine/tests/temp_dir.h"
#include "engine/tests/win/pattern_window.h"

namespace velmora {
namespace {

using test::ExpectedFrame;
using test::FirstDifferentPixel;

constexpr int32_t kLeft = 900, kTop = 300, kW = 64, kH = 48;

struct CancelAfter final : win::RecordingRunHooks {
  int asked = 0, askAt = 0;
  bool keep = true;
  bool CancelRequested() override { return ++asked >= askAt; }
  bool ContinueAfterCancel() override { return keep; }
};

win::RecordingJob Job(const std::string& path) { return test::PatternRunJob(path, kLeft, kTop); }

TEST(RecordingRun, FollowMouseCentresTheRegionOnTheCursor) {
  test::PointerLock pointer;
  test::TempDir dir;
  test::PatternWindow window(kLeft, kTop, kW, kH);
  window.Show(7);
  SetCursorPos(kLeft + kW / 2, kTop + kH / 2);
  auto job = Job(dir.Path("follow.QRK"));
  job.left = 0;  // the first frame comes from here, the rest from round the cursor
  job.top = 0;
  job.seconds = 1;
  job.followMouse = true;
  job.asyncWrite = false;
  win::RecordingRunHooks never;
  const auto out = win::RunRecording(job, never);
  ASSERT_EQ(out.result, 0);
  EXPECT_EQ(out.stats.Slots(), 10);
  MovieReader reader;
  ASSERT_EQ(reader.OpenFile(job.movieFile), 0);
  const auto want = ExpectedFrame(kW, kH, 7, true);
  ASSERT_EQ(reader.Next(), 0);
  EXPECT_NE(FirstDifferentPixel(reader.Current(), want.data(), kW * kH), -1);
  ASSERT_EQ(reader.Next(), 0);
  EXPECT_EQ(FirstDifferentPixel(reader.Current(), want.data(), kW * kH), -1);
}

TEST(RecordingRun, ACancelledRunIsKeptWithItsLengthOrDeleted) {
  test::TempDir dir;
  const std::string path = dir.Path("取消.QRK");
  {
    // An older, longer file must not leave its tail behind the new movie.
    std::ofstream(test::TempDir::Fs(path), std::ios::binary) << std::string(300000, 'x');
  }
  CancelAfter hooks;
  hooks.askAt = 5;  // asked on frame 5: takes effect at frame 10, the first whole second
  const auto kept = win::RunRecording(Job(path), hooks);
  EXPECT_EQ(kept.result, 0);
  EXPECT_FALSE(kept.filesDeleted);
  {
    MovieReader reader;
    ASSERT_EQ(reader.OpenFile(path), 0);
    EXPECT_EQ(reader.Header().sec, 1);
    EXPECT_EQ(reader.FrameCount(), 10);
    int frames = 0;
    while (reader.Next() == 0) ++frames;
    EXPECT_EQ(frames, 10);
  }
  const auto size = std::filesystem::file_size(test::TempDir::Fs(path));
  EXPECT_LT(size, 300000u);
  // Kept means converted as usual.
  win::DefaultAsker asker;
  win::SaveJob save;
  save.movieFile = path;
  save.aviFile = dir.Path("取消.avi");
  EXPECT_TRUE(win::RunSaveStep(save, kept.result, asker).aviMade);

  CancelAfter drop;
  drop.askAt = 1;
  drop.keep = false;
  const auto deleted = win::RunRecording(Job(path), drop);
  EXPECT_EQ(ResultNumber(deleted.result), kErrCancelled);
  EXPECT_TRUE(deleted.filesDeleted);
  EXPECT_FALSE(std::filesystem::exists(test::TempDir::Fs(path)));
}

TEST(RecordingRun, EngineFailuresReachTheHooksWithTheirText) {
  struct Errors final : win::RecordingRunHooks {
    std::string shown;
    void ShowError(const std::string& text) override { shown = text; }
  } hooks;
  test::TempDir dir;
  auto job = Job(dir.Path("no/such/folder/x.QRK"));
  const auto out = win::RunRecording(job, hooks);
  EXPECT_EQ(ResultNumber(out.result), kErrCannotOpen);
  EXPECT_EQ(hooks.shown, "ファイルをオープンできません。");
  EXPECT_EQ(SummaryLine(out.stats, out.result, out.resultText),
            "frames 0, drops 0, average capture 0.00 ms, result " + std::to_string(out.result) +
                " ファイルをオープンできません。");
}

}  // namespace
}  // namespace velmora
