#include "conversion/avi5/tests/riff_tree.h"

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
  if (b.size() != 4) return 0xDEADBEEF;
  return uint32_t(b[0]) | uint32_t(b[1]) << 8 | uint32_t(b[2]) << 16 | uint32_t(b[3]) << 24;
}

uint64_t Read64(ByteSource& src, uint64_t at) {
  return uint64_t{Read32(src, at)} | uint64_t{Read32(src, at + 4)} << 32;
}

namespace {
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
}  // namespace

std::vector<Node> WalkRiff(ByteSource& src, uint64_t size, std::string& error) {
  std::vector<Node> top;
  Walk(src, 0, size, top, error);
  return top;
}

}  // namespace velmora::avi::test
