// Sequential little-endian writer and reader over a fixed byte array. Both are
// constexpr so a layout written through them can be checked at compile time.
// Neither ever touches a byte outside its array: a write past the end is
// dropped and a read past the end yields zeros, and both remember it.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>

namespace velmora::sound {

template <size_t N>
class ByteWriter {
 public:
  constexpr explicit ByteWriter(std::array<uint8_t, N>& out) : out_(out) {}

  constexpr void Int32(int32_t v) {
    const auto u = static_cast<uint32_t>(v);
    for (int i = 0; i < 4; ++i) Byte(static_cast<uint8_t>(u >> (8 * i)));
  }
  constexpr void Int16(int16_t v) {
    const auto u = static_cast<uint16_t>(v);
    Byte(static_cast<uint8_t>(u));
    Byte(static_cast<uint8_t>(u >> 8));
  }
  constexpr void Tag(const char (&fourcc)[5]) {
    for (int i = 0; i < 4; ++i) Byte(static_cast<uint8_t>(fourcc[i]));
  }
  template <size_t M>
  constexpr void Bytes(const std::array<uint8_t, M>& bytes) {
    for (uint8_t b : bytes) Byte(b);
  }
  constexpr void Zeros(size_t n) {
    for (size_t i = 0; i < n; ++i) Byte(0);
  }
  constexpr size_t Position() const { return pos_; }
  constexpr bool Overflowed() const { return overflow_; }

 private:
  constexpr void Byte(uint8_t b) {
    if (pos_ < N) {
      out_[pos_++] = b;
    } else {
      overflow_ = true;
    }
  }
  std::array<uint8_t, N>& out_;
  size_t pos_ = 0;
  bool overflow_ = false;
};

template <size_t N>
class ByteReader {
 public:
  constexpr explicit ByteReader(const std::array<uint8_t, N>& in) : in_(in) {}

  constexpr int32_t Int32() {
    uint32_t u = 0;
    for (int i = 0; i < 4; ++i) u |= uint32_t{Byte()} << (8 * i);
    return static_cast<int32_t>(u);
  }
  template <size_t M>
  constexpr void Bytes(std::array<uint8_t, M>& out) {
    for (uint8_t& b : out) b = Byte();
  }
  constexpr void Skip(size_t n) {
    for (size_t i = 0; i < n; ++i) Byte();
  }
  constexpr size_t Position() const { return pos_; }
  constexpr bool Overran() const { return overrun_; }

 private:
  constexpr uint8_t Byte() {
    if (pos_ < N) return in_[pos_++];
    overrun_ = true;
    return 0;
  }
  const std::array<uint8_t, N>& in_;
  size_t pos_ = 0;
  bool overrun_ = false;
};

}  // namespace velmora::sound
