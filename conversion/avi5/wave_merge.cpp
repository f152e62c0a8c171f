#include "conversion/avi5/wave_merge.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <vector>

#include "conversion/avi5/avi_reader.h"
#include "conversion/avi5/byte_sink.h"
#include "conversion/avi5/wave_reader.h"
#include "engine/file_idioms.h"

namespace velmora::avi {

namespace fs = std::filesystem;

namespace {

bool FileSize(const std::string& utf8, uint64_t& size) {
  std::error_code ec;
  const auto s = fs::file_size(PathFromUtf8(utf8), ec);
  if (ec) return false;
  size = s;
  return true;
}

// True when `done` reaches the next hundredth of `total` (every step when
// there are fewer than 100): the caller's window is redrawn at most 100
// times, however long the movie.
bool NextHundredth(int32_t done, int32_t total) {
  return int64_t{done} * 100 / total != int64_t{done - 1} * 100 / total;
}

class Copier {
 public:
  Copier(ByteSource& avi, const AviVideoStream& video, ByteSource& wave, const WaveInfo& w,
         AviWriter& out, const MergeProgress& progress)
      : avi_(avi), video_(video), wave_(wave), w_(w), out_(out), progress_(progress) {}

  AviStatus Run() {
    const uint64_t totalBlocks = w_.dataBytes / w_.blockAlign;
    const auto total = int32_t(std::min<size_t>(video_.chunks.size(), INT32_MAX));
    uint64_t frame = 0;
    int32_t done = 0;
    for (const AviVideoChunk& c : video_.chunks) {
      if (!c.palette) {
        ++frame;
        const uint64_t upTo = std::min(
            totalBlocks, BlocksBeforeFrame(frame, video_.scale, video_.rate, w_.sampleRate));
        if (AviStatus st = Sound(upTo); st != kAviOk) return st;
      }
      buffer_.resize(std::max<size_t>(buffer_.size(), c.size));
      if (!avi_.Seek(c.offset) || avi_.Read(buffer_.data(), c.size) != c.size) return kAviBrokenAvi;
      const std::span<const uint8_t> data(buffer_.data(), c.size);
      const AviStatus st = c.palette ? out_.WritePaletteChunk(data) : out_.WriteVideo(data, c.key);
      if (st != kAviOk) return st;
      if (progress_ && done < total && NextHundredth(++done, total)) progress_(done, total);
    }
    // Sound longer than the pictures follows in chunks of one second.
    while (blocks_ < totalBlocks)
      if (AviStatus st = Sound(std::min(totalBlocks, blocks_ + w_.sampleRate)); st != kAviOk)
        return st;
    return kAviOk;
  }

 private:
  AviStatus Sound(uint64_t upTo) {
    if (upTo <= blocks_) return kAviOk;
    const uint64_t bytes = (upTo - blocks_) * w_.blockAlign;
    sound_.resize(size_t(bytes));
    if (!wave_.Seek(w_.dataOffset + blocks_ * w_.blockAlign) ||
        wave_.Read(sound_.data(), sound_.size()) != sound_.size())
      return kAviBrokenWave;
    blocks_ = upTo;
    return out_.WriteAudio(sound_);
  }

  ByteSource& avi_;
  const AviVideoStream& video_;
  ByteSource& wave_;
  const WaveInfo& w_;
  AviWriter& out_;
  const MergeProgress& progress_;
  std::vector<uint8_t> buffer_, sound_;
  uint64_t blocks_ = 0;
};

AviStatus WriteMerged(ByteSource& avi, const AviVideoStream& video, ByteSource& wave,
                      const WaveInfo& w, const std::string& tempPath, const MergeProgress& progress,
                      AviWriterOptions options) {
  auto sink = FileByteSink::Create(tempPath);
  if (!sink) return kAviCannotCreate;
  AviWriter out(*sink, options);
  VideoStreamFormat v;
  v.width = video.width;
  v.height = video.height < 0 ? -video.height : video.height;
  v.fps = int32_t(std::min<uint32_t>(video.rate, INT32_MAX));
  v.scale = video.scale;
  v.handler = video.handler;
  v.compressed = video.compressed;
  v.quality = video.quality;
  v.strf = video.strf;
  v.name = video.name;
  AudioStreamFormat a;
  a.strf = w.fmt;
  a.blockAlign = w.blockAlign;
  a.bytesPerSecond = w.bytesPerSecond;
  AviStatus st = out.Begin(v, &a);
  if (st == kAviOk) st = Copier(avi, video, wave, w, out, progress).Run();
  const AviStatus closed = out.Close();
  if (st == kAviOk) st = closed;
  if (!sink->Finish() && st == kAviOk) st = kAviWriteFailed;
  return st;
}

}  // namespace

uint64_t BlocksBeforeFrame(uint64_t frame, uint32_t scale, uint32_t rate, uint32_t sampleRate) {
  if (rate == 0) return 0;
  // Split so that no product leaves 64 bits: the remainder is below rate,
  // and rate and sampleRate are 32-bit.
  const uint64_t ticks = frame * scale;
  return ticks / rate * sampleRate + ticks % rate * sampleRate / rate;
}

AviStatus MergeWaveIntoAvi(const std::string& utf8AviPath, const std::string& utf8WavePath,
                           const MergeProgress& progress, AviWriterOptions options) {
  uint64_t aviSize = 0, waveSize = 0;
  if (!FileSize(utf8AviPath, aviSize)) return kAviCannotOpenAvi;
  auto avi = FileByteSource::Open(utf8AviPath);
  if (!avi) return kAviCannotOpenAvi;
  if (!FileSize(utf8WavePath, waveSize)) return kAviCannotOpenWave;
  auto wave = FileByteSource::Open(utf8WavePath);
  if (!wave) return kAviCannotOpenWave;

  AviVideoStream video;
  AviStatus st = ReadAviVideo(*avi, aviSize, video);
  if (st != kAviOk) return st;
  WaveInfo w;
  st = ParseWave(*wave, waveSize, w);
  if (st != kAviOk) return st;

  const fs::path target = PathFromUtf8(utf8AviPath);
  fs::path temp = target;
  temp += ".wavmerge~";
  st = WriteMerged(*avi, video, *wave, w, Utf8FromPath(temp), progress, options);
  avi.reset();
  wave.reset();
  std::error_code ec;
  if (st == kAviOk) {
    fs::rename(temp, target, ec);
    if (ec) st = kAviCannotReplace;
  }
  if (st != kAviOk) fs::remove(temp, ec);
  return st;
}

}  // namespace velmora::avi
