// velmora.exe /convert: movies at every depth whose rows are not whole
// 4-byte units come out as AVIs ffmpeg decodes to the movie's pictures
// (save_modes_check.sh compares them); with /24 a Type0 32-bit movie comes out
// as a 24-bit AVI with the movie's pictures and no temporary movie left
// behind; a width the re-encoding cannot take still gives 24 bits; bad
// arguments say how.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "app/tests/run_velmora.h"
#include "engine/result_codes.h"
#include "engine/win/text_encoding.h"
#include "tests/conversion_movies.h"

namespace velmora {
namespace {

// What ffmpeg decodes from a Type1 movie frame: rows top-down, 8-bit pixels
// through the frame's colour table.
std::vector<uint8_t> Decoded(const std::vector<uint8_t>& frame, int32_t w, int32_t h,
                             int32_t bits) {
  const size_t row = size_t(w) * size_t(bits) / 8, pixels = row * size_t(h);
  const auto rows =
      test::FlipRows(std::vector<uint8_t>(frame.begin(), frame.begin() + long(pixels)), row);
  if (bits != 8) return rows;
  std::vector<uint8_t> bgr;
  for (uint8_t index : rows)
    bgr.insert(bgr.end(), &frame[pixels + index * 4u], &frame[pixels + index * 4u + 3]);
  return bgr;
}

TEST(ConvertCommand, RowsNotWholeUnitsDecodeToTheMoviesPictures) {
  test::TempDir dir;
  constexpr int32_t kW = 37, kH = 12;
  for (int32_t bits : {8, 16, 24, 32}) {
    const test::Movie m = test::MakeMovie(1, bits, kW, kH, 3, 1);
    const std::string qrk = test::WriteMovie(dir, "幅.qrk", m), avi = dir.Path("幅.avi");
    const ProgramRun run =
        RunVelmora(L"/convert \"" + win::Widen(qrk) + L"\" \"" + win::Widen(avi) + L"\"");
    ASSERT_EQ(run.exitCode, 0u) << bits << " bits: " << run.output;
    std::vector<uint8_t> decoded;
    for (const auto& f : m.frames) {
      const auto d = Decoded(f, kW, kH, bits);
      decoded.insert(decoded.end(), d.begin(), d.end());
    }
    KeepForTools(avi, "odd" + std::to_string(bits), m.frames.size(), decoded);
  }
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
  KeepForTools(avi, "convert24", 20);

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
