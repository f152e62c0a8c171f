#include "sound/win/shared_block.h"

#include <cstring>

namespace velmora::win {

using sound::block_layout::kSize;

SharedBlock SharedBlock::Create(const wchar_t* name) {
  return SharedBlock(
      CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, kSize, name));
}

SharedBlock SharedBlock::Open(const wchar_t* name) {
  return SharedBlock(OpenFileMappingW(FILE_MAP_READ | FILE_MAP_WRITE, FALSE, name));
}

void SharedBlock::Read(sound::BlockBytes& bytes) {
  if (!mapping_) return;
  UniqueView view(MapViewOfFile(mapping_.get(), FILE_MAP_READ, 0, 0, kSize));
  if (!view) return;
  std::memcpy(bytes.data(), view.get(), kSize);
}

void SharedBlock::Write(const sound::BlockBytes& bytes) {
  if (!mapping_) return;
  UniqueView view(MapViewOfFile(mapping_.get(), FILE_MAP_WRITE, 0, 0, kSize));
  if (!view) return;
  std::memcpy(view.get(), bytes.data(), kSize);
}

}  // namespace velmora::win
