#include "sound/recorder_block.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "sound/wav_header.h"

namespace velmora::sound {
namespace {

// The first differing offset names the broken field.
void ExpectSameBytes(const uint8_t* got, const uint8_t* want, size_t n) {
  const auto diff = std::mismatch(got, got + n, want).first;
  EXPECT_EQ(diff, got + n) << "first difference at offset " << diff - got;
}

TEST(RecorderBlock, StartRequestGoldenBytes) {
  RecorderBlock b;
  ASSERT_EQ(BuildStartRequest({44100, 1, 16}, 7, "C:\\rec\\take1.wav", 123456, b),
            StartRequestError::kNone);
  BlockBytes want{};
  const uint8_t head[24] = {1, 0, 0, 0, 16, 0, 0, 0, 0x44, 0xAC, 0, 0,   // state, bits, rate
                            1, 0, 0, 0, 7,  0, 0, 0, 0x10, 0x01, 0, 0};  // channels, sec, 272 KB
  std::copy(std::begin(head), std::end(head), want.begin());
  const std::string wave = "C:\\rec\\take1.wav", temp = wave + ".wavtemp";
  std::copy(wave.begin(), wave.end(), want.begin() + 24);
  std::copy(temp.begin(), temp.end(), want.begin() + 285);
  const uint8_t planned[4] = {0x40, 0xE2, 0x01, 0x00};
  std::copy(std::begin(planned), std::end(planned), want.begin() + 552);
  const BlockBytes got = EncodeRecorderBlock(b);
  ExpectSameBytes(got.data(), want.data(), want.size());
}

TEST(RecorderBlock, BufferSizeIsTwoSecondsPlus100KbRoundedAndCapped) {
  struct Case {
    int32_t rate, bits, channels, kb;
  } cases[] = {
      {44100, 16, 2, 445},      {11025, 8, 1, 122},    {44100, 16, 1, 272},
      {96000, 16, 2, 850},      {192000, 16, 2, 1000},                    // capped
      {0, 16, 1, 100},          {256, 8, 1, 100},      {768, 8, 1, 102},  // halves to even
      {INT32_MAX, 16, 2, 1000},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(RecorderBufferKb(c.rate, c.bits, c.channels), c.kb)
        << c.rate << " Hz " << c.bits << " bits " << c.channels << " ch";
  }
}

TEST(RecorderBlock, NamesThatDoNotFitAreRefusedNotCut) {
  RecorderBlock b;
  // 252 bytes + ".wavtemp" = 260 bytes + NUL: the longest that fits.
  const std::string longest(252, 'a');
  ASSERT_EQ(BuildStartRequest({11025, 1, 8}, 1, longest, 0, b), StartRequestError::kNone);
  EXPECT_EQ(NameFieldText(b.tempName), longest + ".wavtemp");
  RecorderBlock untouched{.seconds = 99};  // must stay untouched on refusal
  EXPECT_EQ(BuildStartRequest({11025, 1, 8}, 1, longest + "b", 0, untouched),
            StartRequestError::kNameTooLong);
  EXPECT_EQ(untouched.seconds, 99);
  EXPECT_EQ(BuildStartRequest({11025, 1, 8}, 1, "", 0, untouched), StartRequestError::kNameEmpty);
  EXPECT_EQ(BuildStartRequest({11025, 1, 8}, 1, std::string("a\0b", 3), 0, untouched),
            StartRequestError::kNameEmpty);
  EXPECT_NE(StartRequestErrorText(StartRequestError::kNameTooLong).find("260バイト"),
            std::string::npos);
  EXPECT_EQ(StartRequestErrorText(StartRequestError::kNone), "");
}

// 8-bit mono: the wave's data is rate x seconds bytes.
void Mono8(RecorderBlock& b, int32_t rate, int32_t seconds) {
  b.bitsOrProcessId = 8;
  b.channels = 1;
  b.samplesPerSec = rate;
  b.seconds = seconds;
}

TEST(RecorderBlock, RecorderChecksEveryFieldOfAStartRequestUpToItsLimit) {
  RecorderBlock good;
  ASSERT_EQ(BuildStartRequest({22050, 1, 16}, 3, "x.wav", 1000, good), StartRequestError::kNone);
  EXPECT_EQ(CheckStartRequest(good), RequestProblem::kNone);
  struct Case {
    const char* what;
    void (*spoil)(RecorderBlock&);
    RequestProblem want;
  } cases[] = {
      {"bits 0", [](RecorderBlock& b) { b.bitsOrProcessId = 0; }, RequestProblem::kBits},
      {"bits 24", [](RecorderBlock& b) { b.bitsOrProcessId = 24; }, RequestProblem::kBits},
      {"bits 12", [](RecorderBlock& b) { b.bitsOrProcessId = 12; }, RequestProblem::kBits},
      {"rate 0", [](RecorderBlock& b) { b.samplesPerSec = 0; }, RequestProblem::kRate},
      {"rate negative", [](RecorderBlock& b) { b.samplesPerSec = -44100; }, RequestProblem::kRate},
      {"channels 0", [](RecorderBlock& b) { b.channels = 0; }, RequestProblem::kChannels},
      {"channels 3", [](RecorderBlock& b) { b.channels = 3; }, RequestProblem::kChannels},
      {"seconds negative", [](RecorderBlock& b) { b.seconds = -5; }, RequestProblem::kSeconds},
      {"seconds 0", [](RecorderBlock& b) { b.seconds = 0; }, RequestProblem::kSeconds},
      {"one second", [](RecorderBlock& b) { b.seconds = 1; }, RequestProblem::kNone},
      {"buffer 0", [](RecorderBlock& b) { b.bufferKb = 0; }, RequestProblem::kBufferSize},
      {"buffer 1001", [](RecorderBlock& b) { b.bufferKb = 1001; }, RequestProblem::kBufferSize},
      {"wave name unterminated", [](RecorderBlock& b) { b.waveName.fill('w'); },
       RequestProblem::kWaveName},
      {"wave name empty", [](RecorderBlock& b) { b.waveName.fill(0); }, RequestProblem::kWaveName},
      {"temp name unterminated", [](RecorderBlock& b) { b.tempName.fill('t'); },
       RequestProblem::kTempName},
      {"temp name same as wave", [](RecorderBlock& b) { b.tempName = b.waveName; },
       RequestProblem::kTempName},
      {"more than 4 GB", [](RecorderBlock& b) { b.seconds = INT32_MAX; }, RequestProblem::kTooLong},
      // The data may take 2^32 - 1 - 64 bytes (a prime, so never met exactly).
      {"one byte past room for the header", [](RecorderBlock& b) { Mono8(b, 2731, 1572672); },
       RequestProblem::kTooLong},
      {"two bytes short of it", [](RecorderBlock& b) { Mono8(b, 2931, 1465359); },
       RequestProblem::kNone},
      {"largest buffer", [](RecorderBlock& b) { b.bufferKb = 1000; }, RequestProblem::kNone},
      {"fastest rate", [](RecorderBlock& b) { b.samplesPerSec = 192000; }, RequestProblem::kNone},
  };
  for (const Case& c : cases) {
    RecorderBlock b = good;
    c.spoil(b);
    EXPECT_EQ(CheckStartRequest(b), c.want) << c.what;
  }
}

TEST(WavHeader, GoldenBytesOfA16BitMonoHeader) {
  const auto h = EncodeWavHeader({44100, 1, 16}, 88200);
  const uint8_t want[44] = {'R', 'I', 'F',  'F',  0xAC, 0x58, 0x01, 0,    'W',  'A',  'V',
                            'E', 'f', 'm',  't',  ' ',  16,   0,    0,    0,    1,    0,
                            1,   0,   0x44, 0xAC, 0,    0,    0x88, 0x58, 0x01, 0,    2,
                            0,   16,  0,    'd',  'a',  't',  'a',  0x88, 0x58, 0x01, 0};
  ExpectSameBytes(h.data(), want, 44);
  const auto stereo8 = EncodeWavHeader({11025, 2, 8}, 0);
  EXPECT_EQ(stereo8[22], 2);                         // channels
  EXPECT_EQ(stereo8[28] | stereo8[29] << 8, 22050);  // bytes per second
  EXPECT_EQ(stereo8[32], 2);                         // block align
  EXPECT_EQ(stereo8[4], 36);                         // RIFF size of an empty recording
}

}  // namespace
}  // namespace velmora::sound
