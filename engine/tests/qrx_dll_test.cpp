// QRX.dll as any program would use it: loaded by name, Compress found by its
// undecorated name, its payload the engine's own (whose bounds the codec
// tests check).
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "engine/frame_codec.h"
#include "engine/win/handles.h"

namespace {

using CompressFn = int32_t (*)(uint8_t*, const uint8_t*, const uint8_t*, int32_t);

TEST(QrxDll, LoadsByNameAndCompressesAsTheEngine) {
  velmora::win::UniqueModule dll(LoadLibraryW(L"QRX.dll"));
  ASSERT_TRUE(dll) << GetLastError();
  auto compress =
      reinterpret_cast<CompressFn>(reinterpret_cast<void*>(GetProcAddress(dll.get(), "Compress")));
  ASSERT_NE(compress, nullptr);
  // Every eighth unit changed: runs of both kinds, literal data from `cur`.
  std::vector<uint8_t> cur(4096), prev(4096, 0);
  for (size_t i = 0; i < cur.size(); ++i) {
    cur[i] = static_cast<uint8_t>(i * 7 + (i >> 9) + 1);
    if ((i / 4) % 8 != 0) prev[i] = cur[i];
  }
  std::vector<uint8_t> out(velmora::MaxPayloadBytes(cur.size())), own(out.size());
  const int32_t n = compress(out.data(), cur.data(), prev.data(), 1024);
  EXPECT_GT(n, 0);
  EXPECT_EQ(velmora::CompressFrame(own.data(), cur.data(), prev.data(), 1024), n);
  EXPECT_EQ(out, own);
}

}  // namespace
