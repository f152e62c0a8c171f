// velmora.exe /convert: a movie whose rows are not whole 4-byte units comes
// out as an AVI ffmpeg decodes to the movie's pictures (tests/avi_tools_check.sh
// compares them; the other depths are converted in-process); with /24 a
// Type0 32-bit movie comes out as a 24-bit AVI with the movie's pictures and
// no temporary movie left behind; bad arguments say how.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "app/tests/run_velmora.h"
#include "engine/result_codes.h"
#include "engine/win/text_encoding.h"
#include "tests/conversion_movies.h"

namespace velmora {
namespace {

TEST(ConvertCommand, RowsNotWholeUnitsDecodeToTheMoviesPictures) {
  test::TempDir dir;
  // 8 bits: rows of 37 bytes, and pixels ffmpeg must look up in the colour table.
  const test::Movie m = test::MakeMovie(1, 8, 37, 12, 3, 1);
  const std::string qrk = test::WriteMovie(dir, "幅.qrk", m), avi = dir.Path("幅.avi");
  const ProgramRun run =
      RunVelmora(L"/convert \"" + win::Widen(qrk) + L"\" \"" + win::Widen(avi) + L"\"");
  ASSERT_EQ(run.exitCode, 0u) << run.output;
  test::KeepForTools(avi, "odd8", m.frames.size(), test::DecodedMovie(m));
}

TEST(ConvertCommand, TwentyFourBitSwitch) {
  test::TempDir dir;
  const test::Movie m = test::MakeMovie(0, 32, 64, 32, 20, 1);
  const std::string qrk = test::WriteMovie(dir, "元.qrk", m), avi = dir.Path("先.avi");
  const ProgramRun run =
      RunVelmora(L"/convert \"" + win::Widen(qrk) + L"\" \"" + win::Widen(avi) + L"\" /24");
  ASSERT_EQ(run.exitCode, 0u) << run.output;
  EXPECT_NE(run.output.find(": 20 frames"), std::string::npos) << run.output;
  const test::AviFrames got = test::ReadAvi(avi);
  EXPECT_EQ(got.video.strf[14], 24);
  ASSERT_EQ(got.frames.size(), 20u);
  for (size_t i = 0; i < 20; ++i)
    ASSERT_EQ(got.frames[i], test::As24Bit(m, m.frames[i])) << "frame " << i;
  EXPECT_FALSE(test::Exists(avi + ".qrk24"));
  test::KeepForTools(avi, "convert24", 20);

  const ProgramRun usage = RunVelmora(L"/convert a.qrk /24");
  EXPECT_EQ(static_cast<int32_t>(usage.exitCode), MakeResultCode(kErrNotInitialised));
  EXPECT_NE(usage.output.find("[/24]"), std::string::npos) << usage.output;
}

}  // namespace
}  // namespace velmora
