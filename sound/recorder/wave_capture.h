// Wave-in capture into a ring of equally sized buffers, handed back in order
// as the device fills them.
#pragma once
#include <windows.h>
#include <mmsystem.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "sound/wav_header.h"
#include "engine/win/handles.h"

namespace velmora::recorder {

class WaveCapture {
 public:
  WaveCapture() = default;
  WaveCapture(const WaveCapture&) = delete;
  WaveCapture& operator=(const WaveCapture&) = delete;
  ~WaveCapture();

  // Opens the default wave-in device for `format` and queues `count` buffers
  // of `bytes` each. Returns 0 or the system's error number (no device,
  // format refused, ...).
  MMRESULT Open(const sound::PcmFormat& format, uint32_t bytes, uint32_t count);
  MMRESULT Start();

  // Waits up to `waitMs` for the device, then gives every filled buffer to
  // `sink` in order and queues it again. False when `sink` refused data or a
  // buffer could not be queued again.
  using Sink = std::function<bool(const uint8_t* data, uint32_t bytes)>;
  bool Collect(DWORD waitMs, const Sink& sink);

 private:
  win::UniqueHandleObj event_;
  win::UniqueWaveIn wave_;
  std::vector<std::vector<uint8_t>> memory_;
  std::unique_ptr<WAVEHDR[]> headers_;  // fixed addresses: the device holds pointers to them
  uint32_t count_ = 0;
  uint32_t prepared_ = 0;
  uint32_t next_ = 0;
};

}  // namespace velmora::recorder
