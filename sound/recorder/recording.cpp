#include "sound/recorder/recording.h"

#include <algorithm>
#include <string>
#include <vector>

#include "engine/win/text_encoding.h"
#include "engine/win/handles.h"
#include "engine/win/win_idioms.h"
#include "sound/recorder/wave_capture.h"
#include "sound/recording_schedule.h"
#include "sound/wav_header.h"

namespace velmora::recorder {

using namespace velmora::sound;

namespace {

bool ParentGone(HANDLE parent) { return WaitForSingleObject(parent, 0) == WAIT_OBJECT_0; }

int32_t StateNow(BlockPort& block) {
  BlockBytes bytes{};
  block.Read(bytes);
  return DecodeRecorderBlock(bytes).state;
}

// Files are replaced, never overwritten in place.
bool RemoveFile(const std::wstring& path) {
  win::ForceDelete(path);
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

bool WriteSilence(HANDLE file, uint64_t bytes, uint8_t value) {
  const std::vector<uint8_t> chunk(1 << 16, value);
  for (uint64_t left = bytes; left > 0;) {
    const auto n = static_cast<DWORD>(std::min<uint64_t>(left, chunk.size()));
    if (!WriteAll(file, chunk.data(), n)) return false;
    left -= n;
  }
  return true;
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

}  // namespace

RecordingEnd RunRecording(const RecorderBlock& request, double startAtMs, BlockPort& block,
                          HANDLE parent, Clock& clock) {
  const PcmFormat format{request.samplesPerSec, request.channels, request.bitsOrProcessId};
  const std::wstring wave = win::WideFromAnsi(NameFieldText(request.waveName)).value_or(L"");
  const std::wstring temp = win::WideFromAnsi(NameFieldText(request.tempName)).value_or(L"");
  if (wave.empty() || temp.empty()) return RecordingEnd::kFailed;

  const CaptureBuffers buffers = SizeCaptureBuffers(format, request.bufferKb);
  SoundTake take(format, request.seconds, startAtMs);
  RecordingEnd end = RecordingEnd::kFailed;
  bool stopSeen = false;
  const TempFileRemover remover{temp};
  {
    win::UniqueFile tempFile = CreateFresh(temp, GENERIC_WRITE);
    if (!tempFile) return RecordingEnd::kFailed;
    WaveCapture capture;
    if (capture.Open(format, buffers.bytes, buffers.count) != MMSYSERR_NOERROR) {
      return RecordingEnd::kFailed;
    }

    // Sleep to just before the planned start, then spin the last milliseconds.
    for (double left; (left = startAtMs - clock.NowMs()) > 0;) {
      if (ParentGone(parent)) return RecordingEnd::kParentGone;
      clock.SleepMs(left > 15 ? std::min(10, static_cast<int32_t>(left) - 5) : 0);
    }
    bool ok = capture.Start() == MMSYSERR_NOERROR &&
              WriteSilence(tempFile.get(), take.LeadSilence(clock.NowMs()), SilenceByte(format));
    const WaveCapture::Sink keep = [&](const uint8_t* data, uint32_t bytes) {
      const uint32_t kept = take.Take(bytes);
      return kept == 0 || WriteAll(tempFile.get(), data, kept);
    };
    while (ok && !take.Full()) {
      ok = capture.Collect(10, keep);
      if (ParentGone(parent)) return RecordingEnd::kParentGone;
      if (!stopSeen && StateNow(block) == kStateStop) {
        // The run ended (or was cancelled): keep sound up to this moment only.
        stopSeen = true;
        take.StopAt(clock.NowMs());
      }
      if (take.Stalled(clock.NowMs())) ok = false;
    }
    end = ok ? RecordingEnd::kComplete : RecordingEnd::kFailed;
  }

  while (end == RecordingEnd::kComplete && !stopSeen) {
    if (ParentGone(parent)) return RecordingEnd::kParentGone;
    stopSeen = StateNow(block) == kStateStop;
    if (!stopSeen) clock.SleepMs(2);
  }
  if (end == RecordingEnd::kComplete &&
      !WriteWaveFile(wave, temp, format, static_cast<uint32_t>(take.Kept()))) {
    RemoveFile(wave);  // a cut-off wave file would pass for a good one
    end = RecordingEnd::kFailed;
  }
  return end;
}

}  // namespace velmora::recorder
