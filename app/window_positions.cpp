#include "app/window_positions.h"

#include <cstdio>
#include <filesystem>
#include <vector>

#include "engine/byte_source.h"
#include "engine/file_idioms.h"
#include "engine/numbers.h"

namespace velmora {

std::string WindowPositionsText(const WindowPositions& p) {
  const std::string n = "\r\n";
  return "//Velmora Setting" + n + "//順番は変更不可です。" + n + std::to_string(p.CaptureWindowX) +
         " //キャプチャウィンドウのX" + n + std::to_string(p.CaptureWindowY) +
         " //キャプチャウィンドウのY" + n + std::to_string(p.AviWindowX) + " //AVIウィンドウのX" +
         n + std::to_string(p.AviWindowY) + " //AVIウィンドウのY" + n;
}

int32_t ParseWindowPositions(std::string_view text, WindowPositions& p) {
  if (text.empty()) return -2;
  // Lines end in CR LF; a lone LF from a hand edit is accepted too.
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const size_t lf = text.find('\n');
    std::string_view line = text.substr(0, lf);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.push_back(line);
    text = lf == std::string_view::npos ? std::string_view{} : text.substr(lf + 1);
  }
  int32_t* const fields[] = {&p.CaptureWindowX, &p.CaptureWindowY, &p.AviWindowX, &p.AviWindowY};
  for (size_t i = 0; i < 4 && i + 2 < lines.size(); ++i) *fields[i] = LeadingInteger(lines[i + 2]);
  return 0;
}

WindowPositions DefaultWindowPositions(const ScreenRect& work, WindowSize capture,
                                       WindowSize progress) {
  const auto half = [](int64_t v) { return static_cast<int32_t>(RoundHalfEven(v / 2.0)); };
  WindowPositions p;
  p.CaptureWindowX = work.right - capture.width;
  p.CaptureWindowY = work.bottom - capture.height;
  p.AviWindowX = half(int64_t{work.right} - work.left - progress.width);
  p.AviWindowY = half(int64_t{work.bottom} - work.top - progress.height);
  return p;
}

ScreenPoint ClampIntoWorkArea(ScreenPoint p, WindowSize window, const ScreenRect& work) {
  if (p.x < work.left) p.x = 0;
  if (int64_t{p.x} + window.width > work.right) p.x = work.right - window.width;
  if (p.y < work.top) p.y = 0;
  if (int64_t{p.y} + window.height > work.bottom) p.y = work.bottom - window.height;
  return p;
}

int32_t LoadWindowPositions(const std::string& utf8Path, const AnsiCodec& codec,
                            WindowPositions& p) {
  std::error_code ec;
  if (!std::filesystem::exists(PathFromUtf8(utf8Path), ec)) {
    return -2;
  }
  const UniqueCFile f(OpenFileUtf8(utf8Path, "rb"));
  if (!f) return -1;
  // Only the first six lines matter; a huge file is read no further than this.
  std::string bytes(4096, '\0');
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), f.get()));
  const bool more = std::fgetc(f.get()) != EOF;
  // Cut a long file at a line end so no double-byte character is split
  // (no second byte of the code page is a line feed).
  if (more) bytes.resize(bytes.rfind('\n') == std::string::npos ? 0 : bytes.rfind('\n') + 1);
  if (bytes.empty() && !more) return -2;
  const auto text = codec.toUtf8(bytes);
  if (!text) return -1;
  return ParseWindowPositions(*text, p);
}

int32_t SaveWindowPositions(const std::string& utf8Path, const WindowPositions& p,
                            const AnsiCodec& codec) {
  const auto ansi = codec.toAnsi(WindowPositionsText(p));
  if (!ansi) return -1;
  return ReplaceFileUtf8(utf8Path,
                         std::span(reinterpret_cast<const uint8_t*>(ansi->data()), ansi->size()));
}

}  // namespace velmora
