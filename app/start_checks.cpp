#include "app/start_checks.h"

#include "engine/movie_format.h"

namespace velmora {
namespace {

std::string_view BareName(std::string_view path) {
  const size_t slash = path.find_last_of("\\/");
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

bool IsDriveLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

}  // namespace

bool IsAbsoluteWindowsPath(std::string_view path) {
  if (path.size() >= 3 && IsDriveLetter(path[0]) && path[1] == ':' && path[2] == '\\') return true;
  // "\\server\share\": a server and a share, each non-empty.
  if (path.size() < 5 || path.substr(0, 2) != "\\\\") return false;
  const size_t serverEnd = path.find('\\', 2);
  return serverEnd != std::string_view::npos && serverEnd > 2 && serverEnd + 1 < path.size() &&
         path[serverEnd + 1] != '\\';
}

std::string TargetFolder(std::string_view moviePath) {
  const size_t slash = moviePath.rfind('\\');
  if (slash == std::string_view::npos) return {};
  // The root of a drive is named with its "\"; "C:" alone is the current folder there.
  if (slash == 2 && moviePath[1] == ':') return std::string(moviePath.substr(0, 3));
  return std::string(moviePath.substr(0, slash));
}

bool StartIsValid(const CaptureSettings& s, const TargetFacts& facts) {
  return IsAbsoluteWindowsPath(s.MovieFile) && facts.folderWritable && facts.nameConverts &&
         s.Width >= 1 && s.Height >= 1 && IsValidRegionWidth(s.Width, s.DisplayDepth, s.Method);
}

std::string InvalidTargetText(const std::string& movieFile) {
  return movieFile + "は無効です\r\n保存先ファイル名、ドライブを確認下さい";
}

std::string OverwriteQuestion(const CaptureSettings& s,
                              const std::function<bool(const std::string&)>& exists) {
  std::string notice;
  const auto note = [&](const std::string& file, bool newLine) {
    if (file.empty() || !exists(file)) return;
    if (newLine) notice += "\r\n";
    notice += std::string(BareName(file)) + "は存在しています。";
  };
  note(s.MovieFile, false);
  note(s.AviFile, true);
  note(s.WaveFile, true);
  return notice.empty() ? notice : notice + "\r\n全て上書きしてよろしいですか？";
}

}  // namespace velmora
