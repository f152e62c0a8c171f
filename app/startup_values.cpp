#include "app/startup_values.h"

#include <cmath>
#include <cstdio>

namespace velmora {

std::string ExecutableFolder(const std::string& exePath) {
  const size_t slash = exePath.find_last_of("\\/");
  if (slash == std::string::npos) return {};
  std::string folder = exePath.substr(0, slash);
  // "C:" alone names the drive's current folder, not its root.
  if (folder.size() == 2 && folder[1] == ':') folder += '\\';
  return folder;
}

StartupPaths BuildStartupPaths(const std::string& appFolder) {
  StartupPaths p;
  p.AppDir = appFolder;
  if (p.AppDir.empty() || p.AppDir.back() != '\\') p.AppDir += '\\';
  p.RecorderExe = p.AppDir + "WaveInExe.exe";
  p.RecorderTempMarker = p.RecorderExe + "temp";
  p.SettingsDir = p.AppDir + "settings\\";
  p.DefaultSettingsFile = p.SettingsDir + "default.QRT";
  p.IniFile = p.AppDir + "QRXSetting.ini";
  p.PlayerExe = p.AppDir + "QRKPlayer.exe";
  p.HelpFile = p.AppDir + "help/main.htm";
  return p;
}

int32_t TwipsPerPixel(int32_t pixelsPerInch) {
  if (pixelsPerInch <= 0) return 0;
  return static_cast<int32_t>(std::lround(1440.0 / pixelsPerInch));
}

std::string InstanceName(const std::string& exePath) {
  // Object names may not hold "\" and are limited in length, so the path
  // (ASCII letters folded, both separators alike) is hashed (FNV-1a).
  uint64_t hash = 1469598103934665603ull;
  for (char c : exePath) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c == '/') c = '\\';
    hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211ull;
  }
  char hex[17];
  std::snprintf(hex, sizeof hex, "%016llx", static_cast<unsigned long long>(hash));
  return std::string("Velmora-instance-") + hex;
}

}  // namespace velmora
