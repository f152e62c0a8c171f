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
// masks at once (see Edges), so dense changes cost no branch per unit, and
// the boundaries are listed before any run is written (see kBatchBlocks), so
// they cost few branches per run. Long unchanged stretches are skipped by a
// kernel that compares whole cache lines.
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

// Runs are written a batch of blocks at a time, once the batch's edges are
// all known: the edges are first listed as unit positions (see EdgeList), then
// taken in pairs by one loop over the whole batch. Walking each block's bits
// on its own ends a loop at every block after a number of runs that dense
// changes make unpredictable; the branch miss per block also keeps the
// processor from running ahead into the next loads and stores, which in a
// frame that is not in cache costs more than the misses themselves. A batch
// (4 KB of each frame) is small enough that its literal data is still in
// cache when it is copied out, and a long literal run is copied out batch by
// batch.
constexpr size_t kBatchBlocks = 8;

// What a Kernels type provides (each reads only cur/prev[0, 4 * units)):
//   static uint64_t EqualMask64(const uint8_t* cur, const uint8_t* prev);
//     bit k set when unit k of the 64 units at cur and prev is equal;
//   static size_t FirstDifference(const uint8_t* cur, const uint8_t* prev, size_t units);
//     first unit in [0, units) that differs, or `units`; units % kGroupUnits == 0;
//   static void CopyPiece(uint8_t* dst, const uint8_t* src);
//     copies kPieceBytes (128) bytes;
//   static size_t ListBits(uint32_t* out, uint64_t bits, uint32_t base);
//     stores base + k for every set bit k of `bits`, in order, and returns
//     how many; may store up to 8 values more.

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
// single blocks would not. The batch grows while changes go on, up to a
// batch of runs, and starts small again after a skip, where changes may be
// few. Larger batches than the runs' leave more data between a block's
// masks and its literal copies, and are slower.
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
  static constexpr size_t kMostBlocks = kBatchBlocks;

  VELMORA_TARGET bool UnitEqual(size_t u) const {
    return std::memcmp(cur_ + 4 * u, prev_ + 4 * u, 4) == 0;
  }

  VELMORA_TARGET void Fill(size_t first) {
    first_ = first;
    filled_ = fillBlocks_;
    fillBlocks_ = std::min(2 * fillBlocks_, kMostBlocks);
    const size_t base = first * kBlockUnits;
    const size_t whole = base < units_ ? std::min((units_ - base) / kBlockUnits, filled_) : 0;
    for (size_t b = 0; b < whole; ++b) {
      masks_[b] = Kernels::EqualMask64(cur_ + 4 * (base + b * kBlockUnits),
                                       prev_ + 4 * (base + b * kBlockUnits));
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

// The positions of the set bits of every byte value, in order, padded with
// zeros: listing a mask's bits takes one lookup a byte and no branch.
struct BitPositionTable {
  alignas(64) uint8_t at[256][8];
  uint8_t count[256];
};

constexpr BitPositionTable MakeBitPositionTable() {
  BitPositionTable t{};
  for (unsigned v = 0; v < 256; ++v) {
    unsigned n = 0;
    for (unsigned bit = 0; bit < 8; ++bit) {
      if (v >> bit & 1) t.at[v][n++] = static_cast<uint8_t>(bit);
    }
    t.count[v] = static_cast<uint8_t>(n);
  }
  return t;
}

inline constexpr BitPositionTable kBitPositions = MakeBitPositionTable();

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

// Writes the payload. Literal data is copied in whole pieces where the batch
// is roomy (checked once for the batch) and exactly near the end of the frame
// or the output buffer.
template <class Kernels>
class PayloadWriter {
 public:
  VELMORA_TARGET PayloadWriter(uint8_t* out, const uint8_t* cur, size_t units)
      : out_(out), w_(out), cur_(cur), units_(units), outBytes_(MaxPayloadBytes(4 * units)) {}

  // Whether every copy made for the units [from, to) may run a piece past its
  // run: the reads stay in the frame, and the writes (literal data pending
  // from before `from`, then at most 4 bytes a unit plus one pair of counts
  // for the batch, since literal runs are three units apart, and a piece
  // beyond) stay in the output buffer, with a block to spare. What a copy
  // writes past its run is overwritten by what follows, or lies past the
  // payload.
  VELMORA_TARGET bool Roomy(size_t from, size_t to, bool literal) const {
    const size_t pending = literal ? 4 * (from - copied_) : 0;
    return 4 * to + kPieceBytes <= 4 * units_ &&
           Written() + pending + 4 * (to - from) + 4 * kBlockUnits + kPieceBytes <= outBytes_;
  }

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

  // Whole literal runs, given as pairs of start and end units from `p` to
  // `end`, each after an unchanged run from `runStart`; returns the end of
  // the last. Both counts of a run are known at once, so nothing waits to be
  // patched. The write position and the run start live in registers here: a
  // store through the byte pointer could otherwise alias them.
  template <bool kRoomy>
  VELMORA_TARGET size_t Literals(const uint32_t* p, const uint32_t* end, size_t runStart) {
    uint8_t* w = w_;
    const uint8_t* const cur = cur_;
    for (; p != end; p += 2) {
      const size_t start = p[0], stop = p[1];
      StoreCount(w, start - runStart);
      StoreCount(w + 4, stop - start);
      const size_t bytes = 4 * (stop - start);
      if (kRoomy) {
        CopyPieces<Kernels>(w + 8, cur + 4 * start, bytes);
      } else {
        std::memcpy(w + 8, cur + 4 * start, bytes);
      }
      w += 8 + bytes;
      runStart = stop;
    }
    w_ = w;
    return runStart;
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

// The edges of a batch as unit positions, in order.
class EdgeList {
 public:
  // Lists the set bits of `edges`, a block's, as base + bit; returns how many.
  template <class Kernels>
  VELMORA_TARGET size_t Add(uint64_t edges, size_t base) {
    if (!edges) return 0;  // inside long runs of either kind
    const size_t added = Kernels::ListBits(pos_ + count_, edges, static_cast<uint32_t>(base));
    count_ += added;
    return added;
  }

  VELMORA_TARGET const uint32_t* begin() const { return pos_; }
  VELMORA_TARGET const uint32_t* end() const { return pos_ + count_; }
  VELMORA_TARGET void Clear() { count_ = 0; }

 private:
  // A batch and what the last block's listing stores past its edges; a
  // batch has at most one edge per unit.
  uint32_t pos_[kBatchBlocks * kBlockUnits + 8];
  size_t count_ = 0;
};

// Writes the runs of the listed edges, which end at unit `to`. Each edge ends
// the run in progress and starts one of the other kind, so they come in
// pairs: the start and the end of a literal run. `literal` is the kind of
// the run in progress when the batch begins, and `runStart` its first unit;
// both are brought up to the end of the batch. A literal run still in
// progress then is copied up to `to`, while it is in cache.
template <bool kRoomy, class Writer>
VELMORA_TARGET inline void WriteRuns(Writer& payload, const EdgeList& list, size_t to,
                                     size_t& runStart, bool& literal) {
  const uint32_t* p = list.begin();
  const uint32_t* const end = list.end();
  if (literal && p != end) {
    runStart = *p++;
    payload.template CloseLiteral<kRoomy>(runStart);
    literal = false;
  }
  const uint32_t* const pairsEnd = p + (end - p) / 2 * 2;
  runStart = payload.template Literals<kRoomy>(p, pairsEnd, runStart);
  p = pairsEnd;
  if (p != end) {
    payload.OpenLiteral(*p - runStart, *p);
    runStart = *p;
    literal = true;
  }
  if (literal) payload.template CopyLiteral<kRoomy>(to);
}

// Writes the runs of the listed edges, which cover the units from `batchStart`
// to `to`, and starts a new list at `to`.
template <class Writer>
VELMORA_TARGET inline void Flush(Writer& payload, EdgeList& list, size_t& batchStart, size_t to,
                                 size_t& runStart, bool& literal) {
  if (payload.Roomy(batchStart, to, literal)) {
    WriteRuns<true>(payload, list, to, runStart, literal);
  } else {
    WriteRuns<false>(payload, list, to, runStart, literal);
  }
  list.Clear();
  batchStart = to;
}

template <class Kernels>
VELMORA_TARGET int32_t Encode(uint8_t* out, const uint8_t* cur, const uint8_t* prev,
                              int32_t units) {
  if (units <= 0) return 0;
  const size_t n = static_cast<size_t>(units);
  EqualityMasks<Kernels> masks(cur, prev, n);
  PayloadWriter<Kernels> payload(out, cur, n);
  EdgeList list;
  size_t runStart = 0;    // first unit of the run in progress, as written
  bool written = false;   // kind of that run; the first is unchanged
  size_t batchStart = 0;  // first unit whose edges are not written yet
  size_t block = 0;
  bool literal = false;  // kind of the run in progress after the listed edges
  uint64_t mask = masks(0), next = masks(1);
  uint64_t threeBefore = ThreeEqual(kAllEqual, mask);  // before the frame: all equal
  for (;;) {
    const size_t base = block * kBlockUnits;
    const uint64_t three = ThreeEqual(mask, next);
    const uint64_t edges = Edges(mask, three, threeBefore);
    // An odd number of edges changes the kind of run in progress.
    literal ^= (list.Add<Kernels>(edges, base) & 1) != 0;
    const size_t after = base + kBlockUnits;
    if (after > n) break;  // a literal run ends at the latest at unit n, seen by now
    if (!literal && mask == kAllEqual && next == kAllEqual) {
      // Unchanged through the next block: skip at memory speed.
      Flush(payload, list, batchStart, after, runStart, written);
      const size_t changed = masks.FirstDifference(after + kBlockUnits);
      if (changed >= n) break;
      block = changed / kBlockUnits;
      batchStart = block * kBlockUnits;
      mask = masks(block);
      next = masks(block + 1);
      threeBefore = ThreeEqual(kAllEqual, mask);  // all equal up to `changed`
      continue;
    }
    if (after - batchStart >= kBatchBlocks * kBlockUnits)
      Flush(payload, list, batchStart, after, runStart, written);
    ++block;
    threeBefore = three;
    mask = next;
    next = masks(block + 1);
  }
  Flush(payload, list, batchStart, n, runStart, written);
  if (!literal && runStart < n) payload.Unchanged(n - runStart);
  return static_cast<int32_t>(payload.Written() / 4);
}

}  // namespace
}  // namespace velmora::codec_internal
