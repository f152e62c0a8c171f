#include "app/main_window_values.h"

#include <algorithm>

#include "engine/movie_format.h"
#include "engine/numbers.h"
#include "sound/sound_formats.h"

namespace velmora {

namespace {

constexpr std::array<PriorityItem, 6> kPriorityItems{{
    {"変更なし", 0},
    {"高", 128},
    {"やや高", -32768},  // 0xFFFF8000 as stored by earlier versions; kept for their files
    {"通常", 32},
    {"やや低", 16384},
    {"低（アイドル）", 64},
}};

constexpr char kNoMixerText[] = "ミキサーが使用出来ないか、トグル式でしたので選択できません。";

}  // namespace

std::string MoviePathStem(std::string_view typed) {
  const size_t slash = typed.rfind('\\');
  // A "\" as the very first character does not make a folder part.
  const std::string_view folder = slash != std::string_view::npos && slash >= 1
                                      ? typed.substr(0, slash + 1)
                                      : std::string_view{};
  std::string_view name = slash == std::string_view::npos ? typed : typed.substr(slash + 1);
  if (const size_t dot = name.rfind('.'); dot != std::string_view::npos) name = name.substr(0, dot);
  return std::string(folder) + std::string(name);
}

CaptureSettings SettingsFromControls(const MainWindowValues& v, const WindowContext& ctx) {
  CaptureSettings s;
  s.Left = LeadingInteger(v.region[0]);
  s.Top = LeadingInteger(v.region[1]);
  s.Width = LeadingInteger(v.region[2]);
  s.Height = LeadingInteger(v.region[3]);
  s.Fps = v.fps;
  s.Seconds = v.seconds;
  s.Method = v.method == 2 ? 2 : v.method == 1 ? 1 : 0;
  s.CpuReleaseCount = v.cpuReleaseCount;
  s.CpuReleaseTime = v.cpuReleaseTime;
  const std::string stem = MoviePathStem(v.movieFile);
  s.MovieFile = stem + ".QRK";
  s.DisplayDepth = ctx.displayDepth;
  s.DrawMouse = Bool16(v.drawMouse);
  s.FollowMouse = Bool16(v.followMouse);
  s.HasCompressor = Bool16(!v.compressorName.empty());
  s.Avi24Bit = Bool16(v.avi24Bit);
  s.DeleteWave = Bool16(v.deleteWave);
  if (v.saveMode != SaveMode::MovieOnly) s.AviFile = stem + ".avi";
  if (v.sound) {
    s.WaveFile = stem + ".wav";
    s.WaveTempFile = s.WaveFile + ".wavtemp";
    const sound::SoundFormat f = sound::ParseSoundLabel(v.soundFormat);
    s.SampleRate = f.samplesPerSec;
    s.Channels = f.channels;
    s.BitsPerSample = f.bitsPerSample;
  }
  s.KeepMovie = Bool16(v.saveMode != SaveMode::AviOnly);
  s.RecordingLine = v.recordingLine;
  s.PriorityClass =
      v.priorityIndex >= 0 && v.priorityIndex < static_cast<int32_t>(kPriorityItems.size())
          ? kPriorityItems[v.priorityIndex].priorityClass
          : 0;
  s.AsyncWrite = Bool16(v.asyncWrite);
  return s;
}

void SettingsToControls(const CaptureSettings& s, const WindowContext& ctx, MainWindowValues& v) {
  v.region = {std::to_string(s.Left), std::to_string(s.Top), std::to_string(s.Width),
              std::to_string(s.Height)};
  // Scroll bars take 16-bit values; clamping first keeps a hostile file's
  // number from wrapping into something in range.
  const auto clamp = [](ScrollBar bar, int32_t value) {
    const ScrollRange r = ScrollRangeOf(bar);
    return std::clamp(value, r.min, r.max);
  };
  v.fps = clamp(ScrollBar::Fps, s.Fps);
  v.seconds = clamp(ScrollBar::Seconds, s.Seconds);
  if (s.Method >= 0 && s.Method <= 2) v.method = s.Method;
  v.cpuReleaseCount = clamp(ScrollBar::CpuReleaseCount, s.CpuReleaseCount);
  v.cpuReleaseTime = clamp(ScrollBar::CpuReleaseTime, s.CpuReleaseTime);
  v.movieFile = s.MovieFile;
  v.drawMouse = IsTrue16(s.DrawMouse);
  v.followMouse = IsTrue16(s.FollowMouse);
  v.saveMode = s.AviFile.empty()       ? SaveMode::MovieOnly
               : IsTrue16(s.KeepMovie) ? SaveMode::AviAndMovie
                                       : SaveMode::AviOnly;
  v.sound = !s.WaveFile.empty() && ctx.soundAvailable;
  if (s.HasCompressor == 0) v.compressorName.clear();
  v.avi24Bit = IsTrue16(s.Avi24Bit);
  if (s.RecordingLine >= 0 && s.RecordingLine < ctx.recordingLineCount)
    v.recordingLine = s.RecordingLine;
  for (size_t i = 0; i < kPriorityItems.size(); ++i) {
    if (kPriorityItems[i].priorityClass == s.PriorityClass) {
      v.priorityIndex = static_cast<int32_t>(i);
      break;
    }
  }
  v.asyncWrite = IsTrue16(s.AsyncWrite);
}

const std::array<PriorityItem, 6>& PriorityItems() { return kPriorityItems; }

ScrollRange ScrollRangeOf(ScrollBar bar) {
  switch (bar) {
    case ScrollBar::Fps:
      return {1, 60};
    case ScrollBar::Seconds:
      return {1, 3600};
    case ScrollBar::CpuReleaseCount:
      return {0, 2};
    case ScrollBar::CpuReleaseTime:
      return {0, 100};
  }
  return {0, 0};
}

std::string ScrollLabelText(ScrollBar bar, int32_t value) {
  switch (bar) {
    case ScrollBar::Fps:
      return std::to_string(value) + "fps";
    case ScrollBar::Seconds: {
      const int32_t ss = value % 60;
      return std::to_string(value / 60) + (ss < 10 ? ":0" : ":") + std::to_string(ss);
    }
    case ScrollBar::CpuReleaseCount:
      return std::to_string(value) + "回";
    case ScrollBar::CpuReleaseTime:
      return std::to_string(value) + "ms";
  }
  return {};
}

ControlEnables EnablesFor(const MainWindowValues& v, bool takeWindowUnderMouse,
                          const WindowContext& ctx, bool mixerUsable) {
  ControlEnables e;
  e.regionPosition = !v.followMouse;
  e.clientAreaOnly = takeWindowUnderMouse;
  e.soundBox = ctx.soundAvailable;
  e.soundOptions = v.sound && ctx.soundAvailable;
  e.recordingLine = e.soundOptions && mixerUsable;
  return e;
}

std::vector<std::string> RecordingLineItems(
    const std::optional<std::vector<std::string>>& mixerLines) {
  if (!mixerLines) return {kNoMixerText};
  std::vector<std::string> items{"変更なし"};
  items.insert(items.end(), mixerLines->begin(), mixerLines->end());
  return items;
}

RegionBoxCheck CheckRegionBox(int32_t index, std::string_view typed) {
  const int32_t value = LeadingInteger(typed);
  const bool isSize = index == 2 || index == 3;
  if (isSize && value < 1) return {false, value, std::string(typed)};
  return {true, value, std::to_string(value)};
}

int32_t RegionWidthForDepth(int32_t width, int32_t displayDepth, int32_t method) {
  if (const int32_t down = ValidRegionWidth(width, displayDepth, method); down > 0) return down;
  // Too narrow to round down (one pixel at 16 bits): the next width that fits.
  for (int32_t up = std::max(width, 1); up < std::max(width, 1) + 4; ++up) {
    if (IsValidRegionWidth(up, displayDepth, method)) return up;
  }
  return 0;
}

}  // namespace velmora
