// AVI 2.0 (OpenDML) writer: one video stream and an optional PCM sound
// stream, each with a super index ('indx') over standard indexes ('ix00',
// 'ix01') written at the end of every RIFF piece, a frame count in
// 'odml/dmlh', 'RIFF AVIX' continuation pieces once a piece passes the
// split size, and the legacy 'idx1' for the first piece so older readers
// still find every chunk there. Counts unknown at the start (frames, buffer
// sizes, index entries) are reserved and filled in by Close.
#pragma once
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "conversion/avi5/avi_status.h"
#include "conversion/avi5/riff_writer.h"

namespace velmora::avi {

struct VideoStreamFormat {
  int32_t width = 0;
  int32_t height = 0;
  int32_t fps = 0;            // strh dwRate
  uint32_t scale = 1;         // strh dwScale: frames last scale / fps seconds
  uint32_t handler = 0;       // strh fccHandler: the compressor's code, 0 when uncompressed
  bool compressed = false;    // chunks are '00dc' instead of '00db'
  int32_t quality = -1;       // strh dwQuality (-1: the default)
  std::vector<uint8_t> strf;  // BITMAPINFOHEADER and colour table, as the stream format
  std::string name;           // 'strn'; nothing written when empty
};

struct AudioStreamFormat {
  std::vector<uint8_t> strf;  // the wave's 'fmt ' chunk data, verbatim
  uint16_t blockAlign = 0;
  uint32_t bytesPerSecond = 0;
  std::string name;
};

struct AviWriterOptions {
  // A RIFF piece is closed and an 'AVIX' piece begun once the next chunk would
  // take the piece past this size (1 GiB, as common readers expect).
  uint64_t riffSplitBytes = uint64_t{1} << 30;
  // Super-index entries reserved per stream: one per RIFF piece.
  uint32_t superIndexEntries = 256;
};

class AviWriter {
 public:
  explicit AviWriter(ByteSink& sink, AviWriterOptions options = {});

  // Writes the headers. `audio` may be null for a silent AVI.
  AviStatus Begin(const VideoStreamFormat& video, const AudioStreamFormat* audio);

  AviStatus WriteVideo(std::span<const uint8_t> frame, bool keyFrame);
  // A '00pc' palette change for all 256 entries, from a colour table of
  // 256 x (blue, green, red, 0).
  AviStatus WritePaletteChange(std::span<const uint8_t, 1024> colourTable);
  // The same from a ready AVIPALCHANGE record (when copying an AVI).
  AviStatus WritePaletteChunk(std::span<const uint8_t> palChange);
  AviStatus WriteAudio(std::span<const uint8_t> samples);

  // Ends the last piece and fills in every reserved count. The sink stays
  // open; the caller closes it.
  AviStatus Close();

  int64_t VideoFrames() const { return streams_.empty() ? 0 : int64_t(streams_[0].units); }

 private:
  struct IndexEntry {
    uint32_t offset;  // chunk data position minus the piece's movi list position
    uint32_t size;
    bool key;
  };
  struct LegacyEntry {
    uint32_t chunkId, flags, offset, size;
  };
  struct SuperEntry {
    uint64_t offset;
    uint32_t size, duration;
  };
  struct Stream {
    uint32_t chunkId = 0;  // '00db', '00dc', '01wb'
    uint32_t indexId = 0;  // 'ix00', 'ix01'
    uint32_t blockAlign = 1;
    uint64_t units = 0;  // frames, or sound blocks
    uint64_t pieceUnits = 0;
    uint32_t maxChunk = 0;
    std::vector<IndexEntry> piece;
    std::vector<SuperEntry> supers;
    uint64_t strhLengthAt = 0, strhBufferAt = 0, indxAt = 0;
  };

  AviStatus WriteChunk(size_t streamIndex, uint32_t chunkId, std::span<const uint8_t> data,
                       bool key, bool indexed);
  void WriteStreamHeaderList(size_t streamIndex, uint32_t type, uint32_t handler, uint32_t scale,
                             uint32_t rate, int32_t quality, uint32_t sampleSize,
                             std::span<const uint8_t> strf, const std::string& name);
  void StartPiece();
  void EndPiece();
  void WriteStandardIndex(Stream& s);
  AviStatus Status() const;

  RiffWriter w_;
  AviWriterOptions options_;
  std::vector<Stream> streams_;
  std::vector<LegacyEntry> legacy_;
  int32_t width_ = 0, height_ = 0, fps_ = 1;
  uint32_t scale_ = 1;
  uint32_t audioBytesPerSecond_ = 0;
  uint64_t riffStart_ = 0, moviStart_ = 0;
  int pieces_ = 0;
  uint64_t firstPieceFrames_ = 0;
  uint64_t avihAt_ = 0, dmlhAt_ = 0;
  bool begun_ = false, closed_ = false, tooManyPieces_ = false;
};

}  // namespace velmora::avi
