#include "app/win/record_command.h"

#include <windows.h>

#include "app/capture_settings.h"
#include "app/recording_stats.h"
#include "app/window_positions.h"
#include "app/win/ansi.h"
#include "app/win/console.h"
#include "app/win/record_and_save.h"
#include "engine/result_codes.h"
#include "engine/win/application_folder.h"
#include "engine/win/win_clock.h"
#include "engine/win/text_encoding.h"

namespace velmora::win {
namespace {

// Nobody to ask on the command line: no cancel, the engine's message goes
// into the summary line, the recorder's complaints are printed before it.
class UnattendedHooks final : public RecordingRunHooks {
 public:
  void ShowRecorderMessage(const std::string& utf8Text) override { PrintLine(utf8Text); }
};

// The recorder lies beside the program and is started for this process, as
// the application does at start-up.
void StartRecorder(RecorderControl& recorder) {
  const std::wstring exe = Widen(ResolveInApplicationFolder("WaveInExe.exe"));
  if (GetFileAttributesW(exe.c_str()) != INVALID_FILE_ATTRIBUTES) recorder.StartRecorder(exe);
  if (!recorder.RecorderMapping()) PrintLine("sound unavailable: recording pictures only");
}

}  // namespace

VerbResult RunRecordCommand(const std::vector<std::wstring>& args) {
  if (args.size() != 1) return std::nullopt;
  const std::string path = Narrow(args[0]);
  const CaptureSettings settings = ReadSettingsFile(path, SystemAnsiCodec());
  if (settings.Width == 0 && settings.Height == 0) {
    const int32_t code = MakeResultCode(kErrCannotOpen);
    PrintLine(path + ": " + GetError(code));
    return code;
  }
  UnattendedHooks hooks;
  WinClock clock;
  RecorderControl recorder(clock);
  if (!settings.WaveFile.empty()) StartRecorder(recorder);
  // The progress window opens where the windowed program last left it, and
  // a move made during this conversion is remembered the same way. Every
  // question takes its default answer and is printed.
  const std::string iniFile = ResolveInApplicationFolder("QRXSetting.ini");
  WindowPositions positions;
  const bool remembered = LoadWindowPositions(iniFile, SystemAnsiCodec(), positions) == 0;
  DefaultAsker asker([](const std::string& text) { PrintLine(text); });
  const WindowPositions before = positions;
  const RecordAndSaveOutcome out =
      RecordAndSave(settings, nullptr, hooks, asker, &recorder, remembered ? &positions : nullptr,
                    [](const RecordingOutcome& run) {
                      PrintLine(SummaryLine(run.stats, run.result, run.resultText));
                    });
  if (remembered && positions != before) SaveWindowPositions(iniFile, positions, SystemAnsiCodec());
  return out.save.result;
}

}  // namespace velmora::win
