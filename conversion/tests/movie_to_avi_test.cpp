// Movie to AVI through the real playback, AviLibrary and AVI5.DLL: frames arrive
// at the movie's depth with rows padded to 4 bytes (kept for ffmpeg to decode,
// see tests/avi_tools_check.sh; Type0 rows turned bottom-up), the 24-bit path
// reads drawn frames back, header errors create nothing,
// and the command line's conversion draws at 24 bits what it cannot
// re-encode and merges the sound.
#include <gtest/gtest.h>

#include <algorithm>

#include "conversion/win/convert_command.h"
#include "conversion/win/movie_to_avi.h"
#include "tests/avi_bytes.h"
#include "tests/conversion_movies.h"
#include "tests/files.h"
#include "tests/temp_dir.h"

namespace velmora::win {
namespace {

namespace t = velmora::test;

using t::AviFrames;
using t::MakeMovie;
using t::Movie;
using t::ReadAvi;
using t::WriteMovie;

// Which frame each report names is the progress window's to check.
class ElapsedTime final : public ConversionListener {
 public:
  void Decoding(int64_t, int64_t, int32_t ms) override { EXPECT_GE(ms, 0); }
};

TEST(MovieToAvi, DirectPathStoresEveryFrameAtTheMoviesDepth) {
  t::TempDir dir;
  for (const auto& [method, bits] :
       {std::pair{1, 8}, std::pair{1, 16}, std::pair{1, 24}, std::pair{1, 32}, std::pair{0, 32}}) {
    SCOPED_TRACE(testing::Message() << "Type" << method << " " << bits << " bits");
    // 37 pixels: below 32 bits the movie's rows are not whole 4-byte units.
    const Movie m = MakeMovie(method, bits, 37, 32, 5);
    const std::string avi = dir.Path(std::to_string(method) + "-" + std::to_string(bits) + ".avi");
    ElapsedTime elapsed;
    MovieToAvi q(&elapsed);
    // A 24-bit movie takes the direct path even when 24 bits are asked for.
    ASSERT_EQ(q.Convert(WriteMovie(dir, "m.qrk", m), avi, nullptr, bits == 24), 0);
    const AviFrames got = ReadAvi(avi);
    ASSERT_EQ(got.status, avi::kAviOk);
    ASSERT_EQ(q.LastLibraryStatus(), 0);
    ASSERT_EQ(got.frames.size(), 5u);
    // The writer takes the movie's rows padded with zeros to 4 bytes, Type0
    // rows turned bottom-up, and ffmpeg decodes them to the movie's pictures.
    const size_t row = size_t(37 * bits / 8), stride = (row + 3) / 4 * 4;
    for (size_t i = 0; i < 5; ++i) {
      std::vector<uint8_t> want(stride * 32, 0);
      for (size_t y = 0; y < 32; ++y)
        std::copy_n(m.frames[i].begin() + long(y * row), row, want.begin() + long(y * stride));
      EXPECT_EQ(got.frames[i], method == 0 ? t::FlipRows(want, stride) : want) << "frame " << i;
    }
    if (method == 1) t::KeepForTools(avi, "direct" + std::to_string(bits), 5, t::DecodedMovie(m));
  }
}

TEST(MovieToAvi, TwentyFourBitPathReadsDrawnFramesBack) {
  t::TempDir dir;
  const Movie m = MakeMovie(1, 32, 64, 32, 10);
  MovieToAvi q;
  ASSERT_EQ(q.Convert(WriteMovie(dir, "in.qrk", m), dir.Path("out.avi"), nullptr, true), 0);
  const AviFrames got = ReadAvi(dir.Path("out.avi"));
  ASSERT_EQ(got.video.strf[14], 24);
  ASSERT_EQ(got.frames.size(), 10u);
  // Each frame is some frame drawn so far (late ones repeat the last drawn).
  for (size_t i = 0; i < got.frames.size(); ++i) {
    bool found = false;
    for (size_t j = 0; j <= i && !found; ++j) found = got.frames[i] == t::As24Bit(m, m.frames[j]);
    EXPECT_TRUE(found) << "frame " << i;
  }
}

TEST(MovieToAvi, HeaderErrorsCreateNothing) {
  t::TempDir dir;
  MovieToAvi q;
  EXPECT_NE(q.Convert(dir.Path("無い.qrk"), dir.Path("x.avi"), nullptr, false), 0);
  t::WriteFile(dir.Path("bad.qrk"), std::vector<uint8_t>(32, 'Z'));
  EXPECT_NE(q.Convert(dir.Path("bad.qrk"), dir.Path("x.avi"), nullptr, false), 0);
  EXPECT_FALSE(t::Exists(dir.Path("x.avi")));
}

TEST(ConvertCommand, ConvertsAndMergesTheSound) {
  t::TempDir dir;
  const Movie m = MakeMovie(1, 16, 64, 32, 4);
  const std::string qrk = WriteMovie(dir, "動画.qrk", m), avi = dir.Path("動画.avi"),
                    wave = dir.Path("音.wav");
  t::WriteFile(wave, avi::test::WaveImage(8000, 1, 16, 8000));
  std::string summary;
  ASSERT_EQ(ConvertMovieToAvi(qrk, avi, wave, summary), 0) << summary;
  EXPECT_NE(summary.find("4 frames"), std::string::npos) << summary;
  const auto bytes = t::ReadFile(avi);
  EXPECT_NE(std::string(bytes.begin(), bytes.end()).find("auds"), std::string::npos);

  // 10 pixels are no width the re-encoding takes: the frames are drawn at 24 bits.
  const std::string narrow = WriteMovie(dir, "狭.qrk", MakeMovie(1, 32, 10, 8, 4));
  ASSERT_EQ(ConvertMovieToAvi(narrow, avi, "", summary, true), 0) << summary;
  EXPECT_EQ(ReadAvi(avi).video.strf[14], 24);

  t::WriteFile(wave, avi::test::WaveImage(8000, 1, 16, 100, 3));
  EXPECT_EQ(ConvertMovieToAvi(qrk, avi, wave, summary), avi::kAviWaveNotPcm);
  EXPECT_NE(summary.find("PCM形式以外"), std::string::npos) << summary;
}

}  // namespace
}  // namespace velmora::win
