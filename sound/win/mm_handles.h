// Owners for the multimedia handles the sound code opens, on the same
// move-only template as every other Win32 handle of the program.
#pragma once
#include "engine/win/handles.h"

namespace velmora::win {

// Reset returns every queued buffer first: a device cannot be closed with buffers still queued.
inline void CloseWaveIn(HWAVEIN h) {
  ::waveInReset(h);
  ::waveInClose(h);
}
inline void CloseMixer(HMIXER h) { ::mixerClose(h); }

using UniqueWaveIn = UniqueHandle<HWAVEIN, NullInvalid<HWAVEIN, CloseWaveIn>>;
using UniqueMixer = UniqueHandle<HMIXER, NullInvalid<HMIXER, CloseMixer>>;

}  // namespace velmora::win
