#include "engine/win/system_error_text.h"
#include "engine/win/text_encoding.h"

#include <gtest/gtest.h>

#include "engine/result_codes.h"

namespace {

TEST(SystemMessage, ApiErrorTextComesFromTheSystemTable) {
  const std::string sys = velmora::win::SystemMessage(2);  // file not found
  ASSERT_FALSE(sys.empty());
  const std::string text =
      velmora::GetError(velmora::MakeResultCode(-10, 2), velmora::win::SystemMessage);
  EXPECT_EQ(text, "APIErr:" + sys);
}

TEST(SystemMessage, Utf16RoundTripOfJapanese) {
  const std::string s = "キャプチャーがユーザーの操作によりキャンセルされました。";
  EXPECT_EQ(velmora::win::Narrow(velmora::win::Widen(s)), s);
  EXPECT_EQ(velmora::win::Widen("録画").size(), 2u);
}

}  // namespace
