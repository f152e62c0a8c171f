#include "conversion/avi5/avi_writer.h"

#include <algorithm>
#include <array>

namespace velmora::avi {

namespace {
constexpr uint32_t kAvifHasIndex = 0x10;
constexpr uint32_t kAvifIsInterleaved = 0x100;
constexpr uint32_t kAvifTrustCkType = 0x800;
constexpr uint32_t kAviifKeyFrame = 0x10;
constexpr uint32_t kAviifNoTime = 0x100;
constexpr uint8_t kIndexOfIndexes = 0;
constexpr uint8_t kIndexOfChunks = 1;
constexpr uint32_t kSuperIndexHeadBytes = 24;
constexpr uint32_t kSuperEntryBytes = 16;
constexpr uint32_t kDmlhBytes = 248;
constexpr uint32_t kNonKeyBit = 0x80000000u;
}  // namespace

AviWriter::AviWriter(ByteSink& sink, AviWriterOptions options) : w_(sink), options_(options) {}

AviStatus AviWriter::Status() const { return w_.Ok() ? kAviOk : kAviWriteFailed; }

void AviWriter::WriteStreamHeaderList(size_t streamIndex, uint32_t type, uint32_t handler,
                                      uint32_t scale, uint32_t rate, int32_t quality,
                                      uint32_t sampleSize, std::span<const uint8_t> strf,
                                      const std::string& name) {
  Stream& s = streams_[streamIndex];
  const uint64_t strl = w_.StartList(FourCc("LIST"), FourCc("strl"));

  const uint64_t strh = w_.StartTag(FourCc("strh"));
  w_.Put32(type);     // fccType
  w_.Put32(handler);  // fccHandler
  w_.Put32(0);        // dwFlags
  w_.Put16(0);        // wPriority
  w_.Put16(0);        // wLanguage
  w_.Put32(0);        // dwInitialFrames
  w_.Put32(scale);    // dwScale
  w_.Put32(rate);     // dwRate
  w_.Put32(0);        // dwStart
  s.strhLengthAt = w_.Position();
  w_.Put32(0);  // dwLength, filled at close
  s.strhBufferAt = w_.Position();
  w_.Put32(0);                  // dwSuggestedBufferSize, filled at close
  w_.Put32(uint32_t(quality));  // dwQuality
  w_.Put32(sampleSize);         // dwSampleSize
  const bool video = type == FourCc("vids");
  w_.Put16(0);                              // rcFrame.left
  w_.Put16(0);                              // rcFrame.top
  w_.Put16(video ? uint16_t(width_) : 0);   // rcFrame.right
  w_.Put16(video ? uint16_t(height_) : 0);  // rcFrame.bottom
  w_.EndTag(strh);

  const uint64_t strfAt = w_.StartTag(FourCc("strf"));
  w_.PutBytes(strf);
  w_.EndTag(strfAt);

  // Super index: the space for every entry is reserved now, so the header
  // never has to grow when later pieces are added.
  const uint64_t indx = w_.StartTag(FourCc("indx"));
  s.indxAt = indx;
  w_.Put16(4);               // wLongsPerEntry
  w_.Put8(0);                // bIndexSubType
  w_.Put8(kIndexOfIndexes);  // bIndexType
  w_.Put32(0);               // nEntriesInUse, filled at close
  w_.Put32(s.chunkId);       // dwChunkId
  w_.PutZeros(12);           // dwReserved[3]
  w_.PutZeros(uint64_t{options_.superIndexEntries} * kSuperEntryBytes);  // aIndex[]
  w_.EndTag(indx);

  if (!name.empty()) {
    const uint64_t strn = w_.StartTag(FourCc("strn"));
    w_.PutBytes(name.data(), name.size());
    w_.Put8(0);
    w_.EndTag(strn);
  }
  w_.EndTag(strl);
}

AviStatus AviWriter::Begin(const VideoStreamFormat& video, const AudioStreamFormat* audio) {
  if (begun_) return kAviAlreadyOpen;
  if (video.width <= 0 || video.height <= 0 || video.width > 0xFFFF || video.height > 0xFFFF ||
      video.fps <= 0 || video.scale == 0 || video.strf.empty() || options_.superIndexEntries == 0)
    return kAviBadParameter;
  if (audio && (audio->blockAlign == 0 || audio->bytesPerSecond == 0 || audio->strf.empty()))
    return kAviBadParameter;
  begun_ = true;
  width_ = video.width;
  height_ = video.height;
  fps_ = video.fps;
  scale_ = video.scale;

  streams_.resize(audio ? 2 : 1);
  streams_[0].chunkId = video.compressed ? FourCc("00dc") : FourCc("00db");
  streams_[0].indexId = FourCc("ix00");
  if (audio) {
    streams_[1].chunkId = FourCc("01wb");
    streams_[1].indexId = FourCc("ix01");
    streams_[1].blockAlign = audio->blockAlign;
    audioBytesPerSecond_ = audio->bytesPerSecond;
  }

  riffStart_ = w_.StartList(FourCc("RIFF"), FourCc("AVI "));
  const uint64_t hdrl = w_.StartList(FourCc("LIST"), FourCc("hdrl"));
  const uint64_t avih = w_.StartTag(FourCc("avih"));
  avihAt_ = avih;
  w_.Put32(uint32_t(uint64_t{1000000} * video.scale / uint32_t(video.fps)));  // dwMicroSecPerFrame
  w_.Put32(0);  // dwMaxBytesPerSec, filled at close
  w_.Put32(0);  // dwPaddingGranularity
  w_.Put32(kAvifHasIndex | kAvifIsInterleaved | kAvifTrustCkType);  // dwFlags
  w_.Put32(0);                          // dwTotalFrames (first piece), filled at close
  w_.Put32(0);                          // dwInitialFrames
  w_.Put32(uint32_t(streams_.size()));  // dwStreams
  w_.Put32(0);                          // dwSuggestedBufferSize, filled at close
  w_.Put32(uint32_t(video.width));      // dwWidth
  w_.Put32(uint32_t(video.height));     // dwHeight
  w_.PutZeros(16);                      // dwReserved[4]
  w_.EndTag(avih);

  WriteStreamHeaderList(0, FourCc("vids"), video.handler, video.scale, uint32_t(video.fps),
                        video.quality, 0, video.strf, video.name);
  if (audio)
    WriteStreamHeaderList(1, FourCc("auds"), 0, audio->blockAlign, audio->bytesPerSecond, -1,
                          audio->blockAlign, audio->strf, audio->name);

  const uint64_t odml = w_.StartList(FourCc("LIST"), FourCc("odml"));
  const uint64_t dmlh = w_.StartTag(FourCc("dmlh"));
  dmlhAt_ = dmlh;
  w_.Put32(0);  // dwTotalFrames, filled at close
  w_.PutZeros(kDmlhBytes - 4);
  w_.EndTag(dmlh);
  w_.EndTag(odml);
  w_.EndTag(hdrl);

  moviStart_ = w_.StartList(FourCc("LIST"), FourCc("movi"));
  pieces_ = 1;
  return Status();
}

AviStatus AviWriter::WriteChunk(size_t streamIndex, uint32_t chunkId, std::span<const uint8_t> data,
                                bool key, bool indexed) {
  if (!begun_ || closed_) return kAviNotOpen;
  if (data.size() >= kNonKeyBit) return kAviBadParameter;
  if (tooManyPieces_) return kAviWriteFailed;
  const uint64_t need = 8 + data.size() + (data.size() & 1);
  const bool pieceEmpty = std::all_of(streams_.begin(), streams_.end(),
                                      [](const Stream& s) { return s.piece.empty(); });
  if (!pieceEmpty && w_.Position() + need - riffStart_ > options_.riffSplitBytes) {
    EndPiece();
    if (tooManyPieces_) return kAviWriteFailed;
    StartPiece();
  }

  Stream& s = streams_[streamIndex];
  const uint64_t at = w_.Position();
  const auto size = static_cast<uint32_t>(data.size());
  w_.Put32(chunkId);
  w_.Put32(size);
  w_.PutBytes(data);
  if (size & 1) w_.Put8(0);

  if (indexed) {
    s.piece.push_back({uint32_t(at + 8 - moviStart_), size, key});
    s.maxChunk = std::max(s.maxChunk, size);
    const uint64_t units = streamIndex == 0 ? 1 : size / s.blockAlign;
    s.units += units;
    s.pieceUnits += units;
    if (pieces_ == 1 && streamIndex == 0) ++firstPieceFrames_;
  }
  if (pieces_ == 1)
    legacy_.push_back({chunkId, indexed ? (key ? kAviifKeyFrame : 0) : kAviifNoTime,
                       uint32_t(at - moviStart_), size});
  return Status();
}

AviStatus AviWriter::WriteVideo(std::span<const uint8_t> frame, bool keyFrame) {
  if (streams_.empty()) return kAviNotOpen;
  return WriteChunk(0, streams_[0].chunkId, frame, keyFrame, true);
}

AviStatus AviWriter::WritePaletteChange(std::span<const uint8_t, 1024> colourTable) {
  std::array<uint8_t, 4 + 1024> chunk{};
  chunk[0] = 0;                       // bFirstEntry
  chunk[1] = 0;                       // bNumEntries: 0 stands for all 256
  chunk[2] = chunk[3] = 0;            // wFlags
  for (size_t i = 0; i < 256; ++i) {  // peNew[]: red, green, blue, flags
    chunk[4 + i * 4 + 0] = colourTable[i * 4 + 2];
    chunk[4 + i * 4 + 1] = colourTable[i * 4 + 1];
    chunk[4 + i * 4 + 2] = colourTable[i * 4 + 0];
    chunk[4 + i * 4 + 3] = 0;
  }
  return WritePaletteChunk(chunk);
}

AviStatus AviWriter::WritePaletteChunk(std::span<const uint8_t> palChange) {
  // Palette changes stay out of the standard index: readers count every
  // entry there as a frame. The legacy index marks them as taking no time.
  return WriteChunk(0, FourCc("00pc"), palChange, false, false);
}

AviStatus AviWriter::WriteAudio(std::span<const uint8_t> samples) {
  if (streams_.size() < 2) return kAviNotOpen;
  if (samples.size() % streams_[1].blockAlign != 0) return kAviBadParameter;
  return WriteChunk(1, streams_[1].chunkId, samples, true, true);
}

void AviWriter::WriteStandardIndex(Stream& s) {
  if (s.piece.empty()) return;
  if (s.supers.size() >= options_.superIndexEntries) {
    tooManyPieces_ = true;
    return;
  }
  const uint64_t at = w_.Position();
  const uint64_t ix = w_.StartTag(s.indexId);
  w_.Put16(2);                         // wLongsPerEntry
  w_.Put8(0);                          // bIndexSubType
  w_.Put8(kIndexOfChunks);             // bIndexType
  w_.Put32(uint32_t(s.piece.size()));  // nEntriesInUse
  w_.Put32(s.chunkId);                 // dwChunkId
  w_.Put64(moviStart_);                // qwBaseOffset
  w_.Put32(0);                         // dwReserved3
  for (const IndexEntry& e : s.piece) {
    w_.Put32(e.offset);                           // dwOffset (of the chunk's data)
    w_.Put32(e.size | (e.key ? 0 : kNonKeyBit));  // dwSize, top bit: not a key frame
  }
  w_.EndTag(ix);
  s.supers.push_back({at, uint32_t(w_.Position() - at), uint32_t(s.pieceUnits)});
  s.piece.clear();
  s.pieceUnits = 0;
}

void AviWriter::EndPiece() {
  for (Stream& s : streams_) WriteStandardIndex(s);
  w_.EndTag(moviStart_);
  if (pieces_ == 1) {
    const uint64_t idx1 = w_.StartTag(FourCc("idx1"));
    for (const LegacyEntry& e : legacy_) {
      w_.Put32(e.chunkId);  // dwChunkId
      w_.Put32(e.flags);    // dwFlags
      w_.Put32(e.offset);   // dwOffset (of the chunk header, from the 'movi' code)
      w_.Put32(e.size);     // dwSize
    }
    w_.EndTag(idx1);
    legacy_.clear();
    legacy_.shrink_to_fit();
  }
  w_.EndTag(riffStart_);
}

void AviWriter::StartPiece() {
  riffStart_ = w_.StartList(FourCc("RIFF"), FourCc("AVIX"));
  moviStart_ = w_.StartList(FourCc("LIST"), FourCc("movi"));
  ++pieces_;
}

AviStatus AviWriter::Close() {
  if (!begun_ || closed_) return kAviNotOpen;
  closed_ = true;
  EndPiece();
  if (tooManyPieces_) return kAviWriteFailed;

  uint32_t maxChunk = 0;
  uint64_t bytesPerSecond = 0;
  for (size_t i = 0; i < streams_.size(); ++i) {
    const Stream& s = streams_[i];
    maxChunk = std::max(maxChunk, s.maxChunk);
    bytesPerSecond += i == 0 ? uint64_t{s.maxChunk} * uint32_t(fps_) / scale_ : 0;
    w_.Patch32(s.strhLengthAt, uint32_t(s.units));        // strh dwLength
    w_.Patch32(s.strhBufferAt, s.maxChunk);               // strh dwSuggestedBufferSize
    w_.Patch32(s.indxAt + 4, uint32_t(s.supers.size()));  // indx nEntriesInUse
    uint64_t at = s.indxAt + kSuperIndexHeadBytes;
    for (const SuperEntry& e : s.supers) {
      w_.Patch64(at, e.offset);         // qwOffset
      w_.Patch32(at + 8, e.size);       // dwSize
      w_.Patch32(at + 12, e.duration);  // dwDuration
      at += kSuperEntryBytes;
    }
  }
  bytesPerSecond += audioBytesPerSecond_;
  w_.Patch32(avihAt_ + 4,
             uint32_t(std::min<uint64_t>(bytesPerSecond, 0xFFFFFFFFu)));  // dwMaxBytesPerSec
  w_.Patch32(avihAt_ + 16, uint32_t(firstPieceFrames_));  // dwTotalFrames (first piece)
  w_.Patch32(avihAt_ + 28, maxChunk);                     // dwSuggestedBufferSize
  w_.Patch32(dmlhAt_, uint32_t(streams_[0].units));       // dmlh dwTotalFrames
  return Status();
}

}  // namespace velmora::avi
