// An Asker for tests: records every question and gives one fixed answer.
#pragma once
#include <string>
#include <utility>
#include <vector>

#include "ui/win/asker.h"

namespace velmora::test {

class ScriptedAsker final : public win::Asker {
 public:
  explicit ScriptedAsker(int32_t answer) : answer_(answer) {}
  int32_t Msg(const std::string& prompt, int32_t style, const std::string& title) override {
    asked.push_back({prompt, style});
    titles.push_back(title);
    return answer_;
  }
  std::vector<std::pair<std::string, int32_t>> asked;
  std::vector<std::string> titles;

 private:
  int32_t answer_;
};

}  // namespace velmora::test
