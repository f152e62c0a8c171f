// The application's two waits on the recorder, as algorithms over a block
// port and a clock, so that they run identically against the shared memory on
// Windows and against scripted fakes in tests.
#pragma once
#include <cstdint>
#include <string>

#include "engine/clock.h"
#include "sound/recorder_block.h"

namespace velmora::sound {

// Whole-block access to the shared memory. With no memory behind it, Read
// leaves `bytes` as they are and Write does nothing.
class BlockPort {
 public:
  virtual ~BlockPort() = default;
  virtual void Read(BlockBytes& bytes) = 0;
  virtual void Write(const BlockBytes& bytes) = 0;
};

inline constexpr double kRecorderAnswerLimitMs = 5000;

// Start-up: polls every 1 ms (after writing hello, which the caller did)
// until the block says 0 or more than 5000 ms have passed. Returns the
// recorder's process id, or 0 on time-out. The local copy is not cleared
// between reads: with no memory behind the port the state stays hello and
// the wait runs its full length.
uint32_t WaitForHelloAnswer(Clock& clock, BlockPort& port, const BlockBytes& hello);

enum class StopOutcome {
  kComplete,  // the recorder answered 4
  kFailed,    // the recorder answered 6
  kNoAnswer,  // nothing within 5000 ms
};

// After the recording: polls every 100 ms. 4 or 6 end the wait with state 0
// written back; any other state but 3 gets the stop request (again); after
// 5000 ms the wait ends without writing.
StopOutcome StopAndWait(Clock& clock, BlockPort& port);

// The message the application shows for an outcome (UTF-8); empty for kComplete.
std::string StopOutcomeMessage(StopOutcome outcome);

}  // namespace velmora::sound
