#include "bench/common/throughput_log.h"

#include <map>

namespace velmora::bench {
namespace {

std::map<std::string, double>& Best() {
  static std::map<std::string, double> best;
  return best;
}

}  // namespace

void RecordThroughput(const std::string& name, double bytesPerSecond) {
  double& best = Best()[name];
  best = std::max(best, bytesPerSecond);
}

double BestThroughput(const std::string& name) {
  const auto it = Best().find(name);
  return it == Best().end() ? 0 : it->second;
}

}  // namespace velmora::bench
