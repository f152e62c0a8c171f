// A tool tip of several lines: the tip window breaks lines at CR LF (its
// maximum width is set), so lines are joined with CR LF.
#pragma once
#include <initializer_list>
#include <string>
#include <string_view>

namespace velmora {

inline std::string TipText(std::initializer_list<std::string_view> lines) {
  std::string text;
  bool first = true;
  for (std::string_view line : lines) {
    if (!first) text += "\r\n";
    text += line;
    first = false;
  }
  return text;
}

}  // namespace velmora
