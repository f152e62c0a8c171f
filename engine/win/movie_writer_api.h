// The few system calls the movie writers make that can fail in ways a test
// cannot provoke on demand (little memory, a mapping or view refused, a full
// disk). The writers call them through this table; tests hand in a copy with
// some entries replaced.
#pragma once
#include <windows.h>

#include <cstdint>
#include <string>

#include "engine/win/handles.h"

namespace velmora::win {

struct MovieWriterApi {
  uint64_t (*totalPhysicalMemory)();
  uint32_t (*allocationGranularity)();
  // An unnamed read-write mapping of `size` bytes over `file` (extends it).
  HANDLE (*createMapping)(HANDLE file, uint64_t size);
  void* (*mapView)(HANDLE mapping, uint64_t offset, size_t bytes);
  BOOL (*writeFile)(HANDLE file, const void* data, DWORD bytes, DWORD* written);
  // Bytes the caller may still use on the volume holding `utf8Path`;
  // UINT64_MAX when the system cannot tell.
  uint64_t (*freeDiskBytes)(const std::string& utf8Path);
  // Asks the file system to allocate `bytes` for `file` now rather than page
  // by page later. Returns 0 or the system error number (also when the file
  // system cannot do it).
  DWORD (*claimSpace)(HANDLE file, uint64_t bytes);
};

// The real calls.
const MovieWriterApi& SystemMovieWriterApi();

// Opens the movie file as both writers do: read/write, others may read,
// open-always (an existing file is opened, not replaced), sequential-scan.
UniqueFile OpenMovieFile(const std::string& utf8Path, DWORD extraFlags);

// Cuts the file at `length` bytes. Returns 0 or the system error number.
DWORD CutFile(HANDLE file, uint64_t length);

}  // namespace velmora::win
