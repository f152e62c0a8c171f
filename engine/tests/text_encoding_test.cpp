#include "engine/win/text_encoding.h"

#include <gtest/gtest.h>

namespace {

TEST(TextEncoding, Utf16RoundTripOfJapanese) {
  const std::string s = "キャプチャーがユーザーの操作によりキャンセルされました。";
  EXPECT_EQ(velmora::win::Narrow(velmora::win::Widen(s)), s);
  EXPECT_EQ(velmora::win::Widen("録画").size(), 2u);
}

}  // namespace
