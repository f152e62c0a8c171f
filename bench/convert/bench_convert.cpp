// Throughput of the AVI writing path (frames from memory to an uncompressed
// AVI 2.0 file) against ffmpeg writing the same frames from a raw file into
// an AVI with its rawvideo encoder, measured in the same run. Prints frames/s,
// MB/s and the ratio (above 1: faster than the reference).
//
//   bench_convert [frames] [folder]     defaults: 150 frames, $TMPDIR or /tmp
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "conversion/avi5/byte_sink.h"
#include "conversion/avi5/dib_format.h"
#include "conversion/avi5/video_session.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kW = 1280, kH = 720, kBits = 32, kFps = 30, kDistinct = 8;

double Seconds(Clock::time_point a, Clock::time_point b) {
  return std::chrono::duration<double>(b - a).count();
}

std::vector<std::vector<uint8_t>> Frames() {
  const size_t bytes = size_t(velmora::avi::DibInputFrameBytes(kW, kH, kBits));
  std::vector<std::vector<uint8_t>> f(kDistinct, std::vector<uint8_t>(bytes));
  for (int i = 0; i < kDistinct; ++i)
    for (size_t k = 0; k < bytes; ++k)
      f[size_t(i)][k] = uint8_t(k * 7 + size_t(i) * 13 + (k >> 12));
  return f;
}

// Our writer: the frames as the library receives them.
double WriteOurs(const std::string& path, const std::vector<std::vector<uint8_t>>& frames,
                 int count) {
  const auto start = Clock::now();
  auto sink = velmora::avi::FileByteSink::Create(path);
  if (!sink) return -1;
  velmora::avi::VideoSession s(std::move(sink), {kW, kH, kBits, kFps, "AVIFile"}, nullptr);
  for (int i = 0; i < count; ++i)
    if (s.AddFrame(frames[size_t(i % kDistinct)].data()) != velmora::avi::kAviOk) return -1;
  if (s.Close() != velmora::avi::kAviOk) return -1;
  return Seconds(start, Clock::now());
}

// ffmpeg reads raw frames (bottom-up rows do not matter to a copy) and
// stores them with its rawvideo encoder in an AVI.
double WriteFfmpeg(const std::string& raw, const std::string& out) {
  const std::string cmd = "ffmpeg -v error -y -f rawvideo -pix_fmt bgra -s 1280x720 -r 30 -i '" +
                          raw + "' -c:v rawvideo '" + out + "'";
  const auto start = Clock::now();
  if (std::system(cmd.c_str()) != 0) return -1;
  return Seconds(start, Clock::now());
}

void Report(const char* who, int frames, double bytes, double s) {
  std::printf("%-28s %5d frames in %6.3f s: %8.1f frames/s %8.1f MB/s\n", who, frames, s,
              frames / s, bytes / s / 1e6);
}

}  // namespace

int main(int argc, char** argv) {
  const int count = argc > 1 ? std::atoi(argv[1]) : 150;
  const char* tmp = std::getenv("TMPDIR");
  const std::filesystem::path dir = std::filesystem::path(argc > 2 ? argv[2]
                                                          : tmp    ? tmp
                                                                   : "/tmp") /
                                    ("velmora-bench-convert-" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  const auto frames = Frames();
  const double bytes = double(frames[0].size()) * count;

  const std::string raw = (dir / "frames.raw").string();
  if (FILE* f = std::fopen(raw.c_str(), "wb")) {
    for (int i = 0; i < count; ++i)
      std::fwrite(frames[size_t(i % kDistinct)].data(), 1, frames[0].size(), f);
    std::fclose(f);
  }
  // One warm-up of each so that neither pays for a cold cache alone.
  WriteOurs((dir / "ours.avi").string(), frames, count);
  WriteFfmpeg(raw, (dir / "ffmpeg.avi").string());
  double ours = 1e9, ref = 1e9;
  for (int round = 0; round < 3; ++round) {
    const double a = WriteOurs((dir / "ours.avi").string(), frames, count);
    const double b = WriteFfmpeg(raw, (dir / "ffmpeg.avi").string());
    if (a < 0 || b < 0) {
      std::fprintf(stderr, "bench_convert: a writer failed\n");
      std::filesystem::remove_all(dir);
      return 1;
    }
    ours = std::min(ours, a);
    ref = std::min(ref, b);
  }
  std::filesystem::remove_all(dir);
  std::printf("AVI writing, 1280x720x32 uncompressed, best of 3\n");
  Report("velmora AVI writer", count, bytes, ours);
  Report("ffmpeg -c:v rawvideo", count, bytes, ref);
  std::printf("ratio (ffmpeg time / velmora time): %.2f\n", ref / ours);
  return 0;
}
