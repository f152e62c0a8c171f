// The application's side of the sound recorder: the named block, the hello
// handshake at start-up, the start request written when grabbing begins, the
// stop-and-wait after a recording, and the recorder's process priority.
#pragma once
#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>

#include "engine/clock.h"
#include "engine/win/handles.h"
#include "sound/recorder_protocol.h"
#include "sound/sound_formats.h"
#include "sound/win/shared_block.h"

namespace velmora::win {

// Shows a message to the user (UTF-8). The default is the system's plain message box.
using ShowMessageFn = std::function<void(const std::string& utf8)>;
void ShowPlainMessage(const std::string& utf8);

// Fills a start request from the run's settings; the UTF-8 wave file name is
// turned into the ANSI code page here and refused when it cannot be written
// there or does not fit the block.
sound::StartRequestError PrepareStartRequest(const sound::SoundFormat& format, int32_t seconds,
                                             const std::string& utf8WaveName,
                                             int32_t plannedStartMs, sound::RecorderBlock& out);

class RecorderControl {
 public:
  // `blockName` is the fixed name of the recorder block; tests may pass another.
  explicit RecorderControl(Clock& clock, std::wstring blockName = sound::kRecorderBlockName);

  // Start-up handshake: creates the block, writes hello, starts the recorder
  // through the shell's "open" verb with our process id as its parameter and
  // waits up to 5000 ms (messages keep running) for its answer. If the shell
  // cannot start it, the block is closed at once and the wait still runs out.
  // Returns true when the recorder answered.
  bool StartRecorder(const std::wstring& recorderExe);

  // 0 / null when sound is unavailable for this run of the program.
  HANDLE RecorderMapping() const { return block_.Handle(); }
  uint32_t RecorderProcessId() const { return processId_; }

  // The run keeps its start request here; WriteStartRequest (at the engine's
  // start of capture) writes the copy as it stands, zeros before any run with sound.
  void SetStartRequest(const sound::RecorderBlock& request);
  void WriteStartRequest();

  // Stop and wait for the answer; the failure and time-out texts go to `show`.
  sound::StopOutcome StopAndWait(const ShowMessageFn& show = ShowPlainMessage);

 private:
  Clock& clock_;
  std::wstring blockName_;
  SharedBlock block_;
  uint32_t processId_ = 0;
  sound::BlockBytes startCopy_{};
};

// Puts the recorder's process at the priority class the user chose for the
// run and back to its own afterwards (at Restore or destruction).
class RecorderPriority {
 public:
  RecorderPriority() = default;
  RecorderPriority(const RecorderPriority&) = delete;
  RecorderPriority& operator=(const RecorderPriority&) = delete;
  ~RecorderPriority() { Restore(); }

  // False when the process cannot be opened with query and set rights.
  bool Apply(uint32_t processId, DWORD priorityClass);
  void Restore();

 private:
  UniqueHandleObj process_;
  DWORD previous_ = 0;
};

}  // namespace velmora::win
