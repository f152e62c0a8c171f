#include "tests/opendml_check.h"

#include "engine/byte_order.h"

namespace velmora::avi::test {

std::vector<const Node*> Node::All(const std::string& code) const {
  std::vector<const Node*> out;
  for (const Node& k : kids)
    if ((k.IsList() ? k.form : k.id) == code) out.push_back(&k);
  return out;
}

const Node* Node::First(const std::string& code) const {
  const auto all = All(code);
  return all.empty() ? nullptr : all.front();
}

std::vector<uint8_t> ReadBytes(ByteSource& src, uint64_t at, size_t n) {
  std::vector<uint8_t> b(n);
  if (!src.Seek(at) || src.Read(b.data(), n) != n) b.clear();
  return b;
}

uint32_t Read32(ByteSource& src, uint64_t at) {
  const auto b = ReadBytes(src, at, 4);
  return b.size() == 4 ? LoadLE32U(b.data()) : 0xDEADBEEF;
}

namespace {

uint64_t Read64(ByteSource& src, uint64_t at) {
  return uint64_t{Read32(src, at)} | uint64_t{Read32(src, at + 4)} << 32;
}

std::string Code(uint32_t v) {
  return std::string{char(v), char(v >> 8), char(v >> 16), char(v >> 24)};
}

void Walk(ByteSource& src, uint64_t pos, uint64_t end, std::vector<Node>& out, std::string& error) {
  while (error.empty() && pos < end) {
    if (pos + 8 > end) {
      error = "chunk header past its parent at " + std::to_string(pos);
      return;
    }
    Node n;
    n.id = Code(Read32(src, pos));
    n.size = Read32(src, pos + 4);
    n.at = pos;
    n.data = pos + 8;
    const uint64_t next = n.data + n.size + (n.size & 1);
    if (next > end) {
      error = n.id + " at " + std::to_string(pos) + " runs past its parent";
      return;
    }
    if (n.IsList()) {
      n.form = Code(Read32(src, n.data));
      Walk(src, n.data + 4, n.data + n.size, n.kids, error);
    }
    out.push_back(std::move(n));
    pos = next;
  }
}

void CheckStandardIndex(ByteSource& src, uint64_t at, StreamSummary& s, uint32_t chunkId,
                        std::string& error) {
  const uint32_t longs = Read32(src, at + 8) & 0xFFFF;
  const uint32_t type = Read32(src, at + 8) >> 24;
  const uint32_t entries = Read32(src, at + 12);
  const uint64_t base = Read64(src, at + 20);
  if (longs != 2 || type != 1 || Read32(src, at + 16) != chunkId) {
    error = "bad standard index header at " + std::to_string(at);
    return;
  }
  for (uint32_t i = 0; i < entries && error.empty(); ++i) {
    const uint32_t off = Read32(src, at + 32 + i * 8);
    const uint32_t sz = Read32(src, at + 36 + i * 8);
    const uint64_t data = base + off;
    if (Read32(src, data - 8) != chunkId || Read32(src, data - 4) != (sz & 0x7FFFFFFF))
      error = "standard index entry " + std::to_string(i) + " of " + Code(chunkId) +
              " does not point at its chunk";
    s.chunkData.push_back(data);
    s.chunkSize.push_back(sz & 0x7FFFFFFF);
    s.chunkKey.push_back(!(sz & 0x80000000u));
  }
}

void CheckStream(ByteSource& src, const Node& strl, StreamSummary& s, std::string& error) {
  const Node* strh = strl.First("strh");
  const Node* strf = strl.First("strf");
  const Node* indx = strl.First("indx");
  if (!strh || !strf || !indx) {
    error = "strl without strh, strf or indx";
    return;
  }
  s.type = Code(Read32(src, strh->data));
  s.handler = Read32(src, strh->data + 4);
  s.strhLength = Read32(src, strh->data + 32);
  s.strf = ReadBytes(src, strf->data, strf->size);
  if (const Node* strn = strl.First("strn")) {
    const auto b = ReadBytes(src, strn->data, strn->size);
    s.name.assign(b.begin(), b.end());
    s.name.resize(s.name.find('\0'));
  }
  const uint32_t chunkId = Read32(src, indx->data + 8);
  s.superEntries = Read32(src, indx->data + 4);
  uint64_t units = 0;
  for (uint32_t i = 0; i < s.superEntries && error.empty(); ++i) {
    const uint64_t e = indx->data + 24 + i * 16;
    const uint64_t ix = Read64(src, e);
    const uint32_t ixSize = Read32(src, e + 8);
    const uint32_t duration = Read32(src, e + 12);
    if (Code(Read32(src, ix)).substr(0, 2) != "ix" || Read32(src, ix + 4) + 8 != ixSize) {
      error = "super index entry " + std::to_string(i) + " does not point at a standard index";
      return;
    }
    const size_t before = s.chunkData.size();
    CheckStandardIndex(src, ix, s, chunkId, error);
    if (s.type == "vids" && duration != s.chunkData.size() - before)
      error = "super index duration differs from its entries";
    if (s.type == "auds") {
      uint64_t bytes = 0;
      for (size_t k = before; k < s.chunkSize.size(); ++k) bytes += s.chunkSize[k];
      const uint32_t blockAlign = Read32(src, strh->data + 44);
      if (blockAlign == 0 || bytes / blockAlign != duration)
        error = "audio duration differs from its bytes";
    }
    units += duration;
  }
  if (error.empty() && units != s.strhLength) error = "strh dwLength differs from the index";
}

void CheckLegacyIndex(ByteSource& src, const Node& idx1, const Node& movi, AviSummary& out) {
  out.idx1Entries = idx1.size / 16;
  for (uint32_t i = 0; i < out.idx1Entries && out.error.empty(); ++i) {
    const uint64_t e = idx1.data + i * 16;
    const uint32_t id = Read32(src, e), off = Read32(src, e + 8), sz = Read32(src, e + 12);
    const uint64_t chunk = movi.data + off;
    if (Read32(src, chunk) != id || Read32(src, chunk + 4) != sz)
      out.error = "idx1 entry " + std::to_string(i) + " does not point at its chunk";
  }
}
}  // namespace

AviSummary CheckOpenDml(ByteSource& src, uint64_t size) {
  AviSummary out;
  Walk(src, 0, size, out.top, out.error);
  if (!out.error.empty()) return out;
  if (out.top.empty() || out.top[0].id != "RIFF" || out.top[0].form != "AVI ") {
    out.error = "no RIFF AVI";
    return out;
  }
  for (size_t i = 1; i < out.top.size(); ++i)
    if (out.top[i].id != "RIFF" || out.top[i].form != "AVIX") out.error = "piece is not RIFF AVIX";
  const Node& first = out.top[0];
  const Node* hdrl = first.First("hdrl");
  const Node* movi = first.First("movi");
  const Node* idx1 = first.First("idx1");
  const Node* odml = hdrl ? hdrl->First("odml") : nullptr;
  if (!hdrl || !movi || !idx1 || !odml || !hdrl->First("avih") || !odml->First("dmlh")) {
    out.error = "first piece lacks hdrl, avih, odml/dmlh, movi or idx1";
    return out;
  }
  out.avihFrames = Read32(src, hdrl->First("avih")->data + 16);
  out.dmlhFrames = Read32(src, odml->First("dmlh")->data);
  for (const Node* strl : hdrl->All("strl")) {
    out.streams.emplace_back();
    CheckStream(src, *strl, out.streams.back(), out.error);
  }
  if (out.error.empty()) CheckLegacyIndex(src, *idx1, *movi, out);
  if (out.error.empty() && !out.streams.empty() && out.dmlhFrames != out.streams[0].strhLength)
    out.error = "dmlh differs from the video strh";
  return out;
}

}  // namespace velmora::avi::test
