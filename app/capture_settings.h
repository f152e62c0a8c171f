// CaptureSettings: every recording option of the main window in one record,
// its defaults, and its .QRT file form - the 27 fields in order, little-
// endian, no padding, strings as a 16-bit length and ANSI bytes. With four
// empty strings a file is 86 bytes.
#pragma once
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velmora {

// 16-bit booleans as the file and the controls hold them. Applying a record
// treats only -1 as true (HasCompressor: anything but 0), so the raw value
// is kept rather than a bool.
inline constexpr int16_t kTrue16 = -1;
inline constexpr int16_t kFalse16 = 0;
inline constexpr int16_t Bool16(bool b) { return b ? kTrue16 : kFalse16; }
inline constexpr bool IsTrue16(int16_t v) { return v == kTrue16; }

struct CaptureSettings {
  int32_t Left = 0;
  int32_t Top = 0;
  int32_t Width = 0;
  int32_t Height = 0;
  int32_t Fps = 0;
  int32_t Seconds = 0;
  int32_t Method = 0;
  int32_t CpuReleaseCount = 0;
  int32_t CpuReleaseTime = 0;
  std::string MovieFile;  // UTF-8 here; ANSI code page in the file
  int16_t KeepMovie = kFalse16;
  int32_t DisplayDepth = 0;
  int16_t DrawMouse = kFalse16;
  int16_t FollowMouse = kFalse16;
  std::string AviFile;
  int16_t HasCompressor = kFalse16;
  // Meaningless outside the process that built the record; always written as 0.
  int32_t CompressorOptionsAddress = 0;
  int16_t Avi24Bit = kFalse16;
  std::string WaveFile;
  std::string WaveTempFile;
  int32_t SampleRate = 0;
  int32_t BitsPerSample = 0;
  int32_t Channels = 0;
  int16_t DeleteWave = kFalse16;
  int32_t RecordingLine = 0;
  int32_t PriorityClass = 0;
  int16_t AsyncWrite = kFalse16;
  friend bool operator==(const CaptureSettings&, const CaptureSettings&) = default;
};

// The defaults; AsyncWrite is on exactly on the NT platform family.
CaptureSettings DefaultSettings(bool isNtPlatform);

// Conversions between UTF-8 and the system's ANSI code page for the four
// strings; nullopt when a text cannot be converted. On Windows see
// app/win/ansi.h; the identity suits tests and single-byte data.
struct AnsiCodec {
  std::function<std::optional<std::string>(const std::string& utf8)> toAnsi;
  std::function<std::optional<std::string>(const std::string& ansi)> toUtf8;
};
AnsiCodec IdentityAnsiCodec();

// The file bytes of a record; nullopt when a string does not convert or its
// ANSI form is longer than 65535 bytes. The compressor-options field is 0.
std::optional<std::vector<uint8_t>> EncodeSettings(const CaptureSettings& s,
                                                   const AnsiCodec& codec);

// The record held by `bytes`; nullopt when the bytes end inside a field (a
// string length running past the end included) or a string does not convert.
// Bytes after the last field are ignored.
std::optional<CaptureSettings> DecodeSettings(std::span<const uint8_t> bytes,
                                              const AnsiCodec& codec);

// Reads a .QRT file. Failure (missing, unreadable, truncated, corrupt) is
// the all-zero record, whose Width and Height of 0 callers test for.
CaptureSettings ReadSettingsFile(const std::string& utf8Path, const AnsiCodec& codec);

// Replaces the file (an existing one is deleted first, read-only or not) and
// writes the record in one write. 0 on success, -1 on any failure.
int32_t WriteSettingsFile(const std::string& utf8Path, const CaptureSettings& s,
                          const AnsiCodec& codec);

}  // namespace velmora
