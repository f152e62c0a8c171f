// QRX.dll as any program would use it: loaded by name, Compress found by its
// undecorated name, output decoding back to the frame.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "engine/frame_codec.h"

namespace {

using CompressFn = int32_t (*)(uint8_t*, const uint8_t*, const uint8_t*, int32_t);

TEST(QrxDll, LoadsAndCompressesExactly) {
  HMODULE dll = LoadLibraryW(L"QRX.dll");
  ASSERT_NE(dll, nullptr) << GetLastError();
  auto compress = reinterpret_cast<CompressFn>(reinterpret_cast<void*>(GetProcAddress(dll, "Compress")));
  ASSERT_NE(compress, nullptr);
  const size_t f = 4096;
  std::vector<uint8_t> prev(f, 0), cur(f), out(velmora::MaxPayloadBytes(f)), dec(f);
  for (size_t i = 0; i < f; ++i) cur[i] = static_cast<uint8_t>(i * 7 + (i >> 9));
  for (size_t i = 0; i < f; i += 64) prev[i] = cur[i];
  const int32_t n = compress(out.data(), cur.data(), prev.data(), int32_t(f / 4));
  ASSERT_GT(n, 0);
  ASSERT_LE(size_t(n) * 4, velmora::MaxPayloadBytes(f));
  ASSERT_EQ(velmora::DecodeFrame(out.data(), size_t(n) * 4, prev.data(), dec.data(), f), 0);
  EXPECT_EQ(dec, cur);
  FreeLibrary(dll);
}

}  // namespace
