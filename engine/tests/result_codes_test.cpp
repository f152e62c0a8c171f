#include "engine/result_codes.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(ResultCodes, PackingKeepsNumberAndTwentyBitParameter) {
  EXPECT_EQ(MakeResultCode(0, 5), 0);
  EXPECT_EQ(MakeResultCode(3, 5), 0);
  EXPECT_EQ(static_cast<uint32_t>(MakeResultCode(-7, 150)), 0x800096F9u);
  EXPECT_EQ(static_cast<uint32_t>(MakeResultCode(-1)), 0x800000FFu);
  EXPECT_EQ(static_cast<uint32_t>(MakeResultCode(-12)), 0x800000F4u);
  // Parameters of 2^20 or more lose their high bits.
  const int32_t big = MakeResultCode(-10, (1 << 20) + 33);
  EXPECT_EQ(ResultParameter(big), 33);
  EXPECT_EQ(ResultNumber(big), -10);
  EXPECT_EQ(ResultParameter(MakeResultCode(-6, 0xFFFFF)), 0xFFFFF);
}

TEST(ResultCodes, EveryTextByteForByte) {
  struct Row {
    int32_t number;
    const char* text;
  };
  const Row rows[] = {
      {-1, "初期化されていません。"},
      {-2, "ファイルをオープンできません。"},
      {-3, "ファイルが壊れているか、対応していないバージョンです。"},
      {-4, "フレームヘッダが見つかりません。"},
      {-5, "不正なフレームサイズです。"},
      {-7, "キャプチャーがユーザーの操作によりキャンセルされました。"},
      {-8, "8ビット動画はType1でしかサポートしていません。"},
      {-9, "UserCaptureはType1でしか使えません。"},
      {-11, "ファイルがありません。"},
      {-12, "サイズが0です。"},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(GetError(MakeResultCode(r.number)), r.text) << r.number;
    // The parameter never shows in a fixed text.
    EXPECT_EQ(GetError(MakeResultCode(r.number, 150)), r.text) << r.number;
  }
}

TEST(ResultCodes, BufferTextCarriesMegabytes) {
  EXPECT_EQ(GetError(MakeResultCode(-6, 65)), "バッファサイズが足りません。\r\n最低65MB必要です。");
  EXPECT_EQ(GetError(MakeResultCode(-6, 1048575)),
            "バッファサイズが足りません。\r\n最低1048575MB必要です。");
}

TEST(ResultCodes, ApiTextAsksTheSystemTable) {
  uint32_t asked = 0;
  auto lookup = [&](uint32_t n) {
    asked = n;
    return std::string("ディスクがいっぱいです。\r\n");
  };
  EXPECT_EQ(GetError(MakeResultCode(-10, 112), lookup), "APIErr:ディスクがいっぱいです。\r\n");
  EXPECT_EQ(asked, 112u);
  EXPECT_EQ(GetError(MakeResultCode(-10, 112)), "APIErr:");
}

TEST(ResultCodes, OutsideTheTableIsEmpty) {
  EXPECT_EQ(GetError(0), "");
  EXPECT_EQ(GetError(1), "");
  EXPECT_EQ(GetError(0x7FFFFFF3), "");  // low byte 0xF3: number -13
  EXPECT_EQ(GetError(static_cast<int32_t>(0x800000F3u)), "");
  EXPECT_EQ(GetError(0x000000FF), "初期化されていません。");  // only the low byte decides
}

}  // namespace
}  // namespace velmora
