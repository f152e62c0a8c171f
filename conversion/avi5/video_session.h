// One AVI file being written frame by frame from bottom-up DIB input: what
// the library's create/add/close entries drive. The headers are written
// with the first frame, because at 8 bits the stream format carries the
// first frame's colour table (and a compressor must start with it); later
// colour-table changes become '00pc' chunks.
#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "conversion/avi5/avi_writer.h"
#include "conversion/avi5/byte_sink.h"
#include "conversion/avi5/frame_compressor.h"

namespace velmora::avi {

struct VideoSessionParams {
  int32_t width = 0;
  int32_t height = 0;
  int32_t bitCount = 0;
  int32_t fps = 0;
  std::string streamName;
};

class VideoSession {
 public:
  // kAviBadParameter unless the geometry, depth and rate can be written.
  static AviStatus Check(const VideoSessionParams& p);

  // `compressor` null: frames are stored uncompressed.
  VideoSession(std::unique_ptr<ByteSink> sink, const VideoSessionParams& p,
               std::unique_ptr<FrameCompressor> compressor, AviWriterOptions options = {});
  ~VideoSession();

  // Reads DibInputFrameBytes(width, height, bitCount) bytes at `frame`.
  AviStatus AddFrame(const uint8_t* frame);
  // Finishes the file (headers alone when no frame came) and closes the sink.
  AviStatus Close();

  int64_t Frames() const { return writer_.VideoFrames(); }

 private:
  AviStatus BeginWith(const uint8_t* colourTable);

  std::unique_ptr<ByteSink> sink_;
  VideoSessionParams p_;
  std::unique_ptr<FrameCompressor> compressor_;
  AviWriter writer_;
  int64_t pixelBytes_ = 0;
  bool begun_ = false, compressorRunning_ = false;
  std::vector<uint8_t> colourTable_;
};

}  // namespace velmora::avi
