#include "engine/frame_codec.h"

#include <gtest/gtest.h>

#include <vector>

namespace velmora {
namespace {

TEST(FrameCodec, UnchangedFrameIsOneCount) {
  std::vector<uint8_t> prev(64, 7), cur(64, 7), out(MaxPayloadBytes(64)), dec(64);
  ASSERT_EQ(CompressFrame(out.data(), cur.data(), prev.data(), 16), 1);
  EXPECT_EQ(out[0], 16);
  ASSERT_EQ(DecodeFrame(out.data(), 4, prev.data(), dec.data(), 64), 0);
  EXPECT_EQ(dec, cur);
}

}  // namespace
}  // namespace velmora
