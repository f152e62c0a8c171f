// Little-endian loads and stores for file and shared-memory layouts; byte
// by byte so alignment and host order never matter. Every layout the program
// writes goes through StoreLE16/StoreLE32, directly or through ByteWriter.
// All of it is constexpr so a layout can be checked at compile time.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>

namespace velmora {

constexpr void StoreLE32(uint8_t* p, int32_t v) {
  const auto u = static_cast<uint32_t>(v);
  p[0] = static_cast<uint8_t>(u);
  p[1] = static_cast<uint8_t>(u >> 8);
  p[2] = static_cast<uint8_t>(u >> 16);
  p[3] = static_cast<uint8_t>(u >> 24);
}

constexpr void StoreLE16(uint8_t* p, int16_t v) {
  const auto u = static_cast<uint16_t>(v);
  p[0] = static_cast<uint8_t>(u);
  p[1] = static_cast<uint8_t>(u >> 8);
}

constexpr int32_t LoadLE32(const uint8_t* p) {
  return static_cast<int32_t>(uint32_t{p[0]} | uint32_t{p[1]} << 8 | uint32_t{p[2]} << 16 |
                              uint32_t{p[3]} << 24);
}

constexpr uint32_t LoadLE32U(const uint8_t* p) { return static_cast<uint32_t>(LoadLE32(p)); }

constexpr int16_t LoadLE16(const uint8_t* p) {
  return static_cast<int16_t>(uint16_t{p[0]} | uint16_t{p[1]} << 8);
}

// Sequential writer and reader over a fixed byte array, for records written
// field by field in file order. Neither ever touches a byte outside its
// array: a field that does not fit is dropped, and a read past the end
// yields zero.
template <size_t N>
class ByteCursor {
 protected:
  // The offset of the next `n` bytes, or N when fewer are left (the cursor
  // then stays at the end).
  constexpr size_t Take(size_t n) {
    if (N - pos_ < n) {
      pos_ = N;
      return N;
    }
    pos_ += n;
    return pos_ - n;
  }

 private:
  size_t pos_ = 0;
};

template <size_t N>
class ByteWriter : ByteCursor<N> {
 public:
  constexpr explicit ByteWriter(std::array<uint8_t, N>& out) : out_(out) {}

  constexpr void Int32(int32_t v) {
    if (const size_t at = this->Take(4); at < N) StoreLE32(out_.data() + at, v);
  }
  constexpr void Int16(int16_t v) {
    if (const size_t at = this->Take(2); at < N) StoreLE16(out_.data() + at, v);
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

 private:
  constexpr void Byte(uint8_t b) {
    if (const size_t at = this->Take(1); at < N) out_[at] = b;
  }
  std::array<uint8_t, N>& out_;
};

template <size_t N>
class ByteReader : ByteCursor<N> {
 public:
  constexpr explicit ByteReader(const std::array<uint8_t, N>& in) : in_(in) {}

  constexpr int32_t Int32() {
    const size_t at = this->Take(4);
    return at < N ? LoadLE32(in_.data() + at) : 0;
  }
  template <size_t M>
  constexpr void Bytes(std::array<uint8_t, M>& out) {
    for (uint8_t& b : out) {
      const size_t at = this->Take(1);
      b = at < N ? in_[at] : 0;
    }
  }
  constexpr void Skip(size_t n) { this->Take(n); }

 private:
  const std::array<uint8_t, N>& in_;
};

}  // namespace velmora
