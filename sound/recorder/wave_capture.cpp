#include "sound/recorder/wave_capture.h"

namespace velmora::recorder {

WaveCapture::~WaveCapture() {
  if (!wave_) return;
  // Take every buffer back from the device before its memory goes.
  waveInReset(wave_.get());
  for (uint32_t i = 0; i < prepared_; ++i) {
    waveInUnprepareHeader(wave_.get(), &headers_[i], sizeof(WAVEHDR));
  }
  wave_.reset();
}

MMRESULT WaveCapture::Open(const sound::PcmFormat& format, uint32_t bytes, uint32_t count) {
  event_.reset(CreateEventW(nullptr, FALSE, FALSE, nullptr));
  if (!event_) return MMSYSERR_NOMEM;
  WAVEFORMATEX wf{};
  wf.wFormatTag = WAVE_FORMAT_PCM;
  wf.nChannels = static_cast<WORD>(format.channels);
  wf.nSamplesPerSec = static_cast<DWORD>(format.samplesPerSec);
  wf.wBitsPerSample = static_cast<WORD>(format.bitsPerSample);
  wf.nBlockAlign = static_cast<WORD>(format.BlockAlign());
  wf.nAvgBytesPerSec = wf.nSamplesPerSec * wf.nBlockAlign;
  HWAVEIN h = nullptr;
  const MMRESULT r = waveInOpen(&h, WAVE_MAPPER, &wf, reinterpret_cast<DWORD_PTR>(event_.get()), 0,
                                CALLBACK_EVENT);
  if (r != MMSYSERR_NOERROR) return r;
  wave_.reset(h);

  count_ = count;
  memory_.assign(count, std::vector<uint8_t>(bytes));
  headers_ = std::make_unique<WAVEHDR[]>(count);
  for (uint32_t i = 0; i < count; ++i) {
    WAVEHDR& hdr = headers_[i];
    hdr = {};
    hdr.lpData = reinterpret_cast<LPSTR>(memory_[i].data());
    hdr.dwBufferLength = bytes;
    if (const MMRESULT p = waveInPrepareHeader(h, &hdr, sizeof hdr)) return p;
    ++prepared_;
    if (const MMRESULT a = waveInAddBuffer(h, &hdr, sizeof hdr)) return a;
  }
  return MMSYSERR_NOERROR;
}

MMRESULT WaveCapture::Start() { return waveInStart(wave_.get()); }

bool WaveCapture::Collect(DWORD waitMs, const Sink& sink) {
  WaitForSingleObject(event_.get(), waitMs);
  while (headers_[next_].dwFlags & WHDR_DONE) {
    WAVEHDR& hdr = headers_[next_];
    if (!sink(reinterpret_cast<const uint8_t*>(hdr.lpData), hdr.dwBytesRecorded)) return false;
    hdr.dwFlags &= ~WHDR_DONE;
    hdr.dwBytesRecorded = 0;
    if (waveInAddBuffer(wave_.get(), &hdr, sizeof hdr) != MMSYSERR_NOERROR) return false;
    next_ = (next_ + 1) % count_;
  }
  return true;
}

}  // namespace velmora::recorder
