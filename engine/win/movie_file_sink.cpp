#include "engine/win/movie_file_sink.h"

#include "engine/win/mapped_movie_writer.h"
#include "engine/win/ordinary_movie_writer.h"

namespace velmora::win {

std::unique_ptr<MovieSink> MakeMovieFileSink(bool mapped) {
  if (mapped) return std::make_unique<MappedMovieWriter>();
  return std::make_unique<OrdinaryMovieWriter>();
}

}  // namespace velmora::win
