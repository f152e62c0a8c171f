// Status codes of the AVI writer library and their texts: one table yields
// both. 0 is success; every failure is a distinct negative number.
#pragma once
#include <cstdint>
#include <string>

namespace velmora::avi {

// The one list of statuses and their texts (UTF-8), 0 down without gaps.
#define VELMORA_AVI_STATUSES(X)                                                      \
  X(kAviOk, 0, "正常に終了しました。")                                               \
  X(kAviBadParameter, -1,                                                            \
    "AVIファイルの幅・高さ・色数・フレームレートのいずれかが正しくありません。")     \
  X(kAviCannotCreate, -2, "AVIファイルを作成できません。")                           \
  X(kAviWriteFailed, -3,                                                             \
    "AVIファイルへの書き込みに失敗しました。ディスクの空き容量を確認してください。") \
  X(kAviNotOpen, -4, "AVIファイルが作成されていません。")                            \
  X(kAviAlreadyOpen, -5, "AVIファイルは既に作成中です。")                            \
  X(kAviCompressorMissing, -6, "選択された圧縮プログラムを開けません。")             \
  X(kAviCompressFailed, -7, "フレームを圧縮できません。")                            \
  X(kAviCannotOpenAvi, -8, "AVIファイルをオープンできません。")                      \
  X(kAviBrokenAvi, -9, "AVIファイルが壊れているか、対応していない形式です。")        \
  X(kAviCannotOpenWave, -10, "WAVEファイルをオープンできません。")                   \
  X(kAviBrokenWave, -11, "WAVEファイルが壊れています。")                             \
  X(kAviWaveNotPcm, -12, "PCM形式以外のWAVEファイルは結合できません。")              \
  X(kAviCannotReplace, -13,                                                          \
    "AVIファイルを置き換えられません。元のファイルはそのまま残っています。")         \
  X(kAviOutOfMemory, -14, "メモリが足りません。")

enum AviStatus : int32_t {
#define VELMORA_AVI_STATUS_ENUM(name, number, text) name = number,
  VELMORA_AVI_STATUSES(VELMORA_AVI_STATUS_ENUM)
#undef VELMORA_AVI_STATUS_ENUM
};

inline constexpr int32_t kAviFirstStatus = kAviOutOfMemory;  // lowest known code

// The Japanese text for a status (UTF-8). Unknown codes get a text that
// carries the number, so nothing the library returns is ever shown blank.
std::string AviStatusText(int32_t status);

}  // namespace velmora::avi
