// AVI5.DLL: the six C entries over the portable AVI core. One AVI is being
// created at a time (the entries carry no handle); text arguments arrive in
// the ANSI code page and are converted once, here. No exception leaves an
// entry: running out of memory becomes a status.
#include <windows.h>
#include <vfw.h>

#include <cstring>
#include <memory>
#include <new>

#include "conversion/avi5/avi5_api.h"
#include "conversion/avi5/dib_format.h"
#include "conversion/avi5/video_session.h"
#include "conversion/avi5/wave_merge.h"
#include "engine/win/text_encoding.h"
#include "conversion/avi5/win/compressor_chooser.h"
#include "conversion/avi5/win/vfw_compressor.h"

namespace {

using namespace velmora;
using avi::AviStatus;

std::unique_ptr<avi::VideoSession> g_session;

template <typename F>
int32_t Guarded(F body) {
  try {
    return body();
  } catch (const std::bad_alloc&) {
    return avi::kAviOutOfMemory;
  } catch (...) {
    return avi::kAviWriteFailed;
  }
}

}  // namespace

extern "C" {

int32_t AVICreateInit(const char* aviFile, const void* compVars, int32_t width, int32_t height,
                      int32_t bitsPerPixel, int32_t fps, int32_t frameCount,
                      const char* streamName) {
  (void)frameCount;  // the counts written are those of the frames actually added
  return Guarded([&]() -> int32_t {
    // A file left open by a caller that never closed it is finished first.
    if (g_session) {
      g_session->Close();
      g_session.reset();
    }
    const avi::VideoSessionParams p{width, height, bitsPerPixel, fps, win::AnsiToUtf8(streamName)};
    if (!aviFile) return avi::kAviBadParameter;
    if (const AviStatus st = avi::VideoSession::Check(p); st != avi::kAviOk) return st;
    std::unique_ptr<win::VfwCompressor> compressor;
    if (compVars) {
      COMPVARS cv;
      std::memcpy(&cv, compVars, sizeof cv);
      compressor = win::VfwCompressor::FromCompVars(cv);
    }
    auto sink = avi::FileByteSink::Create(win::AnsiToUtf8(aviFile));
    if (!sink) return avi::kAviCannotCreate;
    g_session = std::make_unique<avi::VideoSession>(std::move(sink), p, std::move(compressor));
    return avi::kAviOk;
  });
}

int32_t AVICreateAddBitmap(const void* bottomUpDibBits) {
  return Guarded([&]() -> int32_t {
    if (!g_session) return avi::kAviNotOpen;
    return g_session->AddFrame(static_cast<const uint8_t*>(bottomUpDibBits));
  });
}

int32_t AVICreateClose(void) {
  return Guarded([&]() -> int32_t {
    if (!g_session) return avi::kAviNotOpen;
    const AviStatus st = g_session->Close();
    g_session.reset();
    return st;
  });
}

int32_t AVIAddWaveToAVI(const char* aviFile, const char* waveFile, intptr_t callback) {
  return Guarded([&]() -> int32_t {
    if (!aviFile) return avi::kAviCannotOpenAvi;
    if (!waveFile) return avi::kAviCannotOpenWave;
    const auto report = reinterpret_cast<Avi5Progress>(callback);
    avi::MergeProgress progress;
    if (report) progress = [report](int32_t done, int32_t total) { report(done, total); };
    return avi::MergeWaveIntoAvi(win::AnsiToUtf8(aviFile), win::AnsiToUtf8(waveFile), progress);
  });
}

int32_t GetAVICompressor(intptr_t ownerWindow, void* compVars, char* name260) {
  return Guarded([&]() -> int32_t {
    // Refused before the chooser shows: nothing could take the user's choice.
    if (!compVars || !name260) return 0;
    std::string name;
    if (!win::ChooseCompressor(reinterpret_cast<HWND>(ownerWindow), compVars, name)) return 0;
    win::CopyAnsi(name, name260, 260);
    return 1;
  });
}

int32_t AVIGetError(int32_t status, char* text260) {
  return Guarded([&]() -> int32_t {
    if (!text260) return avi::kAviBadParameter;
    win::CopyAnsi(win::Utf8ToAnsi(avi::AviStatusText(status)), text260, 260);
    return 0;
  });
}

}  // extern "C"
