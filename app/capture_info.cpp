#include "app/capture_info.h"

#include <cstdlib>

#include "engine/numbers.h"

namespace velmora {

namespace {

const char* YesNo(int16_t b) { return IsTrue16(b) ? "Yes" : "No"; }

// The file name without its folder.
std::string_view NameOf(std::string_view path) {
  const size_t slash = path.find_last_of("\\/");
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

// Samples per second in kHz as "##.000": no leading zero, so 500 Hz is ".500".
std::string KiloHertzText(int32_t samplesPerSec) {
  const int64_t v = samplesPerSec;
  const int64_t whole = std::llabs(v) / 1000, frac = std::llabs(v) % 1000;
  std::string out = v < 0 ? "-" : "";
  if (whole) out += std::to_string(whole);
  out += '.';
  out += static_cast<char>('0' + frac / 100);
  out += static_cast<char>('0' + frac / 10 % 10);
  out += static_cast<char>('0' + frac % 10);
  return out;
}

uint64_t ToBytes(double v) {
  if (!(v > 0)) return 0;
  if (v >= 18446744073709549568.0) return UINT64_MAX;
  return static_cast<uint64_t>(v);
}

}  // namespace

std::string CaptureInfoText(const CaptureSettings& s, std::string_view compressorName) {
  const std::string n = "\r\n";
  std::string t;
  if (!s.AviFile.empty()) {
    t += "作成AVI " + std::string(NameOf(s.AviFile)) + n;
    t += (s.HasCompressor != 0 ? std::string(compressorName) : std::string("未圧縮")) + n;
    t += "AVI色深度 " + std::to_string(IsTrue16(s.Avi24Bit) ? 24 : s.DisplayDepth) + "bit" + n;
  } else {
    t += "---AVIは作成しません---" + n + n + n;
  }
  t += n;
  const int64_t right = int64_t{s.Left} + s.Width, bottom = int64_t{s.Top} + s.Height;
  t += "キャプチャ領域 (" + std::to_string(s.Left) + "," + std::to_string(s.Top) + " - " +
       std::to_string(right) + "," + std::to_string(bottom) + ")" + n + n;
  t += "キャプチャ頻度 " + std::to_string(s.Fps) + "fps." + n;
  t += "キャプチャ時間 " + std::to_string(s.Seconds) + "秒" + n + n;
  t += "キャプチャ方法 Type" + std::to_string(s.Method) + n;
  t += "CPU解放 回数 " + std::to_string(s.CpuReleaseCount) + " 時間 " +
       std::to_string(s.CpuReleaseTime) + n;
  t += "キャプチャ解像度 " + std::to_string(s.DisplayDepth) + "bit" + n;
  t += std::string("マウスの書きこみ ") + YesNo(s.DrawMouse) + n;
  t += std::string("マウスに追従 ") + YesNo(s.FollowMouse) + n + n;
  const bool sound = !s.WaveFile.empty();
  t += std::string("サウンドキャプチャ") + (sound ? "Yes" : "No") + n;
  if (sound) {
    t += KiloHertzText(s.SampleRate) + "KHz " + (s.Channels == 2 ? "ステレオ" : "モノラル") + " " +
         std::to_string(s.BitsPerSample) + "ビット" + n + n;
    t += std::string(IsTrue16(s.DeleteWave) ? "Waveは作成後に削除する"
                                            : "Waveは作成後も削除しない") +
         n;
  } else {
    t += n + n + n;
  }
  t += std::string(IsTrue16(s.KeepMovie) ? "QRKは作成後も削除しない" : "QRKは作成後に削除する") + n;
  t += std::string("非同期書き込み ") + (IsTrue16(s.AsyncWrite) ? "する" : "しない");
  return t;
}

DiskEstimate EstimateDisk(const CaptureSettings& s, const VolumeDescription& volume) {
  // In floating point, as the sizes are rounded: a hostile region must
  // saturate rather than wrap.
  const double w = s.Width, h = s.Height, frames = static_cast<double>(s.Fps) * s.Seconds;
  const double frame = static_cast<double>(RoundHalfEven(w * s.DisplayDepth / 8 * h));
  const double aviDepth = IsTrue16(s.Avi24Bit) ? 24 : s.DisplayDepth;
  const double aviFrame = static_cast<double>(RoundHalfEven(h * w * aviDepth / 8));
  const double soundPerSec =
      s.WaveFile.empty()
          ? 0
          : static_cast<double>(RoundHalfEven(s.BitsPerSample / 8.0 * s.Channels * s.SampleRate));
  double total = frames * frame + s.Seconds * soundPerSec;
  if (!s.AviFile.empty()) total += frames * aviFrame;

  uint64_t free = volume.freeBytes;
  constexpr uint64_t kFileLimit = 4294967296;  // no file passes 4 GiB off NTFS
  if (volume.fileSystem != "NTFS" && free > kFileLimit) free = kFileLimit;
  // A pre-allocated file lives in memory on the older platform family.
  if (!volume.ntPlatform && IsTrue16(s.AsyncWrite)) free = volume.physicalMemory;

  const uint64_t bytes = ToBytes(total);
  constexpr uint64_t kMargin = 104857600;  // 100 MB kept free
  const bool warn = bytes > UINT64_MAX - kMargin || bytes + kMargin > free;
  return {bytes, free, warn, ByteCountText(bytes)};
}

std::string VolumeRootOf(std::string_view path) {
  const auto isSep = [](char c) { return c == '\\' || c == '/'; };
  if (path.size() >= 2 && path[1] == ':') return std::string(path.substr(0, 2)) + "\\";
  if (path.size() >= 2 && isSep(path[0]) && isSep(path[1])) {
    // Past the server name and the share name.
    size_t i = 2, parts = 0;
    while (i < path.size() && parts < 2) {
      if (isSep(path[i])) ++parts;
      ++i;
    }
    std::string root(path.substr(0, parts == 2 ? i - 1 : path.size()));
    return root + "\\";
  }
  return {};
}

std::string ByteCountText(uint64_t bytes) {
  const std::string digits = std::to_string(bytes);
  std::string out;
  for (size_t i = 0; i < digits.size(); ++i) {
    if (i && (digits.size() - i) % 3 == 0) out += ',';
    out += digits[i];
  }
  return out + " Bytes.";
}

}  // namespace velmora
