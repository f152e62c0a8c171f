// Frame encoder: cuts the frame into alternating unchanged and literal runs.
//
// Where runs are split is free for the decoder, so the split is chosen for
// size: an unchanged stretch inside changed data costs two counts (8 bytes)
// when it becomes a run of its own, and 4 bytes per unit when it simply rides
// along in the literal run. Stretches of one or two units therefore stay in
// the literal run; three or more end it. The leading stretch is always a run
// (its count is written anyway) and so is the trailing one (it costs one count).
//
// Output bound: literal runs are separated by at least three unchanged units,
// so P literal runs over N units cost at most N + 3 - P units of counts and
// data; the payload never exceeds N + 2 units (F + 8 bytes), well inside
// MaxPayloadBytes. Literal copies may run a little past the payload, but are
// checked against MaxPayloadBytes before they do (see copyUpTo).
//
// Speed: equality is decided 64 units at a time into a bit mask by a vector
// kernel, and runs are found in the masks with shifts and count-trailing-zeros,
// so dense changes cost no branch per unit. Long unchanged stretches are
// skipped by a kernel that compares whole cache lines.
#include <algorithm>
#include <bit>
#include <cstring>

#include "engine/byte_order.h"
#include "engine/frame_codec.h"
#include "engine/frame_encoder_internal.h"

namespace velmora {
namespace codec_internal {
namespace {

constexpr uint64_t kAllEqual = ~uint64_t{0};

// From bit `k` upward.
constexpr uint64_t BitsFrom(size_t k) { return kAllEqual << k; }

// Equality bits of the frame for the block under the scan, with the block
// after it at hand so that three equal units can be seen across a block edge.
// Units past the end of the frame read as equal: a literal run then ends by
// itself at the end of the frame, and an unchanged tail is never split.
template <class Kernels>
class EqualityScan {
 public:
  EqualityScan(const uint8_t* cur, const uint8_t* prev, size_t units)
      : cur_(cur), prev_(prev), units_(units) {
    Load(0);
  }

  // First unit at or after `p` that differs, or the unit count.
  size_t NextDifference(size_t p) {
    Seek(p / kBlockUnits);
    const uint64_t differs = ~mask_ & BitsFrom(p % kBlockUnits);
    if (differs) return Base() + std::countr_zero(differs);
    if (~next_) {
      Advance();
      return Base() + std::countr_zero(~mask_);
    }
    // A long unchanged stretch: compare whole cache lines, not masks.
    return FirstDifferenceFrom(Base() + 2 * kBlockUnits);
  }

  // End of a literal run that starts at the changed unit `p`: the first unit
  // after p that begins three equal units, or fewer equal units that reach the
  // end of the frame, or the end of the frame. `leftBlock(u)` is called each
  // time the scan moves on to the block starting at unit u (u <= unit count).
  template <class LeftBlock>
  size_t LiteralEnd(size_t p, LeftBlock&& leftBlock) {
    Seek(p / kBlockUnits);
    uint64_t three = three_ & BitsFrom(p % kBlockUnits);
    while (!three) {
      Advance();
      leftBlock(Base());
      three = three_;
    }
    return Base() + std::countr_zero(three);
  }

 private:
  size_t Base() const { return block_ * kBlockUnits; }

  void Load(size_t block) {
    block_ = block;
    fillBlocks_ = 2;  // after a skip: changes may be few, compute little ahead
    mask_ = Mask(block);
    next_ = Mask(block + 1);
    three_ = ThreeEqual();
  }
  void Advance() {
    ++block_;
    mask_ = next_;
    next_ = Mask(block_ + 1);
    three_ = ThreeEqual();
  }
  uint64_t ThreeEqual() const {
    return mask_ & (mask_ >> 1 | next_ << 63) & (mask_ >> 2 | next_ << 62);
  }
  void Seek(size_t block) {
    if (block == block_ + 1) {
      Advance();
    } else if (block != block_) {
      Load(block);
    }
  }

  bool UnitEqual(size_t u) const { return std::memcmp(cur_ + 4 * u, prev_ + 4 * u, 4) == 0; }

  // Masks are computed several blocks at a time: a tight loop over the two
  // frames keeps many loads in flight, which the branchy run finding between
  // single blocks would not. The batch grows while changes go on.
  uint64_t Mask(size_t block) {
    if (block - first_ >= filled_) Fill(block);
    return masks_[block - first_];
  }

  void Fill(size_t first) {
    first_ = first;
    filled_ = fillBlocks_;
    fillBlocks_ = std::min(2 * fillBlocks_, kMostBlocks);
    const size_t base = first * kBlockUnits;
    const size_t whole = base < units_ ? std::min((units_ - base) / kBlockUnits, filled_) : 0;
    Kernels::EqualMasks(cur_ + 4 * base, prev_ + 4 * base, whole, masks_);
    // The last, partial block (once per frame) and blocks past the end.
    for (size_t b = whole; b < filled_; ++b) {
      uint64_t mask = kAllEqual;
      for (size_t u = base + b * kBlockUnits; u < std::min(units_, base + (b + 1) * kBlockUnits); ++u) {
        if (!UnitEqual(u)) mask &= ~(uint64_t{1} << (u % kBlockUnits));
      }
      masks_[b] = mask;
    }
  }

  size_t FirstDifferenceFrom(size_t from) const {
    if (from >= units_) return units_;
    const size_t groups = (units_ - from) / kGroupUnits * kGroupUnits;
    const size_t d = Kernels::FirstDifference(cur_ + 4 * from, prev_ + 4 * from, groups);
    if (d < groups) return from + d;
    size_t u = from + groups;
    while (u < units_ && UnitEqual(u)) ++u;
    return u;
  }

  const uint8_t* cur_;
  const uint8_t* prev_;
  size_t units_;
  size_t block_ = 0;
  uint64_t mask_ = 0;  // equality bits of block_
  uint64_t next_ = 0;  // equality bits of block_ + 1
  uint64_t three_ = 0;  // bit k: units k, k+1, k+2 of block_ are all equal
  static constexpr size_t kMostBlocks = 16;
  uint64_t masks_[kMostBlocks];  // of blocks first_ .. first_ + filled_ - 1
  size_t first_ = 0, filled_ = 0, fillBlocks_ = 2;
};

// Literal runs in dense changes are mostly short: one fixed 128-byte copy
// covers most of them without a branch that depends on the length.
constexpr size_t kPieceBytes = 128;

// Copies `bytes` (any number, even 0) in whole pieces: reads and writes up to
// kPieceBytes past the end of both ranges.
inline void CopyPieces(uint8_t* dst, const uint8_t* src, size_t bytes) {
  std::memcpy(dst, src, kPieceBytes);
  for (size_t done = kPieceBytes; done < bytes; done += kPieceBytes) {
    std::memcpy(dst + done, src + done, kPieceBytes);
  }
}

template <class Kernels>
int32_t Encode(uint8_t* out, const uint8_t* cur, const uint8_t* prev, int32_t units) {
  if (units <= 0) return 0;
  const size_t n = static_cast<size_t>(units);
  EqualityScan<Kernels> scan(cur, prev, n);
  const size_t outBytes = MaxPayloadBytes(4 * n);
  uint8_t* w = out;
  size_t pos = 0;
  for (;;) {
    const size_t changed = scan.NextDifference(pos);
    StoreLE32(w, static_cast<int32_t>(changed - pos));
    w += 4;
    if (changed == n) break;

    uint8_t* const literalCount = w;  // filled in once the run's end is known
    w += 4;
    size_t copied = changed;
    // Literal data is copied block by block as the scan leaves each block,
    // while those bytes are still in cache.
    auto copyUpTo = [&](size_t u) {
      const size_t bytes = 4 * (u - copied);
      // Short runs are many in dense changes: copy them in whole pieces, which
      // may read and write up to a piece past the run. Only where both the
      // frame and the output buffer have that room; the bytes written past
      // the run are overwritten by what follows or lie past the payload.
      if (4 * u + kPieceBytes <= 4 * n && size_t(w - out) + bytes + kPieceBytes <= outBytes) {
        CopyPieces(w, cur + 4 * copied, bytes);
      } else {
        std::memcpy(w, cur + 4 * copied, bytes);
      }
      w += bytes;
      copied = u;
    };
    pos = scan.LiteralEnd(changed, copyUpTo);
    copyUpTo(pos);
    StoreLE32(literalCount, static_cast<int32_t>(pos - changed));
    if (pos == n) break;
  }
  return static_cast<int32_t>((w - out) / 4);
}

}  // namespace

bool CpuHasAvx2() {
  __builtin_cpu_init();
  return __builtin_cpu_supports("avx2");
}

int32_t CompressFrameSse2(uint8_t* out, const uint8_t* cur, const uint8_t* prev, int32_t units) {
  return Encode<Sse2Kernels>(out, cur, prev, units);
}

int32_t CompressFrameAvx2(uint8_t* out, const uint8_t* cur, const uint8_t* prev, int32_t units) {
  return Encode<Avx2Kernels>(out, cur, prev, units);
}

}  // namespace codec_internal

int32_t CompressFrame(uint8_t* out, const uint8_t* cur, const uint8_t* prev, int32_t units) {
  static const bool avx2 = codec_internal::CpuHasAvx2();
  return avx2 ? codec_internal::CompressFrameAvx2(out, cur, prev, units)
              : codec_internal::CompressFrameSse2(out, cur, prev, units);
}

}  // namespace velmora
