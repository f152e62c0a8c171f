// A memory copy into a file mapping that survives the file system refusing a
// page. A pre-extended file may be sparse (so under Wine): its space is only
// claimed when a page is first written, and on a full volume that write
// raises an in-page fault instead of failing a call. mingw g++ has no __try,
// so a vectored handler catches faults at the copy's single instruction and
// makes the copy return false instead.
#pragma once
#include <cstddef>

namespace velmora::win {

// Copies `bytes` from `src` to `dst`. Returns false when writing `dst` raised
// an access or in-page fault; `dst` then holds an unknown prefix of `src`.
// Faults anywhere else are left to the process's usual handling.
bool CopyUnlessPageFault(void* dst, const void* src, size_t bytes);

}  // namespace velmora::win
