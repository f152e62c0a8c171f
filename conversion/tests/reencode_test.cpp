// Re-encoding through the engine's user-capture mode: Type0 and Type1
// 32-bit and 8-bit movies come out as Type1 24-bit movies with the same
// pictures; a damaged record stops the reports at the last frame read; a
// missing source, a type other than Type1 or a width whose 24-bit rows would
// need padding leave an existing target untouched. The target removed after
// a failure or cancel, and the reports' texts, are checked through the save
// step and the progress window.
#include <gtest/gtest.h>

#include "conversion/win/movie_reencoder.h"
#include "engine/movie_reader.h"
#include "engine/result_codes.h"
#include "tests/conversion_movies.h"
#include "tests/files.h"
#include "tests/movie_bytes.h"

namespace velmora::win {
namespace {

namespace t = velmora::test;

class Frames final : public ConversionListener {
 public:
  void Decoding(int64_t index, int64_t, int32_t) override { seen.push_back(index); }
  std::vector<int64_t> seen;
};

TEST(MovieReencoder, Type0AndType1MoviesBecomeType1At24BitsWithTheSamePictures) {
  t::TempDir dir;
  for (const auto& [method, bits] : {std::pair{0, 32}, std::pair{1, 32}, std::pair{1, 8}}) {
    SCOPED_TRACE(testing::Message() << "Type" << method << " " << bits << " bits");
    const t::Movie m = t::MakeMovie(method, bits, 64, 32, 10);
    const std::string src = t::WriteMovie(dir, "元.qrk", m), dst = dir.Path("先.qrk");
    ASSERT_EQ(MovieReencoder().Reencode(src, dst, 24, 1), 0);

    MovieReader reader;
    ASSERT_EQ(reader.OpenFile(dst), 0);
    EXPECT_EQ(reader.Header(), (MovieHeader{1, 24, 64, 32, 10, 1}));
    for (size_t i = 0; i < m.frames.size(); ++i) {
      ASSERT_EQ(reader.Next(), 0) << i;
      const auto want = t::As24Bit(m, m.frames[i]);
      const std::vector<uint8_t> got(reader.Current(), reader.Current() + reader.FrameSize());
      ASSERT_EQ(got, want) << "frame " << i;
    }
    EXPECT_EQ(reader.Next(), 1);
  }
}

TEST(MovieReencoder, FailuresReportOnlyWhatWasReadAndRefusalsLeaveTheTargetAlone) {
  t::TempDir dir;
  const t::Movie m = t::MakeMovie(1, 32, 64, 32, 10);
  const std::string dst = dir.Path("temp.temp");

  // The third record's tag is damaged: two frames, then -4.
  auto bytes = t::EncodeMovie(m.header, m.frames);
  size_t at = kMovieHeaderBytes;
  for (int k = 0; k < 2; ++k) at += 8 + (bytes[at + 4] | bytes[at + 5] << 8 | bytes[at + 6] << 16);
  bytes[at] = 'X';
  t::WriteFile(dir.Path("damaged.qrk"), bytes);
  Frames frames;
  MovieReencoder q(&frames);
  EXPECT_EQ(ResultNumber(q.Reencode(dir.Path("damaged.qrk"), dst, 24, 1)), kErrNoFrameHeader);
  EXPECT_EQ(frames.seen, (std::vector<int64_t>{0, 1}));

  const std::string src = t::WriteMovie(dir, "m.qrk", m);
  // Refusals before the session took the target leave an existing one alone.
  const std::vector<uint8_t> older(100, 'o');
  t::WriteFile(dst, older);
  EXPECT_EQ(q.Reencode(dir.Path("無い.qrk"), dst, 24, 1), MakeResultCode(kErrCannotOpen));
  EXPECT_EQ(q.Reencode(src, dst, 24, 2), MakeResultCode(kErrUserCaptureType1Only));
  // 30 bytes per 24-bit row of 10 pixels: no layout every reader agrees on.
  const std::string narrow = t::WriteMovie(dir, "narrow.qrk", t::MakeMovie(1, 32, 10, 8, 10));
  EXPECT_EQ(q.Reencode(narrow, dst, 24, 1), MakeResultCode(kErrNotInitialised));
  EXPECT_EQ(t::ReadFile(dst), older);
  // The source is never touched.
  EXPECT_EQ(t::ReadFile(src), t::EncodeMovie(m.header, m.frames));
}

}  // namespace
}  // namespace velmora::win
