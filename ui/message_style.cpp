#include "ui/message_style.h"

#include <cstddef>

namespace velmora {

std::vector<int32_t> ButtonAnswers(int32_t style) {
  switch (style & 0xF) {
    case 1: return {kAnswerOk, kAnswerCancel};
    case 2: return {kAnswerAbort, kAnswerRetry, kAnswerIgnore};
    case 3: return {kAnswerYes, kAnswerNo, kAnswerCancel};
    case 4: return {kAnswerYes, kAnswerNo};
    case 5: return {kAnswerRetry, kAnswerCancel};
    default: return {kAnswerOk};
  }
}

int32_t DefaultAnswer(int32_t style) {
  const std::vector<int32_t> answers = ButtonAnswers(style);
  const auto position = static_cast<std::size_t>((style >> 8) & 0xF);
  return position < answers.size() ? answers[position] : answers.front();
}

}  // namespace velmora
