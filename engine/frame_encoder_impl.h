// The frame encoder's run builder, written once and compiled once per
// instruction set: a kernel file defines VELMORA_TARGET (empty for the
// baseline, the AVX2 target attribute for AVX2) and a Kernels type, then
// includes this file. Everything here has internal linkage, so the two
// compilations never meet at link time, and the whole encoder, copies
// included, is compiled for the instruction set of its kernels while the rest
// of the library stays on the baseline.
//
// The encoder cuts the frame into alternating unchanged and literal runs.
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
// checked against MaxPayloadBytes before they do (see PayloadWriter).
//
// Speed: equality is decided 64 units at a time into a bit mask by a vector
// kernel. With that rule every run boundary of a block can be read off its
// masks at once (see Edges), so dense changes cost no branch per unit and
// little per run. Long unchanged stretches are skipped by a kernel that
// compares whole cache lines.
#pragma once
#ifndef VELMORA_TARGET
#error "define VELMORA_TARGET before including this file"
#endif
#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "engine/frame_codec.h"

namespace velmora::codec_internal {
namespace {

// Equality is decided for 64 units (256 bytes) at a time: one bit per unit.
constexpr size_t kBlockUnits = 64;
// The skip kernel scans whole groups of this many units; the caller does the rest.
constexpr size_t kGroupUnits = 8;

// What a Kernels type provides (each reads only cur/prev[0, 4 * units)):
//   static uint64_t EqualMask64(const uint8_t* cur, const uint8_t* prev);
//     bit k set when unit k of the 64 units at cur and prev is equal;
//   static size_t FirstDifference(const uint8_t* cur, const uint8_t* prev, size_t units);
//     first unit in [0, units) that differs, or `units`; units % kGroupUnits == 0;
//   static void CopyPiece(uint8_t* dst, const uint8_t* src);
//     copies kPieceBytes (128) bytes.

constexpr uint64_t kAllEqual = ~uint64_t{0};

// Run counts are little-endian, as is every processor these kernels run on,
// so a count is one plain store: the portable byte-by-byte store is not
// always merged into one by the compiler, and unmerged it adds some 40% to
// the instructions of a frame with many short runs.
VELMORA_TARGET inline void StoreCount(uint8_t* p, size_t count) {
  const auto v = static_cast<uint32_t>(count);
  std::memcpy(p, &v, 4);
}

// Equality masks of the blocks of a frame. Units past the end of the frame
// read as equal, so that the last literal run ends by itself at the end.
// Masks are computed several blocks at a time: a tight loop over the two
// frames keeps many loads in flight, which the branchy run finding between
// single blocks would not. The batch grows while changes go on, and starts
// small again after a skip, where changes may be few.
template <class Kernels>
class EqualityMasks {
 public:
  VELMORA_TARGET EqualityMasks(const uint8_t* cur, const uint8_t* prev, size_t units)
      : cur_(cur), prev_(prev), units_(units) {}

  VELMORA_TARGET uint64_t operator()(size_t block) {
    if (block - first_ >= filled_) Fill(block);
    return masks_[block - first_];
  }

  // First unit at or after `from` that differs, or the unit count; compares
  // whole cache lines rather than masks.
  VELMORA_TARGET size_t FirstDifference(size_t from) {
    fillBlocks_ = 2;
    if (from >= units_) return units_;
    const size_t groups = (units_ - from) / kGroupUnits * kGroupUnits;
    const size_t d = Kernels::FirstDifference(cur_ + 4 * from, prev_ + 4 * from, groups);
    if (d < groups) return from + d;
    size_t u = from + groups;
    while (u < units_ && UnitEqual(u)) ++u;
    return u;
  }

 private:
  static constexpr size_t kMostBlocks = 16;

  VELMORA_TARGET bool UnitEqual(size_t u) const { return std::memcmp(cur_ + 4 * u, prev_ + 4 * u, 4) == 0; }

  VELMORA_TARGET void Fill(size_t first) {
    first_ = first;
    filled_ = fillBlocks_;
    fillBlocks_ = std::min(2 * fillBlocks_, kMostBlocks);
    const size_t base = first * kBlockUnits;
    const size_t whole = base < units_ ? std::min((units_ - base) / kBlockUnits, filled_) : 0;
    for (size_t b = 0; b < whole; ++b) {
      masks_[b] = Kernels::EqualMask64(cur_ + 4 * (base + b * kBlockUnits), prev_ + 4 * (base + b * kBlockUnits));
    }
    // The last, partial block (once per frame) and blocks past the end.
    for (size_t b = whole; b < filled_; ++b) {
      uint64_t mask = kAllEqual;
      const size_t begin = base + b * kBlockUnits, end = std::min(units_, begin + kBlockUnits);
      for (size_t u = begin; u < end; ++u) {
        if (!UnitEqual(u)) mask &= ~(uint64_t{1} << (u - begin));
      }
      masks_[b] = mask;
    }
  }

  const uint8_t* cur_;
  const uint8_t* prev_;
  size_t units_;
  uint64_t masks_[kMostBlocks];  // of blocks first_ .. first_ + filled_ - 1
  size_t first_ = 0, filled_ = 0, fillBlocks_ = 2;
};

// Index of the lowest set bit of a non-zero mask, as an unsigned index (no
// sign extension in the hot loop).
VELMORA_TARGET inline size_t LowestBit(uint64_t bits) {
  return static_cast<uint32_t>(std::countr_zero(bits));
}

// Bit k: units k, k+1, k+2 of a block are all equal (`next` is the block after).
VELMORA_TARGET inline uint64_t ThreeEqual(uint64_t mask, uint64_t next) {
  return mask & (mask >> 1 | next << 63) & (mask >> 2 | next << 62);
}

// Run boundaries of a block, from its three-equal bits `three` and those of
// the block before, `threeBefore`:
//  - a literal run starts at a changed unit that follows three equal units
//    (or the start of the frame, which reads as preceded by equal units);
//  - a literal run ends where three equal units begin after a changed unit,
//    that is where the three-equal bits rise.
// Boundaries alternate, start then end, in the order of their bits.
VELMORA_TARGET inline uint64_t Edges(uint64_t mask, uint64_t three, uint64_t threeBefore) {
  const uint64_t starts = ~mask & (three << 3 | threeBefore >> 61);
  const uint64_t ends = three & ~(three << 1 | threeBefore >> 63);
  return starts | ends;
}

// A long literal run is copied out whenever this many units of it are
// pending, so that they leave while still in cache from the equality pass.
constexpr size_t kCopyAfterUnits = 4 * kBlockUnits;

// Literal runs in dense changes are mostly short: one fixed 128-byte copy
// covers nearly all of them without a branch that depends on the length.
constexpr size_t kPieceBytes = 128;

// Copies `bytes` (any number, even 0) in whole pieces: reads and writes up to
// kPieceBytes past the end of both ranges.
template <class Kernels>
VELMORA_TARGET inline void CopyPieces(uint8_t* dst, const uint8_t* src, size_t bytes) {
  Kernels::CopyPiece(dst, src);
  for (size_t done = kPieceBytes; done < bytes; done += kPieceBytes) {
    Kernels::CopyPiece(dst + done, src + done);
  }
}

// Writes the payload. Literal data is copied as the scan leaves each block,
// while it is in cache, in whole pieces where the block is roomy (checked once
// for the block) and exactly near the end of the frame or the output buffer.
template <class Kernels>
class PayloadWriter {
 public:
  VELMORA_TARGET PayloadWriter(uint8_t* out, const uint8_t* cur, size_t units)
      : out_(out), w_(out), cur_(cur), units_(units), outBytes_(MaxPayloadBytes(4 * units)) {}

  // Whether every copy made up to the end of the block that ends at
  // `blockEnd` may run a piece past its run: the reads stay in the frame, and
  // the writes (literal data pending from earlier blocks, the block's own 64
  // units, two counts per literal run, one piece beyond) stay in the output
  // buffer. What a copy writes past its run is overwritten by what follows,
  // or lies past the payload.
  VELMORA_TARGET bool Roomy(size_t blockEnd, bool literal) const {
    const size_t pending = literal ? 4 * (blockEnd - copied_) : 4 * kBlockUnits;
    return 4 * blockEnd + kPieceBytes <= 4 * units_ &&
           Written() + pending + 4 * kBlockUnits + kPieceBytes <= outBytes_;
  }

  // Units of a literal run not yet in the payload, up to `unit`.
  VELMORA_TARGET size_t Pending(size_t unit) const { return unit - copied_; }

  VELMORA_TARGET void Unchanged(size_t count) {
    StoreCount(w_, count);
    w_ += 4;
  }

  // An unchanged run of `unchangedCount` units, then a literal run from `start`.
  VELMORA_TARGET void OpenLiteral(size_t unchangedCount, size_t start) {
    Unchanged(unchangedCount);
    literalCount_ = w_;  // filled in once the run's end is known
    w_ += 4;
    copied_ = start;
  }

  template <bool kRoomy>
  VELMORA_TARGET void CopyLiteral(size_t upTo) {
    const size_t bytes = 4 * (upTo - copied_);
    if (kRoomy) {
      CopyPieces<Kernels>(w_, cur_ + 4 * copied_, bytes);
    } else {
      std::memcpy(w_, cur_ + 4 * copied_, bytes);
    }
    w_ += bytes;
    copied_ = upTo;
  }

  template <bool kRoomy>
  VELMORA_TARGET void CloseLiteral(size_t end) {
    CopyLiteral<kRoomy>(end);
    StoreCount(literalCount_, static_cast<size_t>(w_ - literalCount_ - 4) / 4);
  }

  // A whole literal run [start, end) after an unchanged run of
  // `unchangedCount` units: both counts are known at once, so nothing waits
  // to be patched.
  template <bool kRoomy>
  VELMORA_TARGET void Literal(size_t unchangedCount, size_t start, size_t end) {
    StoreCount(w_, unchangedCount);
    StoreCount(w_ + 4, end - start);
    const size_t bytes = 4 * (end - start);
    if (kRoomy) {
      CopyPieces<Kernels>(w_ + 8, cur_ + 4 * start, bytes);
    } else {
      std::memcpy(w_ + 8, cur_ + 4 * start, bytes);
    }
    w_ += 8 + bytes;
  }

  VELMORA_TARGET size_t Written() const { return static_cast<size_t>(w_ - out_); }

 private:
  uint8_t* const out_;
  uint8_t* w_;
  const uint8_t* const cur_;
  const size_t units_, outBytes_;
  uint8_t* literalCount_ = nullptr;
  size_t copied_ = 0;  // literal data is in the payload up to this unit
};

// Writes the runs that the edges of one block end. Each edge ends the run in
// progress and starts one of the other kind, so they come in pairs: the start
// and the end of a literal run. The only branches that the predictor cannot
// follow are where the block's edges run out (about one miss a block).
template <bool kRoomy, class Writer>
VELMORA_TARGET inline void WriteRuns(Writer& payload, uint64_t edges, size_t base, size_t& runStart,
                                     bool& literal) {
  if (literal) {
    if (!edges) return;
    runStart = base + LowestBit(edges);
    payload.template CloseLiteral<kRoomy>(runStart);
    edges &= edges - 1;
    literal = false;
  }
  while (edges) {
    const size_t start = base + LowestBit(edges);
    edges &= edges - 1;
    if (!edges) {
      payload.OpenLiteral(start - runStart, start);
      literal = true;
      return;
    }
    const size_t end = base + LowestBit(edges);
    payload.template Literal<kRoomy>(start - runStart, start, end);
    runStart = end;
    edges &= edges - 1;
  }
}

template <class Kernels>
VELMORA_TARGET int32_t Encode(uint8_t* out, const uint8_t* cur, const uint8_t* prev, int32_t units) {
  if (units <= 0) return 0;
  const size_t n = static_cast<size_t>(units);
  EqualityMasks<Kernels> masks(cur, prev, n);
  PayloadWriter<Kernels> payload(out, cur, n);
  size_t block = 0;
  size_t runStart = 0;   // first unit of the run in progress
  bool literal = false;  // kind of the run in progress; the first is unchanged
  uint64_t mask = masks(0), next = masks(1);
  uint64_t threeBefore = ThreeEqual(kAllEqual, mask);  // before the frame: all equal
  for (;;) {
    const size_t base = block * kBlockUnits;
    const uint64_t three = ThreeEqual(mask, next);
    uint64_t edges = Edges(mask, three, threeBefore);
    const size_t after = base + kBlockUnits;
    const bool roomy = payload.Roomy(after, literal);
    if (roomy) {
      WriteRuns<true>(payload, edges, base, runStart, literal);
    } else {
      WriteRuns<false>(payload, edges, base, runStart, literal);
    }
    if (after > n) break;  // a literal run ends at the latest at unit n, seen by now
    if (literal) {
      // A long literal run is copied while its first blocks are still in
      // cache; short ones are copied in one go when they end.
      if (payload.Pending(after) >= kCopyAfterUnits) {
        if (roomy) {
          payload.template CopyLiteral<true>(after);
        } else {
          payload.template CopyLiteral<false>(after);
        }
      }
    } else if (mask == kAllEqual && next == kAllEqual) {
      // Unchanged through the next block: skip at memory speed.
      const size_t changed = masks.FirstDifference(after + kBlockUnits);
      if (changed >= n) break;
      block = changed / kBlockUnits;
      mask = masks(block);
      next = masks(block + 1);
      threeBefore = ThreeEqual(kAllEqual, mask);  // all equal up to `changed`
      continue;
    }
    ++block;
    threeBefore = three;
    mask = next;
    next = masks(block + 1);
  }
  if (!literal && runStart < n) payload.Unchanged(n - runStart);
  return static_cast<int32_t>(payload.Written() / 4);
}

}  // namespace
}  // namespace velmora::codec_internal
