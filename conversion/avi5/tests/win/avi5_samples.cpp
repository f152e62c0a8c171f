// Writes sample AVIs through AVI5.DLL for checking with tools nobody here
// wrote (ffprobe, ffmpeg, sox); see tests/avi_tools_check.sh. Each is kept
// as NAME-FRAMES.avi with NAME-FRAMES.raw, the frames as a decoder returns them.
//
//   avi5_samples OUTDIR TONE.wav   all depths, compressed, sound merge
//   avi5_samples big OUTDIR        one AVI past 4 GiB (1280x720x32)
//   avi5_samples merge AVI WAVE    the sound merge alone, with progress
#include <windows.h>
#include <vfw.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "conversion/avi5/avi5_api.h"
#include "conversion/avi5/tests/win/test_codec.h"
#include "conversion/avi5/dib_format.h"
#include "tests/conversion_movies.h"
#include "tests/files.h"

namespace {

using velmora::avi::DibStride;

constexpr int kW = 37, kH = 21, kFps = 12, kFrames = 12;

// Frame `i`: pixels depend on position and frame; the 8-bit colour table
// changes half-way, so the file needs a palette change.
std::vector<uint8_t> MakeFrame(int w, int h, int bits, int i) {
  const int stride = int(DibStride(w, bits));
  std::vector<uint8_t> f(size_t(stride) * h + (bits == 8 ? 1024 : 0));
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < stride; ++x) f[size_t(y) * stride + x] = uint8_t(x * 3 + y * 7 + i * 11);
  if (bits == 8)
    for (int c = 0; c < 256; ++c) {
      uint8_t* e = &f[size_t(stride) * h + c * 4];
      e[0] = uint8_t(c);
      e[1] = uint8_t(255 - c);
      e[2] = uint8_t(c * 5 + (i >= kFrames / 2 ? 100 : 0));
      e[3] = 0;
    }
  return f;
}

bool Check(int32_t status, const char* what) {
  if (status == 0) return true;
  char text[260];
  AVIGetError(status, text);
  std::fprintf(stderr, "%s: status %d %s\n", what, status, text);
  return false;
}

bool WriteAvi(const std::string& dir, const std::string& name, int bits, const COMPVARS* cv) {
  const std::string base = dir + "\\" + name + "-" + std::to_string(kFrames);
  const std::string avi = base + ".avi", raw = base + ".raw";
  if (!Check(AVICreateInit(avi.c_str(), cv, kW, kH, bits, kFps, kFrames, "AVIFile"), name.c_str()))
    return false;
  std::vector<uint8_t> decoded;
  for (int i = 0; i < kFrames; ++i) {
    const auto f = MakeFrame(kW, kH, bits, i);
    if (!Check(AVICreateAddBitmap(f.data()), name.c_str())) return false;
    const auto d = velmora::test::DecodedPicture(f, kW, kH, bits, size_t(DibStride(kW, bits)));
    decoded.insert(decoded.end(), d.begin(), d.end());
  }
  velmora::test::WriteFile(raw, decoded);
  return Check(AVICreateClose(), name.c_str());
}

int Samples(const std::string& dir, const std::string& tone) {
  for (const char* name : {"d8", "d16", "d24", "d32"})
    if (!WriteAvi(dir, name, std::atoi(name + 1), nullptr)) return 1;

  COMPVARS cv{};
  cv.cbSize = sizeof cv;
  cv.fccHandler = velmora::test::kTestCodecFcc;
  if (!velmora::test::InstallTestCodec() || !WriteAvi(dir, "c24", 24, &cv)) return 1;
  if (velmora::test::TestCodecFramesCompressed() != kFrames) return 1;
  velmora::test::RemoveTestCodec();

  cv.fccHandler = mmioFOURCC('M', 'R', 'L', 'E');
  cv.lQ = 10000;
  if (!WriteAvi(dir, "rle8", 8, &cv)) return 1;

  const std::string m = dir + "\\m24-12.avi";
  if (!CopyFileA((dir + "\\d24-12.avi").c_str(), m.c_str(), FALSE) ||
      !CopyFileA((dir + "\\d24-12.raw").c_str(), (dir + "\\m24-12.raw").c_str(), FALSE))
    return 1;
  if (!Check(AVIAddWaveToAVI(m.c_str(), tone.c_str(), 0), "merge")) return 1;
  return 0;
}

// Past 4 GiB: the last frame is distinct, so a decoder that finds it by a
// wrong offset shows it.
int Big(const std::string& dir) {
  const int w = 1280, h = 720;
  const int frames = int((5ull << 30) / (size_t(w) * h * 4)) / 4 * 4 + 4;  // ~1.2 GiB past 4 GiB
  const std::string avi = dir + "\\big.avi";
  if (!Check(AVICreateInit(avi.c_str(), nullptr, w, h, 32, 30, frames, "AVIFile"), "big")) return 1;
  for (int i = 0; i < frames; ++i) {
    const auto f = i == frames - 1 || i == 0 ? MakeFrame(w, h, 32, i)
                                             : std::vector<uint8_t>(size_t(w) * h * 4, uint8_t(i));
    if (!Check(AVICreateAddBitmap(f.data()), "big")) return 1;
    if (i == frames - 1)
      velmora::test::WriteFile(dir + "\\big_last.raw",
                               velmora::test::DecodedPicture(f, w, h, 32, size_t(w) * 4));
  }
  std::printf("%d\n", frames);
  return Check(AVICreateClose(), "big") ? 0 : 1;
}

int g_progressCalls = 0;
void __stdcall CountProgress(int32_t done, int32_t total) {
  ++g_progressCalls;
  if (done > total) std::fprintf(stderr, "progress %d of %d\n", done, total);
}

int Merge(const char* avi, const char* wave) {
  if (!Check(AVIAddWaveToAVI(avi, wave, reinterpret_cast<intptr_t>(&CountProgress)), "merge"))
    return 1;
  std::printf("%d\n", g_progressCalls);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "big") == 0) return Big(argv[2]);
  if (argc == 4 && std::strcmp(argv[1], "merge") == 0) return Merge(argv[2], argv[3]);
  if (argc == 3) return Samples(argv[1], argv[2]);
  std::fprintf(stderr, "usage: avi5_samples OUTDIR TONE.wav | big OUTDIR | merge AVI WAVE\n");
  return 2;
}
