// The recorder block: 594 bytes of named shared memory between the
// application and WaveInExe.exe. Every exchange is a copy of the whole block;
// state codes say who is meant to act. Integers are 32-bit little-endian;
// file names are bytes in the system's ANSI code page, NUL-terminated.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "engine/byte_order.h"
#include "sound/sound_formats.h"

namespace velmora::sound {

inline constexpr wchar_t kRecorderBlockName[] = L"{1FF13A99-90A3-11d6-952A-000629195288}";

enum RecorderState : int32_t {
  kStateIdle = 0,      // recorder -> application: ready (hello answer); application resets to it
  kStateStart = 1,     // application -> recorder: record with the block's parameters
  kStateStop = 3,      // application -> recorder: finish and close the files
  kStateComplete = 4,  // recorder -> application
  kStateFailed = 6,    // recorder -> application
  kStateHello = 7,     // application -> recorder: answer 0 and the process id
};

// Field offsets, frozen: both programs and every earlier build agree on them.
namespace block_layout {
inline constexpr size_t kState = 0;
inline constexpr size_t kBitsOrProcessId = 4;
inline constexpr size_t kSamplesPerSec = 8;
inline constexpr size_t kChannels = 12;
inline constexpr size_t kSeconds = 16;
inline constexpr size_t kBufferKb = 20;
inline constexpr size_t kWaveName = 24;
inline constexpr size_t kNameBytes = 261;  // 260 characters' worth of bytes + NUL
inline constexpr size_t kTempName = kWaveName + kNameBytes;
inline constexpr size_t kAlignment = kTempName + kNameBytes;
inline constexpr size_t kReserved = kAlignment + 2;
inline constexpr size_t kPlannedStart = kReserved + 4;
inline constexpr size_t kSpare = kPlannedStart + 4;
inline constexpr size_t kSpareBytes = 38;
inline constexpr size_t kSize = kSpare + kSpareBytes;
static_assert(kTempName == 285 && kAlignment == 546 && kReserved == 548);
static_assert(kPlannedStart == 552 && kSpare == 556 && kSize == 594);
}  // namespace block_layout

using BlockBytes = std::array<uint8_t, block_layout::kSize>;
using NameField = std::array<uint8_t, block_layout::kNameBytes>;

// The block's meaningful fields. The names keep all 261 bytes as they stand,
// so a reader can tell an unterminated name from a terminated one.
struct RecorderBlock {
  int32_t state = 0;
  int32_t bitsOrProcessId =
      0;  // bits per sample in a start request, process id in the hello answer
  int32_t samplesPerSec = 0;
  int32_t channels = 0;
  int32_t seconds = 0;
  int32_t bufferKb = 0;
  NameField waveName{};
  NameField tempName{};
  int32_t reserved = 0;
  int32_t plannedStartMs = 0;  // whole milliseconds of the shared high-resolution clock
  friend constexpr bool operator==(const RecorderBlock&, const RecorderBlock&) = default;
};

// Writes the fields in block order; alignment and spare bytes become zero.
constexpr BlockBytes EncodeRecorderBlock(const RecorderBlock& b) {
  BlockBytes out{};
  ByteWriter w(out);
  w.Int32(b.state);
  w.Int32(b.bitsOrProcessId);
  w.Int32(b.samplesPerSec);
  w.Int32(b.channels);
  w.Int32(b.seconds);
  w.Int32(b.bufferKb);
  w.Bytes(b.waveName);
  w.Bytes(b.tempName);
  w.Zeros(2);
  w.Int32(b.reserved);
  w.Int32(b.plannedStartMs);
  w.Zeros(block_layout::kSpareBytes);
  return out;
}

// Reads any 594 bytes; never fails (checking the values is CheckStartRequest's job).
constexpr RecorderBlock DecodeRecorderBlock(const BlockBytes& bytes) {
  RecorderBlock b;
  ByteReader r(bytes);
  b.state = r.Int32();
  b.bitsOrProcessId = r.Int32();
  b.samplesPerSec = r.Int32();
  b.channels = r.Int32();
  b.seconds = r.Int32();
  b.bufferKb = r.Int32();
  r.Bytes(b.waveName);
  r.Bytes(b.tempName);
  r.Skip(2);
  b.reserved = r.Int32();
  b.plannedStartMs = r.Int32();
  return b;
}

namespace block_layout {
// Compile-time proof that the writer's field order matches the offsets above:
// a probe block with a distinct value in every field must put each value at
// its offset, fill exactly 594 bytes and read back unchanged.
constexpr bool WriterMatchesOffsets() {
  RecorderBlock p;
  p.state = 0x11;
  p.bitsOrProcessId = 0x22;
  p.samplesPerSec = 0x33;
  p.channels = 0x44;
  p.seconds = 0x55;
  p.bufferKb = 0x66;
  p.waveName[0] = 0x77;
  p.waveName[kNameBytes - 1] = 0x78;
  p.tempName[0] = 0x88;
  p.tempName[kNameBytes - 1] = 0x89;
  p.reserved = 0x7F000099;
  p.plannedStartMs = 0x7E0000AA;
  const BlockBytes b = EncodeRecorderBlock(p);
  return b[kState] == 0x11 && b[kBitsOrProcessId] == 0x22 && b[kSamplesPerSec] == 0x33 &&
         b[kChannels] == 0x44 && b[kSeconds] == 0x55 && b[kBufferKb] == 0x66 &&
         b[kWaveName] == 0x77 && b[kTempName - 1] == 0x78 && b[kTempName] == 0x88 &&
         b[kAlignment - 1] == 0x89 && b[kAlignment] == 0 && b[kAlignment + 1] == 0 &&
         b[kReserved] == 0x99 && b[kReserved + 3] == 0x7F && b[kPlannedStart] == 0xAA &&
         b[kPlannedStart + 3] == 0x7E && b[kSpare] == 0 && b[kSize - 1] == 0 &&
         DecodeRecorderBlock(b) == p;
}
static_assert(WriterMatchesOffsets(), "recorder block writer disagrees with the frozen offsets");
}  // namespace block_layout

// Two seconds of sound in kilobytes plus 100, rounded to the nearest integer
// (halves to even), never more than 1000.
int32_t RecorderBufferKb(int32_t samplesPerSec, int32_t bitsPerSample, int32_t channels);

// The temporary file of a recording: the wave file name with ".wavtemp" appended.
std::string TemporaryWaveName(std::string_view waveName);

enum class StartRequestError {
  kNone,
  kNameTooLong,  // the wave or temporary name does not fit its 261-byte field
  kNameEmpty,
  kNameNotInCodePage,  // a character the ANSI code page cannot write
};

// Fills a start request (state 1). `waveNameAnsi` is in the ANSI code page;
// a name that does not fit is refused, never cut.
StartRequestError BuildStartRequest(const SoundFormat& format, int32_t seconds,
                                    std::string_view waveNameAnsi, int32_t plannedStartMs,
                                    RecorderBlock& out);

// The text the application shows when it refuses a name (UTF-8); empty for kNone.
std::string StartRequestErrorText(StartRequestError e);

// Why the recorder refuses a start request it was given. The recorder trusts
// nothing in the block: every field is checked before a device or file is touched.
enum class RequestProblem {
  kNone,
  kBits,
  kRate,
  kChannels,
  kSeconds,
  kBufferSize,
  kWaveName,
  kTempName,
  kTooLong,  // the data would not fit a wave file's 32-bit sizes
};
RequestProblem CheckStartRequest(const RecorderBlock& b);

// A name field's bytes up to its NUL; empty when the field has no NUL.
std::string NameFieldText(const NameField& field);

}  // namespace velmora::sound
