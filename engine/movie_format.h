// The .QRK movie file: a 32-byte header followed by exactly fps x sec frame
// records ("FRAM", payload size, payload), nothing between them, no trailer.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace velmora {

inline constexpr std::array<uint8_t, 4> kMovieMagic{'Q', 'R', 'X', 'F'};
inline constexpr std::array<uint8_t, 4> kFrameTag{'F', 'R', 'A', 'M'};
inline constexpr int32_t kMovieVersion = 1;
inline constexpr size_t kMovieHeaderBytes = 32;
inline constexpr size_t kFrameRecordHeadBytes = 8;  // tag + payload size
inline constexpr size_t kDroppedRecordBytes = 12;   // tag + size 4 + one count
inline constexpr int32_t kPaletteBytes = 1024;      // 256 x (blue, green, red, 0)

// The six picture fields behind magic and version, in file order.
struct MovieHeader {
  int32_t method = 0;  // 0 Type0 device rows, 1 Type1 DIB, 2 Type2 DIB section
  int32_t bitCount = 0;
  int32_t width = 0;
  int32_t height = 0;
  int32_t fps = 0;
  int32_t sec = 0;
  friend bool operator==(const MovieHeader&, const MovieHeader&) = default;
};

// Uncompressed size F of one frame: W x H x bits / 8 in 32-bit arithmetic,
// truncated, plus the colour table for 8-bit frames. Negative or overflowing
// geometry yields -1.
int64_t FrameBytes(int32_t width, int32_t height, int32_t bitCount);

// Number of frame records a movie holds: fps x sec (64-bit, never negative
// for valid headers).
int64_t FrameSlots(const MovieHeader& h);

// Serialises magic, version and the six fields (little-endian).
std::array<uint8_t, kMovieHeaderBytes> EncodeMovieHeader(const MovieHeader& h);

// Splits 32 header bytes. Returns nothing when magic or version are wrong;
// the fields themselves are not range-checked here.
std::optional<MovieHeader> DecodeMovieHeader(std::span<const uint8_t, kMovieHeaderBytes> bytes);

// The range checks of the header query: W, H, fps, sec >= 1 and method 0..2.
bool HeaderFieldsInRange(const MovieHeader& h);

// BitCo 8..32 and a multiple of 8: only then does the header query fill its outputs.
bool HeaderBitCountUsable(int32_t bitCount);

// Whether a region `width` pixels wide can be recorded with capture `method`
// at the display depth `bitsPerPixel` (8, 16, 24 or 32). Frames carry no row
// padding, so a row must fill the grab's own row alignment exactly: 4 bytes
// for the device-independent Type1/Type2, 2 bytes for Type0's device rows.
// 8-bit Type2 is never recordable: its section holds no colour table, yet the
// frame size counts one.
bool IsValidRegionWidth(int32_t width, int32_t bitsPerPixel, int32_t method);

// The largest width <= `width` that IsValidRegionWidth accepts; 0 if none.
int32_t ValidRegionWidth(int32_t width, int32_t bitsPerPixel, int32_t method);

}  // namespace velmora
