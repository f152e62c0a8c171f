#include "app/capture_settings.h"

#include <cstdio>

#include "engine/byte_order.h"
#include "engine/byte_source.h"
#include "engine/file_idioms.h"

namespace velmora {

CaptureSettings DefaultSettings(bool isNtPlatform) {
  CaptureSettings s;
  s.Width = 320;
  s.Height = 240;
  s.Fps = 30;
  s.Seconds = 20;
  s.Method = 1;
  s.CpuReleaseCount = 1;
  s.CpuReleaseTime = 1;
  s.MovieFile = "c:\\test.QRK";
  s.KeepMovie = kTrue16;
  s.DrawMouse = kTrue16;
  s.AviFile = "xxx";
  s.AsyncWrite = Bool16(isNtPlatform);
  return s;
}

AnsiCodec IdentityAnsiCodec() {
  const auto same = [](const std::string& s) -> std::optional<std::string> { return s; };
  return {same, same};
}

namespace {

// Appends fields in file order; a text that does not convert, or is too
// long for its length word, fails the whole record.
class FieldWriter {
 public:
  explicit FieldWriter(const AnsiCodec& codec) : codec_(codec) {}
  void I32(int32_t v) {
    uint8_t b[4];
    StoreLE32(b, v);
    out_.insert(out_.end(), b, b + 4);
  }
  void B16(int16_t v) {
    uint8_t b[2];
    StoreLE16(b, v);
    out_.insert(out_.end(), b, b + 2);
  }
  void Str(const std::string& utf8) {
    const auto ansi = codec_.toAnsi(utf8);
    if (!ansi || ansi->size() > 0xFFFF) {
      ok_ = false;
      return;
    }
    B16(static_cast<int16_t>(static_cast<uint16_t>(ansi->size())));
    out_.insert(out_.end(), ansi->begin(), ansi->end());
  }
  // An address means nothing in a file: 0 is written whatever the record holds.
  void Address(int32_t) { I32(0); }
  std::optional<std::vector<uint8_t>> Take() {
    if (!ok_) return std::nullopt;
    return std::move(out_);
  }

 private:
  const AnsiCodec& codec_;
  std::vector<uint8_t> out_;
  bool ok_ = true;
};

// Takes fields in file order; every take is checked against the end, and
// the first failure sticks.
class FieldReader {
 public:
  FieldReader(std::span<const uint8_t> b, const AnsiCodec& codec) : b_(b), codec_(codec) {}
  void I32(int32_t& v) {
    if (Have(4)) v = LoadLE32(b_.data() + Advance(4));
  }
  void B16(int16_t& v) {
    if (Have(2)) v = LoadLE16(b_.data() + Advance(2));
  }
  void Str(std::string& v) {
    if (!Have(2)) return;
    const size_t n = static_cast<uint16_t>(LoadLE16(b_.data() + Advance(2)));
    if (!Have(n)) return;
    const auto* p = b_.data() + Advance(n);
    auto utf8 = codec_.toUtf8(std::string(p, p + n));
    if (utf8)
      v = std::move(*utf8);
    else
      ok_ = false;
  }
  void Address(int32_t& v) { I32(v); }
  bool Ok() const { return ok_; }

 private:
  bool Have(size_t n) {
    if (ok_ && b_.size() - pos_ < n) ok_ = false;
    return ok_;
  }
  size_t Advance(size_t n) {
    pos_ += n;
    return pos_ - n;
  }
  std::span<const uint8_t> b_;
  const AnsiCodec& codec_;
  size_t pos_ = 0;
  bool ok_ = true;
};

// The record's fields in file order, written once for both directions:
// `io` is a FieldWriter over a const record or a FieldReader over one to fill.
template <typename Io, typename Settings>
void TransferFields(Io& io, Settings& s) {
  for (auto* v : {&s.Left, &s.Top, &s.Width, &s.Height, &s.Fps, &s.Seconds, &s.Method,
                  &s.CpuReleaseCount, &s.CpuReleaseTime}) {
    io.I32(*v);
  }
  io.Str(s.MovieFile);
  io.B16(s.KeepMovie);
  io.I32(s.DisplayDepth);
  io.B16(s.DrawMouse);
  io.B16(s.FollowMouse);
  io.Str(s.AviFile);
  io.B16(s.HasCompressor);
  io.Address(s.CompressorOptionsAddress);
  io.B16(s.Avi24Bit);
  io.Str(s.WaveFile);
  io.Str(s.WaveTempFile);
  io.I32(s.SampleRate);
  io.I32(s.BitsPerSample);
  io.I32(s.Channels);
  io.B16(s.DeleteWave);
  io.I32(s.RecordingLine);
  io.I32(s.PriorityClass);
  io.B16(s.AsyncWrite);
}

}  // namespace

std::optional<std::vector<uint8_t>> EncodeSettings(const CaptureSettings& s,
                                                   const AnsiCodec& codec) {
  FieldWriter w(codec);
  TransferFields(w, s);
  return w.Take();
}

std::optional<CaptureSettings> DecodeSettings(std::span<const uint8_t> bytes,
                                              const AnsiCodec& codec) {
  CaptureSettings s;
  FieldReader r(bytes, codec);
  TransferFields(r, s);
  if (!r.Ok()) return std::nullopt;
  return s;
}

namespace {

// A settings record plus strings of at most 4 x 65535 bytes; anything
// longer is not a settings file.
constexpr size_t kMaxSettingsFileBytes = 86 + 4 * 65535;

}  // namespace

CaptureSettings ReadSettingsFile(const std::string& utf8Path, const AnsiCodec& codec) {
  const UniqueCFile f(OpenFileUtf8(utf8Path, "rb"));
  if (!f) return CaptureSettings{};
  std::vector<uint8_t> bytes(kMaxSettingsFileBytes);
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), f.get()));
  return DecodeSettings(bytes, codec).value_or(CaptureSettings{});
}

int32_t WriteSettingsFile(const std::string& utf8Path, const CaptureSettings& s,
                          const AnsiCodec& codec) {
  const auto bytes = EncodeSettings(s, codec);
  if (!bytes) return -1;
  return ReplaceFileUtf8(utf8Path, *bytes);
}

}  // namespace velmora
