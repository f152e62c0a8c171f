#include "app/win/volume_description.h"

#include <windows.h>

#include "engine/win/text_encoding.h"

namespace velmora::win {

VolumeDescription DescribeMovieVolume(const std::string& utf8MoviePath) {
  VolumeDescription d;
  const std::string root = VolumeRootOf(utf8MoviePath);
  const std::wstring wroot = Widen(root);
  const wchar_t* rootArg = root.empty() ? nullptr : wroot.c_str();
  // An empty drive must give "unreadable", not a system box asking for a disk.
  DWORD oldMode = 0;
  SetThreadErrorMode(SEM_FAILCRITICALERRORS, &oldMode);
  ULARGE_INTEGER toCaller{}, total{}, totalFree{};
  if (GetDiskFreeSpaceExW(rootArg, &toCaller, &total, &totalFree)) d.freeBytes = totalFree.QuadPart;
  wchar_t fileSystem[MAX_PATH + 1] = {};
  if (GetVolumeInformationW(rootArg, nullptr, 0, nullptr, nullptr, nullptr, fileSystem,
                            MAX_PATH + 1)) {
    d.fileSystem = Narrow(fileSystem);
  }
  SetThreadErrorMode(oldMode, nullptr);

  OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof(version);
  d.ntPlatform = !GetVersionExW(&version) || version.dwPlatformId == VER_PLATFORM_WIN32_NT;
  MEMORYSTATUSEX memory{};
  memory.dwLength = sizeof(memory);
  if (GlobalMemoryStatusEx(&memory)) d.physicalMemory = memory.ullTotalPhys;
  return d;
}

}  // namespace velmora::win
