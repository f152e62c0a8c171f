// Style numbers and answer codes of message boxes, as the system message box
// numbers them: the low four bits choose the buttons, bits 4..7 the icon,
// bits 8..11 the default button. The application's own box and the command
// line (which takes the default button's answer) decide through these.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
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
inline constexpr int32_t kStyleIconInformation = 64;

// The title of a box whose caller gave none.
inline constexpr const char* kApplicationTitle = "Velmora";

enum class MessageIcon : int32_t {
  kNone = 0,
  kError = 1,
  kQuestion = 2,
  kExclamation = 3,
  kInformation = 4
};

struct MessageButton {
  const char* caption;  // UTF-8, with "&" before an access key
  int32_t answer;
};

// The buttons, left to right (a button set of 6 or more is "OK").
std::vector<MessageButton> MessageButtons(int32_t style);
std::vector<int32_t> ButtonAnswers(int32_t style);

MessageIcon IconOf(int32_t style);

// Position of the default button; a position past the last button falls
// back to the first.
std::size_t DefaultButtonIndex(int32_t style);
int32_t DefaultAnswer(int32_t style);

// What Esc (or the close box) answers: Cancel where there is a Cancel
// button, OK for a lone OK; 0 when the box must be answered by a button.
int32_t EscapeAnswer(int32_t style);

// What Alt+`key` answers ('y' or 'n', either case): yes or no when the box
// has that button, else 0. Also for the yes/no set, whose captions show no
// access keys.
int32_t AccessKeyAnswer(int32_t style, char key);

// The box's title: `title`, or the application's when empty.
std::string MessageTitle(const std::string& title);

}  // namespace velmora
