// The .QRT file form: golden bytes, field offsets behind strings of every
// length, round trips, and every way a file can be cut short or lie.
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
  EXPECT_EQ(Encode(DefaultSettings(false)), w9x) << "AsyncWrite only on the NT family";
}

// The offsets behind the strings move with their lengths a, b, c, d.
TEST(CaptureSettingsFile, FieldOffsetsFollowTheStringLengths) {
  CaptureSettings s = Distinct();
  s.CompressorOptionsAddress = 0x12345678;
  const size_t a = s.MovieFile.size(), b = s.AviFile.size(), c = s.WaveFile.size(),
               d = s.WaveTempFile.size();
  const auto f = Encode(s);
  ASSERT_EQ(f.size(), 86 + a + b + c + d);
  const uint8_t* p = f.data();
  EXPECT_EQ(LoadLE32(p + 32), 15);
  EXPECT_EQ(LoadLE16(p + 36), static_cast<int16_t>(a));
  EXPECT_EQ(LoadLE16(p + 38 + a), kFalse16);
  EXPECT_EQ(LoadLE32(p + 40 + a), 16);
  EXPECT_EQ(LoadLE16(p + 44 + a), kTrue16);
  EXPECT_EQ(LoadLE16(p + 46 + a), 1);
  EXPECT_EQ(LoadLE16(p + 48 + a), static_cast<int16_t>(b));
  EXPECT_EQ(LoadLE16(p + 50 + a + b), 7);
  EXPECT_EQ(LoadLE32(p + 52 + a + b), 0) << "an address is never written";
  EXPECT_EQ(LoadLE16(p + 56 + a + b), kTrue16);
  EXPECT_EQ(LoadLE16(p + 58 + a + b), static_cast<int16_t>(c));
  EXPECT_EQ(LoadLE16(p + 60 + a + b + c), static_cast<int16_t>(d));
  const uint8_t* q = p + 62 + a + b + c + d;
  EXPECT_EQ(LoadLE32(q), 44100);
  EXPECT_EQ(LoadLE32(q + 4), 16);
  EXPECT_EQ(LoadLE32(q + 8), 2);
  EXPECT_EQ(LoadLE16(q + 12), kTrue16);
  EXPECT_EQ(LoadLE32(q + 14), 3);
  EXPECT_EQ(LoadLE32(q + 18), 0x8000);
  EXPECT_EQ(LoadLE16(q + 22), kFalse16);
}

TEST(CaptureSettingsFile, RoundTripsKeepEveryFieldAndRawBooleans) {
  for (const auto& s :
       {DefaultSettings(true), DefaultSettings(false), Distinct(), CaptureSettings{}}) {
    EXPECT_EQ(DecodeSettings(Encode(s), kSame), s);
  }
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
  for (size_t at : {size_t{36}, size_t{48 + 8}}) {  // the MovieFile and AviFile length words
    auto lying = full;
    StoreLE16(lying.data() + at, -1);  // 65535 bytes claimed
    EXPECT_FALSE(DecodeSettings(lying, kSame)) << "length at " << at;
  }
  const AnsiCodec refusing{
      kSame.toAnsi, [](const std::string&) -> std::optional<std::string> { return std::nullopt; }};
  EXPECT_FALSE(DecodeSettings(full, refusing));
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
  for (size_t n : {size_t{0}, size_t{35}, full.size() - 1}) {
    test::WriteFile(path, std::vector<uint8_t>(full.begin(), full.begin() + static_cast<long>(n)));
    const auto s = ReadSettingsFile(path, kSame);
    EXPECT_EQ(s, CaptureSettings{}) << "cut at " << n;
  }
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
