// Whatever another process leaves in the recorder block, and whatever text a
// label holds, decoding, checking and parsing must stay in bounds.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "sound/recorder_block.h"
#include "sound/sound_formats.h"

namespace snd = velmora::sound;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  snd::BlockBytes bytes{};
  std::memcpy(bytes.data(), data, size < bytes.size() ? size : bytes.size());
  const snd::RecorderBlock block = snd::DecodeRecorderBlock(bytes);
  (void)snd::CheckStartRequest(block);
  (void)snd::NameFieldText(block.tempName);
  // What the application writes back must read back the same.
  const snd::BlockBytes once = snd::EncodeRecorderBlock(block);
  if (snd::EncodeRecorderBlock(snd::DecodeRecorderBlock(once)) != once) __builtin_trap();
  (void)snd::ParseSoundLabel(std::string_view(reinterpret_cast<const char*>(data), size));
  return 0;
}
