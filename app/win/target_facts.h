// What only the system can tell about a recording's target files: whether
// the movie's folder takes a new file, whether the code page can name it,
// and whether a file exists (the start command's overwrite question).
#pragma once
#include <string>

#include "app/start_checks.h"

namespace velmora::win {

TargetFacts GatherTargetFacts(const std::string& utf8MovieFile);

bool FileExists(const std::string& utf8Path);

}  // namespace velmora::win
