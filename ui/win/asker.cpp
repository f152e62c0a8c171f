#include "ui/win/asker.h"

#include "engine/win/text_encoding.h"
#include "ui/message_style.h"

namespace velmora::win {

int32_t SystemAsker::Msg(const std::string& prompt, int32_t style, const std::string& title) {
  const std::wstring caption = Widen(MessageTitle(title));
  return MessageBoxW(owner_, Widen(prompt).c_str(), caption.c_str(), static_cast<UINT>(style));
}

int32_t DefaultAsker::Msg(const std::string& prompt, int32_t style, const std::string&) {
  if (report_) report_(prompt);
  return DefaultAnswer(style);
}

}  // namespace velmora::win
