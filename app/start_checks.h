// The start command's checks before anything is recorded: whether the
// target and the region can be recorded at all, and the question asked when
// the run would replace files that exist. The window gathers what only the
// system can tell (the folder, the code page, which files exist); the
// decisions and the texts are made here.
#pragma once
#include <functional>
#include <string>
#include <string_view>

#include "app/capture_settings.h"

namespace velmora {

// What the window learned about the movie's target.
struct TargetFacts {
  bool folderWritable = false;  // the movie's folder exists and a file can be made in it
  bool nameConverts = false;    // the movie path has a form in the ANSI code page
};

// A drive path ("C:\...") or a network path ("\\server\share\...").
bool IsAbsoluteWindowsPath(std::string_view path);

// The folder part of a movie path, without its last "\" ("C:\" keeps it).
std::string TargetFolder(std::string_view moviePath);

// True when a run may start: an absolute movie path in a writable folder that
// the code page can name, and a region of at least 1 x 1 whose rows fill the
// capture method's row alignment at the display depth.
bool StartIsValid(const CaptureSettings& s, const TargetFacts& facts);

// The refusal of an invalid target.
std::string InvalidTargetText(const std::string& movieFile);

inline constexpr char kNoCompressorText[] =
    "AVIファイルを作成する場合は圧縮方法を選択してください。";

// The question before files that exist are replaced (movie, AVI, wave, in
// that order, by their bare names); empty when none exists. The AVI and wave
// entries always begin a new line, so a notice without the movie opens with
// an empty line.
std::string OverwriteQuestion(const CaptureSettings& s,
                              const std::function<bool(const std::string&)>& exists);

}  // namespace velmora
