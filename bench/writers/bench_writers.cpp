// Throughput of the two movie writers against plain sequential WriteFile
// of the same bytes, measured in the same run and printed as ratios
// (reference time / writer time; 1.0 is as fast as the plain writes).
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "engine/movie_records.h"
#include "engine/win/handles.h"
#include "engine/win/mapped_movie_writer.h"
#include "engine/win/movie_writer_api.h"
#include "engine/win/ordinary_movie_writer.h"
#include "engine/win/text_encoding.h"
#include "engine/win/win_idioms.h"

namespace {

using velmora::win::UniqueFile;

constexpr int32_t kFps = 30, kSec = 4;
constexpr int64_t kFrameBytes = 1280 * 720 * 4;

struct Movie {
  uint8_t header[32]{};
  std::vector<std::vector<uint8_t>> payloads;  // an empty payload stands for a drop
};

Movie MakeMovie() {
  Movie m;
  std::mt19937 rng(7);
  for (int i = 0; i < kFps * kSec; ++i) {
    if (i % 10 == 9) {
      m.payloads.emplace_back();
      continue;
    }
    // Payload sizes of a busy desktop: a tenth to a half of the frame.
    const size_t n =
        static_cast<size_t>(kFrameBytes / 10 + rng() % (kFrameBytes * 4 / 10)) & ~size_t{3};
    m.payloads.emplace_back(n, static_cast<uint8_t>(i));
  }
  return m;
}

double Now() {
  LARGE_INTEGER c, f;
  QueryPerformanceCounter(&c);
  QueryPerformanceFrequency(&f);
  return static_cast<double>(c.QuadPart) / static_cast<double>(f.QuadPart);
}

void PlainWrites(const std::string& path, const Movie& m) {
  UniqueFile f = velmora::win::OpenMovieFile(path, 0);
  DWORD w = 0;
  WriteFile(f.get(), m.header, 32, &w, nullptr);
  std::vector<uint8_t> rec;
  for (const auto& p : m.payloads) {
    if (p.empty()) {
      const auto d = velmora::DroppedRecord(static_cast<uint32_t>(kFrameBytes / 4));
      rec.assign(d.begin(), d.end());
    } else {
      const auto h = velmora::FrameRecordHead(static_cast<uint32_t>(p.size()));
      rec.assign(h.begin(), h.end());
      rec.insert(rec.end(), p.begin(), p.end());
    }
    WriteFile(f.get(), rec.data(), static_cast<DWORD>(rec.size()), &w, nullptr);
  }
}

// The platform's own cost of writing through a mapping: the same bytes
// copied into windows of eight frames over a pre-extended file, no records.
void BareMappedCopies(const std::string& path, const Movie& m, double bytes) {
  UniqueFile f = velmora::win::OpenMovieFile(path, FILE_FLAG_OVERLAPPED);
  const auto& api = velmora::win::SystemMovieWriterApi();
  const uint64_t total = static_cast<uint64_t>(bytes);
  velmora::win::UniqueHandleObj map(
      api.createMapping(f.get(), (kFrameBytes + 8) * kFps * kSec + 100));
  const uint64_t window = 8 * kFrameBytes / 65536 * 65536;
  uint64_t base = 0, pos = 0;
  velmora::win::UniqueView view(api.mapView(map.get(), 0, window));
  for (const auto& p : m.payloads) {
    const size_t n = p.empty() ? 12 : p.size() + 8;
    if (pos + n > base + window) {
      base = pos / 65536 * 65536;
      view.reset(api.mapView(map.get(), base, window));
    }
    if (!p.empty())
      std::memcpy(static_cast<uint8_t*>(view.get()) + (pos - base + 8), p.data(), p.size());
    pos += n;
  }
  view.reset();
  map.reset();
  velmora::win::CutFile(f.get(), total);
}

bool ThroughSink(velmora::MovieSink& sink, const std::string& path, const Movie& m) {
  if (sink.Open(path, kFrameBytes, kFps, kSec) != 0) return false;
  int32_t rc = sink.WriteHeader(m.header);
  for (const auto& p : m.payloads) {
    if (rc == 0) rc = sink.BeginSlot();
    if (rc == 0) {
      rc = p.empty() ? sink.WriteDropped(static_cast<uint32_t>(kFrameBytes / 4))
                     : sink.WriteFrame(p.data(), static_cast<uint32_t>(p.size()));
    }
  }
  sink.Close();
  return rc == 0;
}

std::string TempFile(const char* name) {
  wchar_t dir[MAX_PATH];
  GetTempPathW(MAX_PATH, dir);
  return velmora::win::Narrow(dir) + name;
}

double Median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  return v[v.size() / 2];
}

}  // namespace

int main() {
  const Movie movie = MakeMovie();
  double bytes = 32;
  for (const auto& p : movie.payloads) bytes += p.empty() ? 12 : 8 + p.size();
  const std::string path = TempFile("velmora-bench-writers.QRK");
  std::vector<double> plain, ordinary, mapped, bare;
  bool ok = true;
  for (int round = 0; round < 5; ++round) {
    velmora::win::ForceDelete(path);
    double t = Now();
    PlainWrites(path, movie);
    plain.push_back(Now() - t);

    velmora::win::ForceDelete(path);
    velmora::win::OrdinaryMovieWriter o;
    t = Now();
    ok = ThroughSink(o, path, movie) && ok;
    ordinary.push_back(Now() - t);

    velmora::win::ForceDelete(path);
    velmora::win::MappedMovieWriter mw;
    t = Now();
    ok = ThroughSink(mw, path, movie) && ok;
    mapped.push_back(Now() - t);

    velmora::win::ForceDelete(path);
    t = Now();
    BareMappedCopies(path, movie, bytes);
    bare.push_back(Now() - t);
  }
  velmora::win::ForceDelete(path);
  const double ref = Median(plain);
  std::printf("bench_writers: %.0f MB movie (%d frames of %lld bytes), median of 5 runs\n",
              bytes / 1e6, kFps * kSec, static_cast<long long>(kFrameBytes));
  std::printf("  plain WriteFile      %8.1f MB/s  (reference)\n", bytes / ref / 1e6);
  std::printf("  ordinary writer      ratio %.2f  (target >= 0.9)\n", ref / Median(ordinary));
  std::printf("  mapped writer        ratio %.2f  (target >= 0.9)\n", ref / Median(mapped));
  std::printf("  bare mapped copies   ratio %.2f  (what the platform's mapped pages allow)\n",
              ref / Median(bare));
  std::printf("  mapped writer / bare mapped copies  %.2f\n", Median(bare) / Median(mapped));
  if (!ok) std::printf("  a writer reported a failure\n");
  return ok ? 0 : 1;
}
