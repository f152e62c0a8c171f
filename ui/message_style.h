// Style numbers and answer codes of message boxes, as the system message box
// numbers them: the low four bits choose the buttons, bits 4..7 the icon,
// bits 8..11 the default button. A box that nobody can answer (the command
// line) takes the default button's answer.
#pragma once
#include <cstdint>
#include <vector>

namespace velmora {

enum MessageAnswer : int32_t {
  kAnswerOk = 1,
  kAnswerCancel = 2,
  kAnswerAbort = 3,
  kAnswerRetry = 4,
  kAnswerIgnore = 5,
  kAnswerYes = 6,
  kAnswerNo = 7,
};

inline constexpr int32_t kStyleOk = 0;
inline constexpr int32_t kStyleYesNo = 4;
inline constexpr int32_t kStyleIconError = 16;
inline constexpr int32_t kStyleIconQuestion = 32;

// The answers of the buttons, left to right (a button set of 6 or more is "OK").
std::vector<int32_t> ButtonAnswers(int32_t style);

// The answer of the default button; a default position past the last button
// falls back to the first.
int32_t DefaultAnswer(int32_t style);

}  // namespace velmora
