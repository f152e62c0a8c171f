// The recorder block's named shared memory: a 594-byte mapping backed by the
// paging file. Each read or write maps a view, copies the whole block and
// unmaps it again; with no mapping, or a view that cannot be mapped, nothing
// is copied.
#pragma once
#include <windows.h>

#include "engine/win/handles.h"
#include "sound/recorder_protocol.h"

namespace velmora::win {

class SharedBlock final : public sound::BlockPort {
 public:
  SharedBlock() = default;
  // Creates (or joins, if it exists) the named mapping.
  static SharedBlock Create(const wchar_t* name);
  // Opens a mapping the other program created.
  static SharedBlock Open(const wchar_t* name);

  bool IsOpen() const { return static_cast<bool>(mapping_); }
  HANDLE Handle() const { return mapping_.get(); }
  void Close() { mapping_.reset(); }

  void Read(sound::BlockBytes& bytes) override;
  void Write(const sound::BlockBytes& bytes) override;

 private:
  explicit SharedBlock(HANDLE mapping) : mapping_(mapping) {}
  UniqueHandleObj mapping_;
};

}  // namespace velmora::win
