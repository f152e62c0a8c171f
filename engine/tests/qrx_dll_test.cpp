// QRX.dll as any program would use it: loaded by name, Compress found by its
// undecorated name; its payload is the engine's own, stays inside the
// recorder's buffer and decodes back to the frame.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "engine/frame_codec.h"
#include "engine/win/handles.h"

namespace {

using CompressFn = int32_t (*)(uint8_t*, const uint8_t*, const uint8_t*, int32_t);

TEST(QrxDll, LoadsAndCompressesExactly) {
  velmora::win::UniqueModule dll(LoadLibraryW(L"QRX.dll"));
  ASSERT_TRUE(dll) << GetLastError();
  auto compress =
      reinterpret_cast<CompressFn>(reinterpret_cast<void*>(GetProcAddress(dll.get(), "Compress")));
  ASSERT_NE(compress, nullptr);
  const size_t f = 4096;
  const size_t bound = velmora::MaxPayloadBytes(f);
  // Every eighth unit changed: runs of both kinds, literal data from `cur`.
  std::vector<uint8_t> prev(f, 0), cur(f), out(bound + 64, 0xA5), own(bound), dec(f);
  for (size_t i = 0; i < f; ++i) cur[i] = static_cast<uint8_t>(i * 7 + (i >> 9) + 1);
  for (size_t i = 0; i < f; i += 4) {
    if ((i / 4) % 8 != 0) std::copy_n(&cur[i], 4, &prev[i]);
  }
  const int32_t n = compress(out.data(), cur.data(), prev.data(), int32_t(f / 4));
  ASSERT_GT(n, 0);
  EXPECT_TRUE(std::all_of(out.begin() + bound, out.end(), [](uint8_t b) { return b == 0xA5; }))
      << "wrote past the recorder's buffer";
  ASSERT_EQ(velmora::CompressFrame(own.data(), cur.data(), prev.data(), int32_t(f / 4)), n);
  EXPECT_TRUE(std::equal(own.begin(), own.begin() + 4 * n, out.begin()));
}

}  // namespace
