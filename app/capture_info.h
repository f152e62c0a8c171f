// What the main window tells the user about a recording with the present
// settings: the information list and the worst-case disk estimate. Built
// from a record and a description of the target volume, so the window only
// gathers values and shows texts.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "app/capture_settings.h"

namespace velmora {

// The information list, lines ended by CR LF except the last. It has the same
// number of lines with or without AVI and sound, so the layout never jumps.
// `compressorName` is shown when the record says a compressor was chosen.
std::string CaptureInfoText(const CaptureSettings& s, std::string_view compressorName);

// The volume that will hold the movie, as the Windows side found it.
struct VolumeDescription {
  uint64_t freeBytes = 0;  // total free bytes of the volume; 0 when unreadable
  std::string fileSystem;  // e.g. "NTFS"; empty when unreadable
  bool ntPlatform = true;
  uint64_t physicalMemory = 0;  // bytes
};

// The root whose free space counts for `path`: "C:\" for a drive path,
// "\\server\share\" for a network path; empty for a relative path (the
// current volume).
std::string VolumeRootOf(std::string_view path);

struct DiskEstimate {
  uint64_t totalBytes;  // movie and AVI uncompressed, plus sound
  uint64_t freeBytes;   // what the total is compared with
  bool warn;            // shown red: total + 100 MB does not fit
  std::string text;     // "1,234,567 Bytes."
};
DiskEstimate EstimateDisk(const CaptureSettings& s, const VolumeDescription& volume);

// Digits grouped by three with ",", then " Bytes."; 0 is "0 Bytes.".
std::string ByteCountText(uint64_t bytes);

}  // namespace velmora
