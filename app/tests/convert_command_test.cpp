// velmora.exe /convert ... /24: a Type0 32-bit movie comes out as a 24-bit
// AVI with the movie's pictures and no temporary movie left behind; a width
// the re-encoding cannot take still gives 24 bits; bad arguments say how.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <filesystem>

#include "app/tests/run_velmora.h"
#include "conversion/tests/conversion_test_movies.h"
#include "engine/result_codes.h"
#include "engine/win/system_message.h"

namespace velmora {
namespace {

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
  for (size_t i = 0; i < 20; ++i) {
    const auto rows = test::FlipRows(m.frames[i], 64 * 4);
    std::vector<uint8_t> bgr;
    for (size_t k = 0; k < rows.size(); k += 4) bgr.insert(bgr.end(), &rows[k], &rows[k] + 3);
    ASSERT_EQ(got.frames[i], bgr) << "frame " << i;
  }
  EXPECT_FALSE(std::filesystem::exists(test::TempDir::Fs(avi + ".qrk24")));
  if (const char* keep = std::getenv("VELMORA_KEEP_AVIS"); keep && *keep)
    std::filesystem::copy_file(test::TempDir::Fs(avi), std::filesystem::path(keep) / "convert24-20.avi",
                               std::filesystem::copy_options::overwrite_existing);

  const std::string narrow = test::WriteMovie(dir, "狭.qrk", test::MakeMovie(1, 32, 10, 8, 20, 1));
  const ProgramRun drawn =
      RunVelmora(L"/convert /24 \"" + win::Widen(narrow) + L"\" \"" + win::Widen(avi) + L"\"");
  ASSERT_EQ(drawn.exitCode, 0u) << drawn.output;
  EXPECT_EQ(test::ReadAvi(avi).video.strf[14], 24);

  const ProgramRun usage = RunVelmora(L"/convert a.qrk /24");
  EXPECT_EQ(static_cast<int32_t>(usage.exitCode), MakeResultCode(kErrNotInitialised));
  EXPECT_NE(usage.output.find("[/24]"), std::string::npos) << usage.output;
}

}  // namespace
}  // namespace velmora
