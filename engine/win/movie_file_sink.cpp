#include "engine/win/movie_file_sink.h"

#include <cstdio>

#include "engine/byte_source.h"
#include "engine/memory_movie_sink.h"
#include "engine/result_codes.h"

namespace velmora::win {
namespace {

// Interim: keeps the movie in memory and puts it into the file at the end,
// until the file and mapped writers are merged in.
class BufferedFileSink final : public MovieSink {
 public:
  int32_t Open(const std::string& path, int64_t frameBytes, int32_t fps, int32_t sec) override {
    std::FILE* f = OpenFileUtf8(path, "wb");
    if (!f) return MakeResultCode(kErrCannotOpen);
    std::fclose(f);
    path_ = path;
    return memory_.Open(path, frameBytes, fps, sec);
  }
  int32_t WriteHeader(const uint8_t (&header)[32]) override { return memory_.WriteHeader(header); }
  int32_t BeginSlot() override { return memory_.BeginSlot(); }
  int32_t WriteFrame(const uint8_t* payload, uint32_t bytes) override {
    return memory_.WriteFrame(payload, bytes);
  }
  int32_t WriteDropped(uint32_t units) override { return memory_.WriteDropped(units); }
  void Close() override {
    memory_.Close();
    if (std::FILE* f = OpenFileUtf8(path_, "wb")) {
      std::fwrite(memory_.Bytes().data(), 1, memory_.Bytes().size(), f);
      std::fclose(f);
    }
  }

 private:
  std::string path_;
  MemoryMovieSink memory_;
};

}  // namespace

std::unique_ptr<MovieSink> MakeMovieFileSink(bool /*mapped*/) {
  return std::make_unique<BufferedFileSink>();
}

}  // namespace velmora::win
