#include "sound/win/recorder_control.h"

#include <shellapi.h>

#include <cstdint>

#include "engine/win/text_encoding.h"

namespace velmora::win {

using namespace velmora::sound;

void ShowPlainMessage(const std::string& utf8) {
  MessageBoxW(nullptr, Widen(utf8).c_str(), L"Velmora", MB_OK);
}

StartRequestError PrepareStartRequest(const SoundFormat& format, int32_t seconds,
                                      const std::string& utf8WaveName, int32_t plannedStartMs,
                                      RecorderBlock& out) {
  const std::optional<std::string> ansi = AnsiFromUtf8(utf8WaveName);
  if (!ansi) return StartRequestError::kNameNotInCodePage;
  return BuildStartRequest(format, seconds, *ansi, plannedStartMs, out);
}

RecorderControl::RecorderControl(Clock& clock, std::wstring blockName)
    : clock_(clock), blockName_(std::move(blockName)) {}

bool RecorderControl::StartRecorder(const std::wstring& recorderExe) {
  processId_ = 0;
  block_ = SharedBlock::Create(blockName_.c_str());
  if (!block_.IsOpen()) return false;
  RecorderBlock hello;
  hello.state = kStateHello;
  const BlockBytes helloBytes = EncodeRecorderBlock(hello);
  block_.Write(helloBytes);

  const std::wstring pid = std::to_wstring(GetCurrentProcessId());
  const auto shell = reinterpret_cast<intptr_t>(
      ShellExecuteW(nullptr, L"open", recorderExe.c_str(), pid.c_str(), nullptr, SW_SHOWNORMAL));
  if (shell <= 32) block_.Close();

  processId_ = WaitForHelloAnswer(clock_, block_, helloBytes);
  if (processId_ == 0) block_.Close();
  return processId_ != 0;
}

void RecorderControl::SetStartRequest(const RecorderBlock& request) {
  startCopy_ = EncodeRecorderBlock(request);
}

void RecorderControl::WriteStartRequest() { block_.Write(startCopy_); }

StopOutcome RecorderControl::StopAndWait(const ShowMessageFn& show) {
  const StopOutcome outcome = sound::StopAndWait(clock_, block_);
  const std::string text = StopOutcomeMessage(outcome);
  if (!text.empty() && show) show(text);
  return outcome;
}

bool RecorderPriority::Apply(uint32_t processId, DWORD priorityClass) {
  Restore();
  UniqueHandleObj process(
      OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_SET_INFORMATION, FALSE, processId));
  if (!process) return false;
  previous_ = GetPriorityClass(process.get());
  if (!previous_ || !SetPriorityClass(process.get(), priorityClass)) return false;
  process_ = std::move(process);
  return true;
}

void RecorderPriority::Restore() {
  if (process_ && previous_) SetPriorityClass(process_.get(), previous_);
  process_.reset();
  previous_ = 0;
}

}  // namespace velmora::win
