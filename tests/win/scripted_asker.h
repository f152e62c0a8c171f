// An Asker for tests: records every question and gives one fixed answer.
#pragma once
#include <string>
#include <utility>
#include <vector>

#include "ui/message_style.h"
#include "ui/win/asker.h"

namespace velmora::test {

// The questions asked, each with its style.
using Asked = std::vector<std::pair<std::string, int32_t>>;
inline constexpr int32_t kCritical = kStyleOk | kStyleIconError;

class ScriptedAsker final : public win::Asker {
 public:
  explicit ScriptedAsker(int32_t answer) : answer_(answer) {}
  int32_t Msg(const std::string& prompt, int32_t style, const std::string& title) override {
    asked.push_back({prompt, style});
    titles.push_back(title);
    return answer_;
  }
  Asked asked;
  std::vector<std::string> titles;

 private:
  int32_t answer_;
};

}  // namespace velmora::test
