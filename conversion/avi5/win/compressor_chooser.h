// The platform's compressor chooser, filling a caller's COMPVARS bytes.
#pragma once
#include <windows.h>

#include <string>

namespace velmora::win {

// Shows the chooser owned by `owner`. On a choice, fills the record at
// `compVars` (sizeof(COMPVARS) bytes; handles and buffers are released and
// zeroed, so the record is plain data the caller may keep) and sets `ansiName`
// to the compressor's description in the ANSI code page. False when the
// user cancelled or no chooser could be shown.
bool ChooseCompressor(HWND owner, void* compVars, std::string& ansiName);

}  // namespace velmora::win
