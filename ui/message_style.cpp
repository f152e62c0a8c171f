#include "ui/message_style.h"

#include <algorithm>

namespace velmora {

std::vector<MessageButton> MessageButtons(int32_t style) {
  // The yes/no pair carries no access keys while yes/no/cancel does; the
  // two sets are worded differently on purpose.
  switch (style & 0xF) {
    case 1:
      return {{"OK", kAnswerOk}, {"キャンセル", kAnswerCancel}};
    case 2:
      return {{"中止", kAnswerAbort}, {"再試行", kAnswerRetry}, {"無視", kAnswerIgnore}};
    case 3:
      return {{"はい(&Y)", kAnswerYes}, {"いいえ(&N)", kAnswerNo}, {"キャンセル", kAnswerCancel}};
    case 4:
      return {{"はい", kAnswerYes}, {"いいえ", kAnswerNo}};
    case 5:
      return {{"再試行", kAnswerRetry}, {"キャンセル", kAnswerCancel}};
    default:
      return {{"OK", kAnswerOk}};
  }
}

std::vector<int32_t> ButtonAnswers(int32_t style) {
  std::vector<int32_t> answers;
  for (const MessageButton& b : MessageButtons(style)) answers.push_back(b.answer);
  return answers;
}

MessageIcon IconOf(int32_t style) {
  switch (style & 0xF0) {
    case 16:
      return MessageIcon::kError;
    case 32:
      return MessageIcon::kQuestion;
    case 48:
      return MessageIcon::kExclamation;
    case 64:
      return MessageIcon::kInformation;
    default:
      return MessageIcon::kNone;
  }
}

std::size_t DefaultButtonIndex(int32_t style) {
  const auto position = static_cast<std::size_t>((style >> 8) & 0xF);
  return position < MessageButtons(style).size() ? position : 0;
}

int32_t DefaultAnswer(int32_t style) { return ButtonAnswers(style)[DefaultButtonIndex(style)]; }

namespace {
bool HasAnswer(int32_t style, int32_t answer) {
  const std::vector<int32_t> answers = ButtonAnswers(style);
  return std::find(answers.begin(), answers.end(), answer) != answers.end();
}
}  // namespace

int32_t EscapeAnswer(int32_t style) {
  if (HasAnswer(style, kAnswerCancel)) return kAnswerCancel;
  const std::vector<int32_t> answers = ButtonAnswers(style);
  return answers.size() == 1 ? answers.front() : 0;
}

int32_t AccessKeyAnswer(int32_t style, char key) {
  const int32_t answer = (key == 'y' || key == 'Y')   ? kAnswerYes
                         : (key == 'n' || key == 'N') ? kAnswerNo
                                                      : 0;
  return answer != 0 && HasAnswer(style, answer) ? answer : 0;
}

std::string MessageTitle(const std::string& title) {
  return title.empty() ? kApplicationTitle : title;
}

}  // namespace velmora
