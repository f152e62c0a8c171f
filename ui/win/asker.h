// The one way the application asks a question or shows a message: the
// window code calls Msg with a style number and gets an answer code back.
// The system box serves the windows, the default answers serve the command
// line (nobody to ask), and tests answer with their own.
#pragma once
#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>

namespace velmora::win {

class Asker {
 public:
  virtual ~Asker() = default;
  // `prompt` and `title` in UTF-8; an empty title is the application's.
  virtual int32_t Msg(const std::string& prompt, int32_t style, const std::string& title = {}) = 0;
};

// MessageBoxW owned by `owner` (may be null).
class SystemAsker final : public Asker {
 public:
  explicit SystemAsker(HWND owner = nullptr) : owner_(owner) {}
  int32_t Msg(const std::string& prompt, int32_t style, const std::string& title = {}) override;

 private:
  HWND owner_;
};

// Answers every box with its default button and tells `report` (when set)
// what was asked, so a command line can print it.
class DefaultAsker final : public Asker {
 public:
  explicit DefaultAsker(std::function<void(const std::string&)> report = {})
      : report_(std::move(report)) {}
  int32_t Msg(const std::string& prompt, int32_t style, const std::string& title = {}) override;

 private:
  std::function<void(const std::string&)> report_;
};

}  // namespace velmora::win
