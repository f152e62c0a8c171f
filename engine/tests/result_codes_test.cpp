#include "engine/result_codes.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(ResultCodes, PackingKeepsNumberAndTwentyBitParameter) {
  EXPECT_EQ(MakeResultCode(0, 5), 0);
  EXPECT_EQ(static_cast<uint32_t>(MakeResultCode(-7, 150)), 0x800096F9u);
  EXPECT_EQ(static_cast<uint32_t>(MakeResultCode(-1)), 0x800000FFu);
  // Parameters of 2^20 or more lose their high bits.
  const int32_t big = MakeResultCode(-10, (1 << 20) + 33);
  EXPECT_EQ(ResultParameter(big), 33);
  EXPECT_EQ(ResultNumber(big), -10);
  EXPECT_EQ(ResultParameter(MakeResultCode(-6, 0xFFFFF)), 0xFFFFF);
}

// The first and last rows show that a number finds its own row, and a
// parameter never shows in a fixed text. The texts that the windows' tests do
// not show are here. Only the low byte decides the number; outside -12..-1
// there is no text.
TEST(ResultCodes, TextsByNumber) {
  EXPECT_EQ(GetError(MakeResultCode(-1, 150)), "初期化されていません。");
  EXPECT_EQ(GetError(MakeResultCode(-12)), "サイズが0です。");
  EXPECT_EQ(GetError(MakeResultCode(-5)), "不正なフレームサイズです。");
  EXPECT_EQ(GetError(MakeResultCode(-8)), "8ビット動画はType1でしかサポートしていません。");
  EXPECT_EQ(GetError(MakeResultCode(-9)), "UserCaptureはType1でしか使えません。");
  EXPECT_EQ(GetError(MakeResultCode(-11)), "ファイルがありません。");
  EXPECT_EQ(GetError(MakeResultCode(-6, 65)), "バッファサイズが足りません。\r\n最低65MB必要です。");
  EXPECT_EQ(GetError(MakeResultCode(-6, 1048575)),
            "バッファサイズが足りません。\r\n最低1048575MB必要です。");
  EXPECT_EQ(GetError(0), "");
  EXPECT_EQ(GetError(0x7FFFFFF3), "");  // low byte 0xF3: number -13
  EXPECT_EQ(GetError(0x000000FF), "初期化されていません。");
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

}  // namespace
}  // namespace velmora
