#include "conversion/avi5/avi_reader.h"

#include <algorithm>
#include <array>

#include "conversion/avi5/riff_writer.h"
#include "engine/byte_order.h"

namespace velmora::avi {

namespace {
constexpr uint32_t kMaxHeaderChunk = 1 << 20;  // strf, strh, indexes read whole are capped
constexpr int kMaxDepth = 4;

class Reader {
 public:
  Reader(ByteSource& src, uint64_t size, AviVideoStream& out) : src_(src), size_(size), out_(out) {}

  AviStatus Run() {
    uint64_t pos = 0;
    int pieces = 0;
    while (pos + 12 <= size_) {
      uint32_t id, form;
      uint64_t body, bodySize;
      if (!Header(pos, size_, id, body, bodySize) || !Read32(body, form)) return kAviBrokenAvi;
      if (id != FourCc("RIFF")) return kAviBrokenAvi;
      if (form != (pieces == 0 ? FourCc("AVI ") : FourCc("AVIX"))) return kAviBrokenAvi;
      const AviStatus st = Walk(body + 4, body + bodySize, 0);
      if (st != kAviOk) return st;
      ++pieces;
      pos = body + bodySize + (bodySize & 1);
    }
    if (pieces == 0 || !haveVideo_) return kAviBrokenAvi;
    for (AviVideoChunk& c : out_.chunks) c.key = !c.palette && !nonKey_.contains(c.offset);
    return kAviOk;
  }

 private:
  bool Read(uint64_t at, void* dst, size_t n) {
    return at + n <= size_ && src_.Seek(at) && src_.Read(dst, n) == n;
  }
  bool Read32(uint64_t at, uint32_t& v) {
    std::array<uint8_t, 4> b{};
    if (!Read(at, b.data(), 4)) return false;
    v = LoadLE32U(b.data());
    return true;
  }
  // A chunk header at `pos` whose data must end by `limit`.
  bool Header(uint64_t pos, uint64_t limit, uint32_t& id, uint64_t& body, uint64_t& size) {
    uint32_t s32;
    if (pos + 8 > limit || !Read32(pos, id) || !Read32(pos + 4, s32)) return false;
    body = pos + 8;
    size = s32;
    return body + size <= limit;
  }
  bool ReadWhole(uint64_t body, uint64_t size, std::vector<uint8_t>& v) {
    if (size > kMaxHeaderChunk) return false;
    v.resize(size_t(size));
    return Read(body, v.data(), v.size());
  }

  AviStatus Walk(uint64_t pos, uint64_t end, int depth) {
    if (depth > kMaxDepth) return kAviBrokenAvi;
    while (pos + 8 <= end) {
      uint32_t id;
      uint64_t body, size;
      if (!Header(pos, end, id, body, size)) return kAviBrokenAvi;
      AviStatus st = kAviOk;
      if (id == FourCc("LIST")) {
        uint32_t form;
        if (size < 4 || !Read32(body, form)) return kAviBrokenAvi;
        if (form == FourCc("strl"))
          st = StreamList(body + 4, body + size);
        else if (form == FourCc("hdrl") || form == FourCc("movi") || form == FourCc("rec "))
          st = Walk(body + 4, body + size, depth + 1);
      } else if (id == FourCc("idx1")) {
        st = LegacyIndex(body, size);
      } else {
        st = Chunk(id, body, size);
      }
      if (st != kAviOk) return st;
      pos = body + size + (size & 1);
    }
    return kAviOk;
  }

  AviStatus StreamList(uint64_t pos, uint64_t end) {
    const int index = streams_++;
    std::vector<uint8_t> strh, strf;
    std::string name;
    while (pos + 8 <= end) {
      uint32_t id;
      uint64_t body, size;
      if (!Header(pos, end, id, body, size)) return kAviBrokenAvi;
      if (id == FourCc("strh") && !ReadWhole(body, size, strh)) return kAviBrokenAvi;
      if (id == FourCc("strf") && !ReadWhole(body, size, strf)) return kAviBrokenAvi;
      if (id == FourCc("strn")) {
        std::vector<uint8_t> n;
        if (!ReadWhole(body, size, n)) return kAviBrokenAvi;
        name.assign(n.begin(), n.end());
        name.resize(name.find('\0') == std::string::npos ? name.size() : name.find('\0'));
      }
      pos = body + size + (size & 1);
    }
    if (strh.size() < 48) return kAviBrokenAvi;
    if (LoadLE32U(&strh[0]) != FourCc("vids") || haveVideo_) return kAviOk;
    if (strf.size() < 40 || index > 99) return kAviBrokenAvi;
    haveVideo_ = true;
    out_.handler = LoadLE32U(&strh[4]);
    out_.scale = LoadLE32U(&strh[20]);
    out_.rate = LoadLE32U(&strh[24]);
    out_.quality = LoadLE32(&strh[40]);
    out_.width = LoadLE32(&strf[4]);
    out_.height = LoadLE32(&strf[8]);
    out_.compressed = LoadLE32U(&strf[16]) != 0;
    out_.strf = std::move(strf);
    out_.name = std::move(name);
    if (out_.scale == 0 || out_.rate == 0 || out_.width <= 0 || out_.height == 0)
      return kAviBrokenAvi;
    const char digits[2] = {char('0' + index / 10), char('0' + index % 10)};
    prefix_ = uint32_t(uint8_t(digits[0])) | uint32_t(uint8_t(digits[1])) << 8;
    return kAviOk;
  }

  bool IsVideoId(uint32_t id) const { return haveVideo_ && (id & 0xFFFF) == prefix_; }

  AviStatus Chunk(uint32_t id, uint64_t body, uint64_t size) {
    const uint32_t kind = id >> 16;
    if (IsVideoId(id) && (kind == (FourCc("00db") >> 16) || kind == (FourCc("00dc") >> 16) ||
                          kind == (FourCc("00pc") >> 16))) {
      out_.chunks.push_back({body, uint32_t(size), kind == (FourCc("00pc") >> 16), true});
      return kAviOk;
    }
    // The standard index of the video stream ('ix##') carries the key-frame flags.
    const bool standardIndex =
        (id & 0xFFFF) == (FourCc("ix00") & 0xFFFF) && haveVideo_ && (id >> 16) == prefix_;
    if (!standardIndex) return kAviOk;
    std::array<uint8_t, 24> h{};
    if (size < h.size() || !Read(body, h.data(), h.size())) return kAviBrokenAvi;
    const uint32_t entries = LoadLE32U(&h[4]);
    if (LoadLE16(&h[0]) != 2 || h[3] != 1 || uint64_t{entries} * 8 > size - h.size())
      return kAviBrokenAvi;
    const uint64_t base = uint64_t{LoadLE32U(&h[12])} | uint64_t{LoadLE32U(&h[16])} << 32;
    // Read in blocks: a piece of small frames holds millions of entries.
    std::vector<uint8_t> e;
    const uint64_t bytes = uint64_t{entries} * 8;
    for (uint64_t done = 0; done < bytes; done += e.size()) {
      if (!ReadWhole(body + h.size() + done, std::min<uint64_t>(bytes - done, 8 * 65536), e))
        return kAviBrokenAvi;
      for (size_t i = 0; i + 8 <= e.size(); i += 8)
        if (LoadLE32U(&e[i + 4]) & 0x80000000u) nonKey_.insert(base + LoadLE32U(&e[i]));
    }
    return kAviOk;
  }

  // idx1 offsets count from the 'movi' code of the first piece; entries of
  // the video stream without the key-frame flag mark delta frames.
  AviStatus LegacyIndex(uint64_t body, uint64_t size) {
    if (!haveVideo_ || out_.chunks.empty()) return kAviOk;
    const uint64_t movi = out_.chunks.front().offset;  // locate by the first chunk
    std::vector<uint8_t> e;
    const uint64_t bytes = size - size % 16;
    for (uint64_t done = 0; done < bytes; done += e.size()) {
      if (!ReadWhole(body + done, std::min<uint64_t>(bytes - done, 16 * 4096), e))
        return kAviBrokenAvi;
      for (size_t i = 0; i + 16 <= e.size(); i += 16) {
        const uint32_t id = LoadLE32U(&e[i]);
        if (!IsVideoId(id) || (id >> 16) == (FourCc("00pc") >> 16)) continue;
        if (firstLegacy_ == UINT64_MAX) firstLegacy_ = LoadLE32U(&e[i + 8]);
        if (!(LoadLE32U(&e[i + 4]) & 0x10))
          nonKey_.insert(movi + LoadLE32U(&e[i + 8]) - firstLegacy_);
      }
    }
    return kAviOk;
  }

  ByteSource& src_;
  uint64_t size_;
  AviVideoStream& out_;
  int streams_ = 0;
  bool haveVideo_ = false;
  uint32_t prefix_ = 0;
  uint64_t firstLegacy_ = UINT64_MAX;
  std::unordered_set<uint64_t> nonKey_;
};
}  // namespace

AviStatus ReadAviVideo(ByteSource& src, uint64_t fileSize, AviVideoStream& out) {
  out = AviVideoStream{};
  return Reader(src, fileSize, out).Run();
}

}  // namespace velmora::avi
