// The running program's own path and the folder its relative file names
// mean: the recording, the header fix after it, playback, the recorder and
// the settings files must all meet the same file whatever the current
// directory is.
#pragma once
#include <string>

namespace velmora::win {

// The full path of the running program's executable, however long.
std::wstring ExecutablePath();
// A relative path resolved against the folder of the running program; an
// absolute or empty one comes back unchanged.
std::string ResolveInApplicationFolder(const std::string& utf8Path);

}  // namespace velmora::win
