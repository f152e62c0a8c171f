// The .QRT settings record in its file form.
#include "app/capture_settings.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "app/priority_class.h"
#include "engine/byte_order.h"
#include "tests/files.h"
#include "tests/temp_dir.h"

namespace velmora {
namespace {

const AnsiCodec kSame = IdentityAnsiCodec();

std::vector<uint8_t> Encode(const CaptureSettings& s) { return EncodeSettings(s, kSame).value(); }

// Every field different from its neighbours, so a swapped or shifted field shows.
CaptureSettings Distinct() {
  CaptureSettings s;
  s.Left = -3;
  s.Top = 1 << 20;
  s.Width = 640;
  s.Height = 482;
  s.Fps = 60;
  s.Seconds = 3600;
  s.Method = 2;
  s.CpuReleaseCount = 2;
  s.CpuReleaseTime = 15;
  s.MovieFile = "d:\\m.QRK";
  s.KeepMovie = kFalse16;
  s.DisplayDepth = 16;
  s.DrawMouse = kTrue16;
  s.FollowMouse = 1;  // not -1: kept raw, so applying it reads false
  s.AviFile = "d:\\m.avi";
  s.HasCompressor = 7;
  s.Avi24Bit = kTrue16;
  s.WaveFile = "d:\\m.wav";
  s.WaveTempFile = "d:\\m.wav.wavtemp";
  s.SampleRate = 44100;
  s.BitsPerSample = 16;
  s.Channels = 2;
  s.DeleteWave = kTrue16;
  s.RecordingLine = 3;
  s.PriorityClass = 0x8000;
  s.AsyncWrite = kFalse16;
  return s;
}

TEST(CaptureSettingsFile, DefaultsGoldenBytes) {
  const std::vector<uint8_t> golden{
      0, 0, 0,  0,  0,    0,    0,    0,   0x40, 1,   0,   0,   0xF0, 0,    0,   0,    30,
      0, 0, 0,  20, 0,    0,    0,    1,   0,    0,   0,   1,   0,    0,    0,   1,    0,
      0, 0, 11, 0,  'c',  ':',  '\\', 't', 'e',  's', 't', '.', 'Q',  'R',  'K', 0xFF, 0xFF,
      0, 0, 0,  0,  0xFF, 0xFF, 0,    0,   3,    0,   'x', 'x', 'x',  0,    0,   0,    0,
      0, 0, 0,  0,  0,    0,    0,    0,   0,    0,   0,   0,   0,    0,    0,   0,    0,
      0, 0, 0,  0,  0,    0,    0,    0,   0,    0,   0,   0,   0,    0xFF, 0xFF};
  EXPECT_EQ(Encode(DefaultSettings(true)), golden);
  auto w9x = golden;
  w9x[98] = w9x[99] = 0;
  EXPECT_EQ(Encode(DefaultSettings(false)), w9x) << "pre-allocation only on the NT family";
}

// Strings of four lengths shift the fields behind them. No address is written.
TEST(CaptureSettingsFile, DistinctFieldsGoldenBytes) {
  CaptureSettings s = Distinct();
  s.CompressorOptionsAddress = 0x12345678;
  const std::vector<uint8_t> golden{
      0xFD, 0xFF, 0xFF, 0xFF, 0,    0,    0x10, 0,    0x80, 2,    0,   0,   0xE2, 1,   0,    0,
      60,   0,    0,    0,    0x10, 0x0E, 0,    0,    2,    0,    0,   0,   2,    0,   0,    0,
      15,   0,    0,    0,    8,    0,    'd',  ':',  '\\', 'm',  '.', 'Q', 'R',  'K', 0,    0,
      16,   0,    0,    0,    0xFF, 0xFF, 1,    0,    8,    0,    'd', ':', '\\', 'm', '.',  'a',
      'v',  'i',  7,    0,    0,    0,    0,    0,    0xFF, 0xFF, 8,   0,   'd',  ':', '\\', 'm',
      '.',  'w',  'a',  'v',  16,   0,    'd',  ':',  '\\', 'm',  '.', 'w', 'a',  'v', '.',  'w',
      'a',  'v',  't',  'e',  'm',  'p',  0x44, 0xAC, 0,    0,    16,  0,   0,    0,   2,    0,
      0,    0,    0xFF, 0xFF, 3,    0,    0,    0,    0,    0x80, 0,   0,   0,    0};
  EXPECT_EQ(Encode(s), golden);
}

TEST(CaptureSettingsFile, RoundTripsKeepEveryFieldAndRawBooleans) {
  for (const auto& s : {Distinct(), CaptureSettings{}})
    EXPECT_EQ(DecodeSettings(Encode(s), kSame), s);
  CaptureSettings longest;
  longest.WaveTempFile.assign(65535, 'w');
  EXPECT_EQ(DecodeSettings(Encode(longest), kSame), longest);
  longest.WaveTempFile += 'w';
  EXPECT_FALSE(EncodeSettings(longest, kSame)) << "65536 bytes do not fit the length word";

  auto withTail = Encode(Distinct());
  withTail.insert(withTail.end(), {1, 2, 3});
  EXPECT_EQ(DecodeSettings(withTail, kSame), Distinct()) << "bytes after the record are ignored";
}

TEST(CaptureSettingsFile, EveryTruncationAndOverlongStringFails) {
  const auto full = Encode(Distinct());
  for (size_t n = 0; n < full.size(); ++n) {
    EXPECT_FALSE(DecodeSettings(std::span(full.data(), n), kSame)) << "cut at " << n;
  }
  auto lying = full;
  StoreLE16(lying.data() + 36, -1);  // the movie file's length word claims 65535 bytes
  EXPECT_FALSE(DecodeSettings(lying, kSame));
  // A name the code page cannot hold fails the record both ways.
  const auto none = [](const std::string&) -> std::optional<std::string> { return std::nullopt; };
  EXPECT_FALSE(DecodeSettings(full, {kSame.toAnsi, none}));
  EXPECT_FALSE(EncodeSettings(Distinct(), {none, kSame.toUtf8}));
}

TEST(CaptureSettingsFile, FilesReplaceAndFailAsZeroRecords) {
  test::TempDir dir;
  const auto path = dir.Path("default.QRT");
  ASSERT_EQ(WriteSettingsFile(path, Distinct(), kSame), 0);
  EXPECT_EQ(test::ReadFile(path), Encode(Distinct()));
  EXPECT_EQ(ReadSettingsFile(path, kSame), Distinct());

  // A read-only file of the same name is replaced, and a longer one leaves no tail.
  test::WriteFile(path, std::vector<uint8_t>(500, 0x41));
  std::filesystem::permissions(test::TempDir::Fs(path), std::filesystem::perms::owner_write,
                               std::filesystem::perm_options::remove);
  ASSERT_EQ(WriteSettingsFile(path, DefaultSettings(true), kSame), 0);
  EXPECT_EQ(test::ReadFile(path), Encode(DefaultSettings(true)));

  EXPECT_EQ(WriteSettingsFile(dir.Path("missing/x.QRT"), Distinct(), kSame), -1);
  CaptureSettings tooLong;
  tooLong.MovieFile.assign(70000, 'm');
  EXPECT_EQ(WriteSettingsFile(path, tooLong, kSame), -1);

  EXPECT_EQ(ReadSettingsFile(dir.Path("missing.QRT"), kSame), CaptureSettings{});
  const auto full = Encode(Distinct());
  test::WriteFile(path, std::vector<uint8_t>(full.begin(), full.end() - 1));
  EXPECT_EQ(ReadSettingsFile(path, kSame), CaptureSettings{}) << "cut short by one byte";
}

// The priority list's values as settings files hold them, and the class bits
// the system accepts for each; anything else leaves the priority alone.
TEST(CaptureSettingsPriority, ListValuesBecomeTheSystemsClasses) {
  const std::pair<int32_t, uint32_t> cases[] = {
      {0, 0},           {128, 0x80},  // high
      {-32768, 0x8000},               // above normal: 0xFFFF8000 is refused by the system
      {32, 0x20},       {16384, 0x4000}, {64, 0x40},
      {32768, 0},       {256, 0},        {-1, 0}};  // realtime and others never come from the list
  for (const auto& [value, system] : cases) EXPECT_EQ(SystemPriorityClass(value), system) << value;
}

}  // namespace
}  // namespace velmora
