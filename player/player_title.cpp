#include "player/player_title.h"

namespace velmora {

std::string PlayerTitle(const std::string& utf8Path, int64_t framesPlayed, int64_t frameCount) {
  const size_t slash = utf8Path.find_last_of("\\/");
  const std::string name = slash == std::string::npos ? utf8Path : utf8Path.substr(slash + 1);
  return name + " - " + std::to_string(framesPlayed) + "/" + std::to_string(frameCount);
}

}  // namespace velmora
