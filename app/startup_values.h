// The values the entry procedure fixes once per session, the rules it applies
// before anything is shown, and its texts. Portable: the Windows start-up
// feeds it the executable's path and the screen's metrics.
#pragma once
#include <cstdint>
#include <string>

namespace velmora {

// Every path the rest of the program uses, built from the application
// folder in this order. Nothing is created on disk.
struct StartupPaths {
  std::string AppDir;               // always ends in "\"
  std::string RecorderExe;          // AppDir & "WaveInExe.exe"
  std::string RecorderTempMarker;   // RecorderExe & "temp"
  std::string SettingsDir;          // AppDir & "settings\"
  std::string DefaultSettingsFile;  // SettingsDir & "default.QRT"
  std::string IniFile;              // AppDir & "QRXSetting.ini"
  std::string PlayerExe;            // AppDir & "QRKPlayer.exe"
  std::string HelpFile;             // AppDir & "help/main.htm", forward slash kept
};

// The folder of an executable: "C:\" for one at a drive root, otherwise the
// folder without a trailing separator.
std::string ExecutableFolder(const std::string& exePath);

// `appFolder` gets a "\" only when it does not already end in one.
StartupPaths BuildStartupPaths(const std::string& appFolder);

// Twips (1/1440 inch) per screen pixel, rounded to an integer; 0 for a
// nonsensical resolution.
int32_t TwipsPerPixel(int32_t pixelsPerInch);

// Only exactly 8 bits per pixel is refused; lower depths go on.
inline bool IsRefusedDisplayDepth(int32_t bitsPerPixel) { return bitsPerPixel == 8; }

// The name of the object that marks a running instance of the executable at
// `exePath`: the same program in the same place gives the same name whatever
// the letter case of the path.
std::string InstanceName(const std::string& exePath);

inline constexpr char kEightBitDisplayText[] = "ディスプレイの解像度が8ビットは対応してません。";
inline constexpr char kAlreadyRunningText[] = "既に起動しています。";

}  // namespace velmora
