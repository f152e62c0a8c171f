// velmora.exe /record JOB.QRT: one recording from a settings file, a
// one-line summary on the console, then what the job's save mode asks for
// (24-bit re-encoding, AVI with the sound, deletions) with the progress
// window showing and every question answered by its default button. The
// exit code is the engine's result code (the re-encoding's when one ran).
#pragma once
#include <string>
#include <vector>

#include "app/win/command_line.h"

namespace velmora::win {

VerbResult RunRecordCommand(const std::vector<std::wstring>& args);

}  // namespace velmora::win
