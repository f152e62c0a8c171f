// The two header services on a movie file: query (read and validate) and
// patch (rewrite fields in place). Paths are UTF-8.
#pragma once
#include <cstdint>
#include <string>

#include "engine/movie_format.h"

namespace velmora {

// Returns 0, -11 (no such file), -12 (empty, or its length cannot be taken),
// -2 (cannot be opened) or -3 (bad magic or version, or a field out of range;
// a file shorter than the header is -3 too). `out` is filled only on 0 and
// only when the bit count is usable (8..32, a multiple of 8): a 0 result does
// not promise a filled header.
int32_t QueryMovieHeader(const std::string& path, MovieHeader* out);

// Replaces every non-zero argument's field; method, magic and version stay.
// Rewrites the first 32 bytes whatever they held; does nothing when the file
// cannot be opened for update.
void PatchMovieHeader(const std::string& path, int32_t width, int32_t height, int32_t bitCount,
                      int32_t fps, int32_t sec);

}  // namespace velmora
