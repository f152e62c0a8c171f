#include "sound/recorder/recording.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "engine/win/ansi_text.h"
#include "engine/win/handles.h"
#include "sound/recorder/wave_capture.h"
#include "sound/wav_header.h"

namespace velmora::recorder {

using namespace velmora::sound;

namespace {

// A start more than this far behind means a stale request (one that was
// written again by a run without sound); further ahead is nonsense.
constexpr int32_t kLatestStartMs = 1000;
constexpr int32_t kEarliestStartMs = 60000;
constexpr int32_t kBufferMs = 50;
// Beyond the planned end plus this, a device that delivers nothing is broken.
constexpr double kStallMs = 15000;

bool ParentGone(HANDLE parent) { return WaitForSingleObject(parent, 0) == WAIT_OBJECT_0; }

int32_t StateNow(BlockPort& block) {
  BlockBytes bytes{};
  block.Read(bytes);
  return DecodeRecorderBlock(bytes).state;
}

// Files are replaced, never overwritten in place.
bool RemoveFile(const std::wstring& path) {
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  DeleteFileW(path.c_str());
  return GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES;
}

win::UniqueFile CreateFresh(const std::wstring& path, DWORD access) {
  if (!RemoveFile(path)) return win::UniqueFile();
  return win::UniqueFile(
      CreateFileW(path.c_str(), access, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
}

bool WriteAll(HANDLE file, const uint8_t* data, DWORD bytes) {
  DWORD done = 0;
  return WriteFile(file, data, bytes, &done, nullptr) && done == bytes;
}

// The wave file: header, then the samples kept in the temporary file.
bool WriteWaveFile(const std::wstring& wave, const std::wstring& temp, const PcmFormat& format,
                   uint32_t dataBytes) {
  win::UniqueFile in(CreateFileW(temp.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                 OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!in) return false;
  win::UniqueFile out = CreateFresh(wave, GENERIC_WRITE);
  if (!out) return false;
  const auto header = EncodeWavHeader(format, dataBytes);
  if (!WriteAll(out.get(), header.data(), static_cast<DWORD>(header.size()))) return false;
  std::vector<uint8_t> chunk(1 << 16);
  for (uint32_t left = dataBytes; left > 0;) {
    DWORD got = 0;
    const DWORD want = std::min<uint32_t>(left, static_cast<uint32_t>(chunk.size()));
    if (!ReadFile(in.get(), chunk.data(), want, &got, nullptr) || got != want) return false;
    if (!WriteAll(out.get(), chunk.data(), got)) return false;
    left -= got;
  }
  return true;
}

// Removes the temporary file however the recording ends (after its handle is closed).
struct TempFileRemover {
  std::wstring path;
  ~TempFileRemover() { RemoveFile(path); }
};

// Milliseconds from now to the planned start; the block holds the clock's
// low 32 bits, so the difference is taken modulo 2^32.
int32_t MsUntil(int32_t plannedMs, double nowMs) {
  const auto now32 = static_cast<uint32_t>(static_cast<int64_t>(std::llround(nowMs)));
  return static_cast<int32_t>(static_cast<uint32_t>(plannedMs) - now32);
}

}  // namespace

RecordingEnd RunRecording(const RecorderBlock& request, BlockPort& block, HANDLE parent,
                          Clock& clock) {
  if (CheckStartRequest(request) != RequestProblem::kNone) return RecordingEnd::kFailed;
  const int32_t untilStart = MsUntil(request.plannedStartMs, clock.NowMs());
  if (untilStart < -kLatestStartMs || untilStart > kEarliestStartMs) return RecordingEnd::kFailed;
  const double startAt = clock.NowMs() + untilStart;

  const PcmFormat format{request.samplesPerSec, request.channels, request.bitsOrProcessId};
  const std::wstring wave = win::WideFromAnsi(NameFieldText(request.waveName)).value_or(L"");
  const std::wstring temp = win::WideFromAnsi(NameFieldText(request.tempName)).value_or(L"");
  if (wave.empty() || temp.empty()) return RecordingEnd::kFailed;

  // Buffers of 50 ms: the start is exact to within one of them; the block's
  // buffer size says how many may wait for us at once.
  const uint32_t frame = static_cast<uint32_t>(format.BlockAlign());
  const uint32_t bufferBytes =
      static_cast<uint32_t>(format.samplesPerSec) * kBufferMs / 1000 * frame;
  const uint32_t count =
      std::clamp<uint32_t>(static_cast<uint32_t>(request.bufferKb) * 1024 / bufferBytes, 4, 256);

  RecordingEnd end = RecordingEnd::kFailed;
  uint64_t kept = 0;  // bytes in the temporary file
  bool stopSeen = false;
  const TempFileRemover remover{temp};
  {
    win::UniqueFile tempFile = CreateFresh(temp, GENERIC_WRITE);
    if (!tempFile) return RecordingEnd::kFailed;
    WaveCapture capture;
    if (capture.Open(format, bufferBytes, count) != MMSYSERR_NOERROR) return RecordingEnd::kFailed;

    // Sleep to just before the planned start, then spin the last milliseconds.
    for (double left; (left = startAt - clock.NowMs()) > 0;) {
      if (ParentGone(parent)) return RecordingEnd::kParentGone;
      clock.SleepMs(left > 15 ? std::min(10, static_cast<int32_t>(left) - 5) : 0);
    }
    const uint64_t wanted = uint64_t{static_cast<uint32_t>(request.seconds)} *
                            static_cast<uint32_t>(format.samplesPerSec) * frame;
    uint64_t limit = wanted;
    bool ok = capture.Start() == MMSYSERR_NOERROR;
    const WaveCapture::Sink keep = [&](const uint8_t* data, uint32_t bytes) {
      const uint32_t take = static_cast<uint32_t>(std::min<uint64_t>(bytes, limit - kept));
      if (take && !WriteAll(tempFile.get(), data, take)) return false;
      kept += take;
      return true;
    };
    while (ok && kept < limit) {
      ok = capture.Collect(10, keep);
      if (ParentGone(parent)) return RecordingEnd::kParentGone;
      if (!stopSeen && StateNow(block) == kStateStop) {
        // The run ended (or was cancelled): keep sound up to this moment only.
        stopSeen = true;
        const double heardMs = std::max(0.0, clock.NowMs() - startAt);
        const auto upTo =
            static_cast<uint64_t>(std::ceil(heardMs / 1000.0 * format.samplesPerSec)) * frame;
        limit = std::min(limit, upTo);
      }
      if (clock.NowMs() > startAt + request.seconds * 1000.0 + kStallMs) ok = false;
    }
    end = ok ? RecordingEnd::kComplete : RecordingEnd::kFailed;
  }

  while (end == RecordingEnd::kComplete && !stopSeen) {
    if (ParentGone(parent)) return RecordingEnd::kParentGone;
    stopSeen = StateNow(block) == kStateStop;
    if (!stopSeen) clock.SleepMs(2);
  }
  if (end == RecordingEnd::kComplete &&
      !WriteWaveFile(wave, temp, format, static_cast<uint32_t>(kept))) {
    RemoveFile(wave);  // a cut-off wave file would pass for a good one
    end = RecordingEnd::kFailed;
  }
  return end;
}

}  // namespace velmora::recorder
