#include "sound/recorder_block.h"

#include <cmath>
#include <cstring>

namespace velmora::sound {

int32_t RecorderBufferKb(int32_t samplesPerSec, int32_t bitsPerSample, int32_t channels) {
  const double kb = 2.0 * samplesPerSec * bitsPerSample / 8.0 * channels / 1024.0 + 100.0;
  const double rounded = std::nearbyint(kb);
  if (rounded >= 1000.0) return 1000;
  if (!(rounded > -2147483648.0)) return INT32_MIN;
  return static_cast<int32_t>(rounded);
}

std::string TemporaryWaveName(std::string_view waveName) {
  return std::string(waveName) + ".wavtemp";
}

namespace {

// Copies a name and its NUL into a field; false (field untouched) when it does not fit.
bool PutName(std::string_view name, NameField& field) {
  if (name.size() + 1 > field.size()) return false;
  field.fill(0);
  std::memcpy(field.data(), name.data(), name.size());
  return true;
}

}  // namespace

StartRequestError BuildStartRequest(const SoundFormat& format, int32_t seconds,
                                    std::string_view waveNameAnsi, int32_t plannedStartMs,
                                    RecorderBlock& out) {
  if (waveNameAnsi.empty()) return StartRequestError::kNameEmpty;
  // An embedded NUL would silently shorten the name the recorder sees.
  if (waveNameAnsi.find('\0') != std::string_view::npos) return StartRequestError::kNameEmpty;
  RecorderBlock b;
  if (!PutName(waveNameAnsi, b.waveName) || !PutName(TemporaryWaveName(waveNameAnsi), b.tempName)) {
    return StartRequestError::kNameTooLong;
  }
  b.state = kStateStart;
  b.bitsOrProcessId = format.bitsPerSample;
  b.samplesPerSec = format.samplesPerSec;
  b.channels = format.channels;
  b.seconds = seconds;
  b.bufferKb = RecorderBufferKb(format.samplesPerSec, format.bitsPerSample, format.channels);
  b.reserved = 0;
  b.plannedStartMs = plannedStartMs;
  out = b;
  return StartRequestError::kNone;
}

std::string StartRequestErrorText(StartRequestError e) {
  switch (e) {
    case StartRequestError::kNone:
      return {};
    case StartRequestError::kNameTooLong:
      return "wavファイル名が長すぎるため録音できません。\r\n"
             "一時ファイル名（末尾に .wavtemp が付きます）を含めて260バイト以内になるよう、"
             "保存先を短くしてください。";
    case StartRequestError::kNameEmpty:
      return "wavファイル名が正しくないため録音できません。";
    case StartRequestError::kNameNotInCodePage:
      return "wavファイル名に使用できない文字が含まれているため録音できません。";
  }
  return {};
}

std::string NameFieldText(const NameField& field) {
  const void* nul = std::memchr(field.data(), 0, field.size());
  if (!nul) return {};
  return std::string(reinterpret_cast<const char*>(field.data()),
                     static_cast<const uint8_t*>(nul) - field.data());
}

RequestProblem CheckStartRequest(const RecorderBlock& b) {
  if (b.bitsOrProcessId != 8 && b.bitsOrProcessId != 16) return RequestProblem::kBits;
  if (b.samplesPerSec < 1000 || b.samplesPerSec > 192000) return RequestProblem::kRate;
  if (b.channels != 1 && b.channels != 2) return RequestProblem::kChannels;
  if (b.seconds < 1) return RequestProblem::kSeconds;
  if (b.bufferKb < 1 || b.bufferKb > 1000) return RequestProblem::kBufferSize;
  const std::string wave = NameFieldText(b.waveName);
  if (wave.empty()) return RequestProblem::kWaveName;
  const std::string temp = NameFieldText(b.tempName);
  if (temp.empty() || temp == wave) return RequestProblem::kTempName;
  // A wave file's sizes are 32-bit: the data must leave room for the header.
  const int64_t bytes = int64_t{b.seconds} * b.samplesPerSec * b.channels * (b.bitsOrProcessId / 8);
  if (bytes > int64_t{0xFFFFFFFF} - 64) return RequestProblem::kTooLong;
  return RequestProblem::kNone;
}

}  // namespace velmora::sound
