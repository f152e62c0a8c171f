// The main window's decisions, computed without a window.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <string_view>
#include <set>
#include <limits>
#include <tuple>

#include "app/capture_info.h"
#include "app/main_window_values.h"
#include "app/start_checks.h"
#include "app/region_drag.h"
#include "app/region_selection.h"
#include "app/window_positions.h"
#include "tests/files.h"
#include "tests/temp_dir.h"

namespace velmora {
namespace {

CaptureSettings Region320x240(int16_t asyncWrite = kTrue16) {
  CaptureSettings s;
  s.Width = 320;
  s.Height = 240;
  s.DisplayDepth = 32;
  s.Fps = 30;
  s.Seconds = 20;
  s.AsyncWrite = asyncWrite;
  return s;
}

TEST(MainWindowCore, InfoTextBytesAndSameLineCountInEveryCase) {
  CaptureSettings s;
  s.Left = -10, s.Width = 640, s.Height = 480, s.Fps = 15, s.Seconds = 90, s.Method = 2;
  s.CpuReleaseCount = 2, s.CpuReleaseTime = 15, s.DisplayDepth = 16;
  s.DrawMouse = kTrue16, s.FollowMouse = 1;  // only -1 is true
  s.AviFile = "d:\\movies\\m.avi", s.HasCompressor = 7;
  s.WaveFile = "d:\\movies\\m.wav", s.SampleRate = 22050, s.Channels = 1, s.BitsPerSample = 16;
  s.DeleteWave = kTrue16, s.AsyncWrite = kTrue16;
  EXPECT_EQ(
      CaptureInfoText(s, "テスト圧縮"),
      "作成AVI m.avi\r\nテスト圧縮\r\nAVI色深度 16bit\r\n\r\n"
      "キャプチャ領域 (-10,0 - 630,480)\r\n\r\nキャプチャ頻度 15fps.\r\nキャプチャ時間 90秒\r\n\r\n"
      "キャプチャ方法 Type2\r\nCPU解放 回数 2 時間 15\r\nキャプチャ解像度 16bit\r\n"
      "マウスの書きこみ Yes\r\nマウスに追従 No\r\n\r\nサウンドキャプチャYes\r\n"
      "22.050KHz モノラル 16ビット\r\n\r\nWaveは作成後に削除する\r\n"
      "QRKは作成後に削除する\r\n非同期書き込み する");

  // Without AVI and sound the text keeps its 20 line ends, so nothing below it moves.
  CaptureSettings c = Region320x240();
  const std::string bare = CaptureInfoText(c, "X");
  EXPECT_EQ(std::count(bare.begin(), bare.end(), '\n'), 20) << bare;
  c.AviFile = "a.avi", c.HasCompressor = kFalse16, c.Avi24Bit = kTrue16;
  EXPECT_EQ(CaptureInfoText(c, "X").rfind("作成AVI a.avi\r\n未圧縮\r\nAVI色深度 24bit\r\n", 0), 0u);
}

TEST(MainWindowCore, DiskEstimateAgainstTheFreeSpace) {
  const CaptureSettings plain = Region320x240();
  const uint64_t total = 20ull * 30 * 320 * 240 * 4;
  const uint64_t edge = total + 104857600;
  struct Case {
    const char* what;
    VolumeDescription volume;
    bool asyncWrite;
    uint64_t free;
    bool warn;
  } cases[] = {
      {"exactly 100 MB spare", {edge, "NTFS"}, true, edge, false},
      {"one byte short", {edge - 1, "NTFS"}, true, edge - 1, true},
      {"NTFS keeps 10 GB", {10'000'000'000, "NTFS"}, true, 10'000'000'000, false},
      {"elsewhere a file stops at 4 GiB", {10'000'000'000, "FAT32"}, true, 4294967296, false},
      {"old platform, pre-allocated: memory", {edge - 1, "NTFS", false, edge}, true, edge, false},
      {"old platform, ordinary writes", {edge - 1, "NTFS", false, edge}, false, edge - 1, true},
  };
  for (const Case& c : cases) {
    const DiskEstimate e = EstimateDisk(Region320x240(Bool16(c.asyncWrite)), c.volume);
    EXPECT_EQ(e.totalBytes, total) << c.what;
    EXPECT_EQ(e.freeBytes, c.free) << c.what;
    EXPECT_EQ(e.warn, c.warn) << c.what;
  }
  EXPECT_EQ(EstimateDisk(plain, {}).text, "184,320,000 Bytes.");
  EXPECT_EQ(VolumeRootOf("C:\\a\\b.QRK"), "C:\\");
  EXPECT_EQ(VolumeRootOf("\\\\srv\\share\\x\\m.QRK"), "\\\\srv\\share\\");
  EXPECT_EQ(VolumeRootOf("m.QRK"), "") << "relative: the current volume";

  CaptureSettings all = plain;  // AVI at 24 bits while the screen has 32, and 16-bit mono sound
  all.AviFile = "a.avi", all.Avi24Bit = kTrue16;
  all.WaveFile = "a.wav", all.SampleRate = 44100, all.Channels = 1, all.BitsPerSample = 16;
  EXPECT_EQ(EstimateDisk(all, {}).totalBytes, total + 20ull * 30 * 320 * 240 * 3 + 20ull * 88200);
  all.Width = 0;
  EXPECT_EQ(EstimateDisk(all, {}).text, "1,764,000 Bytes.");
  all.WaveFile.clear();
  EXPECT_EQ(EstimateDisk(all, {}).text, "0 Bytes.");
}

TEST(MainWindowCore, SettingsFromControlsReplacesTheExtension) {
  const struct {
    const char* typed;
    const char* stem;
  } cases[] = {
      {"c:\\test.QRK", "c:\\test"},
      {"c:\\a.b\\movie", "c:\\a.b\\movie"},
      {"d:\\v\\name.tar.gz", "d:\\v\\name.tar"},
      {"\\x.avi", "x"},  // a leading "\" is no folder
  };
  MainWindowValues v;
  v.sound = true;
  v.soundFormat = "44.100kHz ステレオ 16 ビット";
  for (const auto& c : cases) {
    v.movieFile = c.typed;
    const CaptureSettings s = SettingsFromControls(v, {24, true, 3});
    EXPECT_EQ(s.MovieFile, std::string(c.stem) + ".QRK") << c.typed;
    EXPECT_EQ(s.AviFile, std::string(c.stem) + ".avi") << c.typed;
    EXPECT_EQ(s.WaveTempFile, std::string(c.stem) + ".wav.wavtemp") << c.typed;
  }
  const CaptureSettings s = SettingsFromControls(v, {24, true, 3});
  EXPECT_EQ(s.DisplayDepth, 24);
  EXPECT_EQ(std::tuple(s.SampleRate, s.Channels, s.BitsPerSample), std::tuple(44100, 1, 16));

  v.saveMode = SaveMode::MovieOnly, v.sound = false, v.priorityIndex = 2, v.region[2] = "2.5";
  const CaptureSettings q = SettingsFromControls(v, {24, true, 3});
  EXPECT_EQ(q.AviFile, "");
  EXPECT_EQ(q.WaveFile + q.WaveTempFile, "");
  EXPECT_EQ(q.SampleRate, 0);
  EXPECT_EQ(q.KeepMovie, kTrue16);
  EXPECT_EQ(q.PriorityClass, -32768);
  EXPECT_EQ(q.Width, 2);
  v.saveMode = SaveMode::AviOnly;
  EXPECT_EQ(SettingsFromControls(v, {}).KeepMovie, kFalse16);
}

TEST(MainWindowCore, OverwriteQuestionNamesExistingFilesInOrder) {
  CaptureSettings s;
  s.MovieFile = "C:\\録画\\clip.QRK";
  s.AviFile = "C:\\録画\\clip.avi";
  s.WaveFile = "C:\\録画\\clip.wav";
  const std::string ask = "\r\n全て上書きしてよろしいですか？";
  const struct {
    bool movie, avi, wave;
    std::string question;
  } cases[] = {
      {false, false, false, ""},
      {false, true, false, "\r\nclip.aviは存在しています。" + ask},
      {true, false, true, "clip.QRKは存在しています。\r\nclip.wavは存在しています。" + ask},
      {true, true, true,
       "clip.QRKは存在しています。\r\nclip.aviは存在しています。\r\nclip.wavは存在しています。" +
           ask},
  };
  for (const auto& c : cases) {
    std::set<std::string> existing;
    if (c.movie) existing.insert(s.MovieFile);
    if (c.avi) existing.insert(s.AviFile);
    if (c.wave) existing.insert(s.WaveFile);
    EXPECT_EQ(OverwriteQuestion(s, [&](const std::string& f) { return existing.count(f) > 0; }),
              c.question)
        << c.movie << c.avi << c.wave;
  }
  // Empty names are not files: without AVI and sound only the movie is named.
  s.AviFile.clear();
  s.WaveFile.clear();
  EXPECT_EQ(OverwriteQuestion(s, [](const std::string&) { return true; }),
            "clip.QRKは存在しています。" + ask);
}

TEST(MainWindowCore, StartIsRefusedForUnusableTargetsAndRegions) {
  const TargetFacts fine{true, true};
  const struct {
    const char* movie;
    TargetFacts facts;
    int32_t width, height, depth;
    bool valid;
  } cases[] = {
      {"C:\\rec\\clip.QRK", fine, 320, 240, 32, true},
      {"\\\\server\\share\\clip.QRK", fine, 320, 240, 32, true},
      {"\\\\server\\", fine, 320, 240, 32, false},     // a server without a share
      {"clip.QRK", fine, 320, 240, 32, false},         // relative to who knows where
      {"C:clip.QRK", fine, 320, 240, 32, false},       // relative to the drive's current folder
      {"\\rec\\clip.QRK", fine, 320, 240, 32, false},  // rooted, but on no drive
      {"C:\\rec\\clip.QRK", {false, true}, 320, 240, 32, false},
      {"C:\\rec\\clip.QRK", {true, false}, 320, 240, 32, false},
      {"C:\\rec\\clip.QRK", fine, 320, 0, 32, false},
      {"C:\\rec\\clip.QRK", fine, 321, 240, 16, false},  // a 642-byte row
  };
  for (const auto& c : cases) {
    CaptureSettings s = Region320x240();
    s.MovieFile = c.movie, s.Width = c.width, s.Height = c.height, s.DisplayDepth = c.depth,
    s.Method = 1;
    EXPECT_EQ(StartIsValid(s, c.facts), c.valid) << c.movie << " " << c.width << "x" << c.height;
  }
  EXPECT_EQ(InvalidTargetText("x.QRK"),
            "x.QRKは無効です\r\n保存先ファイル名、ドライブを確認下さい");
  EXPECT_EQ(TargetFolder("C:\\rec\\clip.QRK"), "C:\\rec");
  EXPECT_EQ(TargetFolder("C:\\clip.QRK"), "C:\\");
}

TEST(MainWindowCore, SettingsToControlsLeavesWhatItMustNotRestore) {
  MainWindowValues shown;
  shown.deleteWave = true, shown.soundFormat = "8 ビット", shown.recordingLine = 1;
  shown.priorityIndex = 3, shown.compressorName = "C", shown.method = 2;
  CaptureSettings s = DefaultSettings(true);
  s.RecordingLine = 3, s.PriorityClass = 12345, s.Method = 7, s.Fps = 500, s.WaveFile = "w.wav";
  MainWindowValues v = shown;
  SettingsToControls(s, {32, true, 3}, v);
  EXPECT_TRUE(v.deleteWave);
  EXPECT_EQ(v.soundFormat, "8 ビット");
  EXPECT_EQ(v.recordingLine, 1) << "line 3 is past a list of 3";
  EXPECT_EQ(v.priorityIndex, 3) << "no item holds 12345";
  EXPECT_EQ(v.method, 2) << "method 7 is no option";
  EXPECT_EQ(v.fps, 60);
  EXPECT_EQ(v.compressorName, "") << "no compressor is shown as 未圧縮";
  EXPECT_TRUE(v.sound);
  EXPECT_EQ(v.saveMode, SaveMode::AviAndMovie);

  // Everything else the file holds reaches its control, each unlike what was
  // shown; sound stays off without a recorder.
  s.Left = 7, s.Seconds = 65, s.Method = 0, s.CpuReleaseCount = 2, s.CpuReleaseTime = 15;
  s.MovieFile = "d:\\m.QRK", s.DrawMouse = kFalse16, s.FollowMouse = kTrue16;
  s.Avi24Bit = kTrue16, s.AsyncWrite = kFalse16, s.RecordingLine = 0, s.PriorityClass = -32768;
  s.HasCompressor = 1, s.KeepMovie = kFalse16;
  v = shown;
  SettingsToControls(s, {32, false, 3}, v);
  MainWindowValues want = shown;
  want.region[0] = "7", want.fps = 60, want.seconds = 65, want.method = 0;
  want.cpuReleaseCount = 2, want.cpuReleaseTime = 15, want.movieFile = "d:\\m.QRK";
  want.drawMouse = false, want.followMouse = true, want.avi24Bit = true, want.asyncWrite = false;
  want.recordingLine = 0, want.priorityIndex = 2, want.saveMode = SaveMode::AviOnly;  // 2: "やや高"
  EXPECT_TRUE(v == want);
  v.sound = true;  // still checked from before: without a recorder nothing of sound is enabled
  const ControlEnables e = EnablesFor(v, false, {32, false, 3}, true);
  EXPECT_FALSE(e.soundBox || e.soundOptions || e.regionPosition || e.clientAreaOnly);
  const ControlEnables noMixer = EnablesFor(v, true, {32, true, 3}, false);
  EXPECT_TRUE(noMixer.soundOptions && noMixer.clientAreaOnly && !noMixer.recordingLine);
  EXPECT_TRUE(EnablesFor(shown, false, {}, false).regionPosition) << "not following the mouse";
}

TEST(MainWindowCore, RegionBoxesAndScrollLabels) {
  const struct {
    int32_t box;
    const char* typed;
    bool accepted;
    const char* shown;
  } cases[] = {
      {0, "-10", true, "-10"},  {1, "-2.5", true, "-2"}, {0, "abc", true, "0"},
      {2, "12abc", true, "12"}, {3, "0.6", true, "1"},   {2, "2.5", true, "2"},
      {3, "3.5", true, "4"},    {2, "0", false, "0"},    {3, "0.4", false, "0.4"},
  };
  for (const auto& c : cases) {
    const RegionBoxCheck r = CheckRegionBox(c.box, c.typed);
    EXPECT_EQ(r.accepted, c.accepted) << c.typed;
    EXPECT_EQ(r.text, c.shown) << c.typed;
  }
  // Too narrow to round down to whole 4-byte rows: the next width that has them.
  EXPECT_EQ(RegionWidthForDepth(1, 16, 1), 2);
  EXPECT_EQ(ScrollLabelText(ScrollBar::Seconds, 65), "1:05");
  EXPECT_EQ(ScrollLabelText(ScrollBar::Seconds, 3600), "60:00");
}

// A selector script: per input a letter and a point. D/U left button down/up,
// M move (m: with the right button held), R/r right button down/up, E Esc,
// C capture taken, X closed; a trailing 'w' puts a window at 600,200-840,360
// under the pointer.
std::vector<SelectorEvent> Inputs(const std::string& script) {
  std::vector<SelectorEvent> events;
  std::istringstream in(script);
  for (std::string step; in >> step;) {
    // The letters in the order of SelectorInput's values.
    SelectorEvent e{step[0] == 'm' ? SelectorInput::Move
                                   : SelectorInput(std::string_view("DUMRrECX").find(step[0]))};
    e.rightHeld = step[0] == 'm';
    std::sscanf(step.c_str() + 1, "%d,%d", &e.pointer.x, &e.pointer.y);
    if (step.back() == 'w') e.underPointer = ScreenRect{600, 200, 840, 360};
    events.push_back(e);
  }
  return events;
}

// How each input sequence ends: what the region boxes get ("kept" when the
// rectangle taken has no area or no recordable width), a cancel, or more
// waiting; after the mouse captures taken (T) and released (R).
TEST(MainWindowCore, SelectorInputsEndInRegionBoxesACancelOrMoreWaiting) {
  const struct {
    bool pick;
    const char* script;
    const char* outcome;  // the comment: the mistake the row catches
  } cases[] = {
      // the last move's corner; 321 wide is no whole 4-byte row at 24 bits
      {false, "D100,120 M300,200 U421,360", "T 100,120 320x240"},
      {false, "D421,360 U100,120", "T 100,120 320x240"},  // corners out of order
      {false, "D-50,-8 U10,2", "T -50,-8 60x10"},         // left of the main screen
      {false, "D30,40 U30,40", "T kept"},                 // a click
      {false, "D30,40 U90,40", "T kept"},                 // only the width checked
      {false, "D-2147483648,0 U2147483647,5", "T kept"},  // a width past 32 bits
      {false, "U5,5", " waiting"},                        // a release never pressed on the selector
      {false, "D1,1 E D5,5 U9,9", "T cancelled"},         // Esc ignored, or undone by the next drag
      {false, "R r", "T cancelled"},  // right release left awaited: the wait hangs
      {false, "D1,1 R", "TT cancelled, right up awaited"},  // its release reaches the window below
      {false, "m5,5", "T cancelled, right up awaited"},     // a held right button ignored
      {false, "D1,1 C U5,5", "T cancelled"},                // capture lost mid-drag taken as a drag
      {false, "R C", "T cancelled"},                        // capture lost: the release never comes
      {false, "D0,0 U8,4 C R", "T 0,0 8x4"},  // the capture's loss or a right press undoes it
      {false, "C", " waiting"},               // capture lost before any drag cancels
      {false, "X", " cancelled"},             // closed by someone else: waits forever
      {true, "D5,5 U5,5 D700,300 U700,300w", "TRT 600,200 240x160"},  // a pick over nothing
  };
  for (const auto& c : cases) {
    RegionDrag drag(c.pick, 24, 1);
    std::string outcome;
    for (const SelectorEvent& e : Inputs(c.script)) {
      const CaptureChange change = drag.Feed(e);
      if (change != CaptureChange::None) outcome += change == CaptureChange::Take ? "T" : "R";
    }
    const auto boxes = RegionBoxesFor(drag.Choice().rect, 24, 1);
    if (!drag.Done()) {
      outcome += " waiting";
    } else if (drag.Choice().cancelled) {
      outcome += drag.AwaitingRightUp() ? " cancelled, right up awaited" : " cancelled";
    } else {
      outcome += boxes
                     ? " " + (*boxes)[0] + "," + (*boxes)[1] + " " + (*boxes)[2] + "x" + (*boxes)[3]
                     : " kept";
    }
    EXPECT_EQ(outcome, c.outcome) << c.script;
  }
}

// The band runs through the pixel under the pointer, and the hint gives the
// boxes' numbers (of the region, not the band); a pick's band is the window.
TEST(MainWindowCore, SelectorBandAndHintBesideThePointer) {
  RegionDrag drag(false, 24, 1), pick(true, 24, 1);
  for (const SelectorEvent& e : Inputs("D100,120 M421,360")) drag.Feed(e);
  EXPECT_EQ(drag.Band(), (ScreenRect{100, 120, 422, 361}));
  EXPECT_EQ(drag.Hint(), "100, 120  320 × 240  （右クリック・Escで取り消し）");
  pick.Feed(Inputs("M700,300w")[0]);
  EXPECT_EQ(pick.Band(), (ScreenRect{600, 200, 840, 360}));
  pick.Feed(Inputs("M5,5")[0]);
  EXPECT_EQ(pick.Hint(), "クリックでウィンドウを指定（右クリック・Escで取り消し）");

  // On the pointer's other side only where it would not fit.
  const ScreenRect screen{-1920, 0, 1920, 1080};
  EXPECT_EQ(HintBoxAt({-1900, 10}, {100, 20}, screen, 16), (ScreenRect{-1884, 26, -1784, 46}));
  EXPECT_EQ(HintBoxAt({1804, 1044}, {100, 20}, screen, 16), (ScreenRect{1820, 1060, 1920, 1080}));
  EXPECT_EQ(HintBoxAt({1805, 1045}, {100, 20}, screen, 16), (ScreenRect{1689, 1009, 1789, 1029}));
}

TEST(MainWindowCore, PositionsFileTextAndReading) {
  const WindowPositions p{100, -20, 3, 4};
  const std::string text = WindowPositionsText(p);
  EXPECT_EQ(text,
            "//Velmora Setting\r\n//順番は変更不可です。\r\n100 //キャプチャウィンドウのX\r\n"
            "-20 //キャプチャウィンドウのY\r\n3 //AVIウィンドウのX\r\n4 //AVIウィンドウのY\r\n");
  WindowPositions read;
  EXPECT_EQ(ParseWindowPositions("a\r\nb\r\n  -7 x\r\n8.5//\r\n9.5", read), 0)
      << "five lines count as read";
  EXPECT_EQ(read, (WindowPositions{-7, 8, 10, 0}));
  EXPECT_EQ(ParseWindowPositions("", read), -2);

  test::TempDir dir;
  // The file holds what the code page makes of the text; marked here, so a
  // file written without the conversion shows.
  const AnsiCodec marked{[](const std::string& t) -> std::optional<std::string> { return t + "#"; },
                         IdentityAnsiCodec().toUtf8};
  const std::string path = dir.Path("QRXSetting.ini");
  EXPECT_EQ(LoadWindowPositions(path, marked, read), -2);
  ASSERT_EQ(SaveWindowPositions(path, p, marked), 0);
  const std::string inFile = text + "#";
  EXPECT_EQ(test::ReadFile(path), std::vector<uint8_t>(inFile.begin(), inFile.end()));
  EXPECT_EQ(LoadWindowPositions(path, marked, read), 0);
  EXPECT_EQ(read, p);

  // Task bar at the top: the progress window is centred on the size alone.
  const WindowPositions d = DefaultWindowPositions({0, 40, 1920, 1080}, {300, 200}, {403, 101});
  EXPECT_EQ(d, (WindowPositions{1620, 880, 758, 470}));
}

TEST(MainWindowCore, CaptureWindowCornerKeptInTheWorkArea) {
  const WindowSize size{300, 60};
  const ScreenRect work{100, 0, 1920, 1040};  // task bar at the left
  const struct {
    ScreenPoint remembered, placed;
  } cases[] = {
      {{500, 500}, {500, 500}},   {{1620, 980}, {1620, 980}},  // just fits
      {{1621, 981}, {1620, 980}}, {{5000, 5000}, {1620, 980}},
      {{99, -1}, {0, 0}},  // before the edge: to 0, not to the edge
  };
  for (const auto& c : cases) {
    const ScreenPoint p = ClampIntoWorkArea(c.remembered, size, work);
    EXPECT_EQ(p, c.placed) << c.remembered.x << "," << c.remembered.y;
  }
}

}  // namespace
}  // namespace velmora
