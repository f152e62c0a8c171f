// What the main window's controls hold, as plain values, and the moves
// between them and a CaptureSettings record. The window code copies controls
// into MainWindowValues and back; every decision lives here.
#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/capture_settings.h"

namespace velmora {

enum class SaveMode : int32_t { AviAndMovie = 0, AviOnly = 1, MovieOnly = 2 };

struct MainWindowValues {
  std::array<std::string, 4> region{"0", "0", "320", "240"};  // left, top, width, height boxes
  int32_t fps = 30;
  int32_t seconds = 20;
  int32_t method = 1;  // selected option 0..2
  int32_t cpuReleaseCount = 1;
  int32_t cpuReleaseTime = 1;
  std::string movieFile;  // the target box, as typed
  bool drawMouse = true;
  bool followMouse = false;
  bool sound = false;
  std::string soundFormat;  // the sound list's current text; empty without a recorder
  bool deleteWave = false;
  int32_t recordingLine = 0;  // list index, -1 when nothing is selected
  int32_t priorityIndex = 0;  // index into PriorityItems(), -1 when nothing is selected
  bool asyncWrite = true;
  SaveMode saveMode = SaveMode::AviAndMovie;
  bool avi24Bit = false;
  // The chosen compressor's name; empty is "no compressor" (shown as "未圧縮").
  // The window keeps the compressor's options beside it and drops them
  // whenever this becomes empty, so name, options and the AVI always agree.
  std::string compressorName;
  friend bool operator==(const MainWindowValues&, const MainWindowValues&) = default;
};

// What the window knows about its surroundings when it moves values.
struct WindowContext {
  int32_t displayDepth = 32;       // bits per pixel of the screen now
  bool soundAvailable = false;     // the recorder answered at start-up
  int32_t recordingLineCount = 0;  // items in the recording-line list
};

// The movie path with its extension replaced by ".QRK". Only a "\" from the
// second character on splits folder and name, and only the name loses what
// follows its last ".", so "c:\a.b\movie" keeps its folder's dot.
std::string MoviePathStem(std::string_view typed);

// The record the controls describe. DisplayDepth is the screen's depth now;
// the compressor's options address is left 0 (an address is meaningless in
// the record; the recording run takes the options from the window).
CaptureSettings SettingsFromControls(const MainWindowValues& v, const WindowContext& ctx);

// Applies a record to the controls, changing `v` in place:
//  - the delete-wave box and the sound format are deliberately left as shown;
//  - a recording line beyond the list, or a priority that matches no item,
//    leaves that list as it was;
//  - without a compressor the name becomes empty ("未圧縮"); a stored
//    compressor is never brought back;
//  - scroll values are clamped to their bars; a method outside 0..2 leaves
//    the option as it was;
//  - sound is on only when the record has a wave file and the recorder answered.
// The window must set the sound box first to !v.sound and then to v.sound, so
// its change handler (enables, estimate) runs even when the state is unchanged.
void SettingsToControls(const CaptureSettings& s, const WindowContext& ctx, MainWindowValues& v);

// The process-priority list: its texts and the priority class values handed
// to the recording run (0 leaves the priority alone; "やや高" is -32768).
struct PriorityItem {
  std::string_view text;
  int32_t priorityClass;
};
const std::array<PriorityItem, 6>& PriorityItems();

// Scroll bars with a value label beside each.
enum class ScrollBar { Fps, Seconds, CpuReleaseCount, CpuReleaseTime };
struct ScrollRange {
  int32_t min;
  int32_t max;
};
ScrollRange ScrollRangeOf(ScrollBar bar);
// The value label: "30fps", "1:05" (minutes:seconds), "1回", "10ms".
std::string ScrollLabelText(ScrollBar bar, int32_t value);

// Which controls are enabled, from the values and the context alone.
struct ControlEnables {
  bool regionPosition;  // left and top boxes and their labels: off while following the mouse
  bool clientAreaOnly;  // the client-area box: only when the window under the mouse is taken
  bool soundBox;        // off without a recorder
  bool soundOptions;    // sound format, delete-wave: only with sound on
  bool recordingLine;   // as soundOptions, and only with a usable mixer
};
ControlEnables EnablesFor(const MainWindowValues& v, bool takeWindowUnderMouse,
                          const WindowContext& ctx, bool mixerUsable);

// The recording-line list: "変更なし" then the mixer's lines, or only the
// explanation when there is no usable mixer (the list is then disabled).
std::vector<std::string> RecordingLineItems(
    const std::optional<std::vector<std::string>>& mixerLines);

// A region box losing focus. Width and height below 1 are refused: the box
// keeps focus and kInvalidNumberText is shown. Otherwise `text` is what the
// box is rewritten to (the leading number, rounded halves to even).
inline constexpr char kInvalidNumberText[] = "不正な数字です。";
struct RegionBoxCheck {
  bool accepted;
  int32_t value;
  std::string text;
};
RegionBoxCheck CheckRegionBox(int32_t index, std::string_view typed);

// The width the region box shows after the size check: rounded down so a row
// fills the capture method's row alignment at the display depth (rounded up
// only when nothing smaller fits); 0 when no width can be recorded at all.
int32_t RegionWidthForDepth(int32_t width, int32_t displayDepth, int32_t method);

}  // namespace velmora
