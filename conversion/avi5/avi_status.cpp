#include "conversion/avi5/avi_status.h"

#include <array>

namespace velmora::avi {

namespace {
// Indexed by -status.
constexpr std::array<const char*, 15> kTexts{
    "正常に終了しました。",
    "AVIファイルの幅・高さ・色数・フレームレートのいずれかが正しくありません。",
    "AVIファイルを作成できません。",
    "AVIファイルへの書き込みに失敗しました。ディスクの空き容量を確認してください。",
    "AVIファイルが作成されていません。",
    "AVIファイルは既に作成中です。",
    "選択された圧縮プログラムを開けません。",
    "フレームを圧縮できません。",
    "AVIファイルをオープンできません。",
    "AVIファイルが壊れているか、対応していない形式です。",
    "WAVEファイルをオープンできません。",
    "WAVEファイルが壊れています。",
    "PCM形式以外のWAVEファイルは結合できません。",
    "AVIファイルを置き換えられません。元のファイルはそのまま残っています。",
    "メモリが足りません。",
};
static_assert(kTexts.size() == 1 - kAviFirstStatus);
}  // namespace

std::string AviStatusText(int32_t status) {
  if (status <= 0 && status >= kAviFirstStatus) return kTexts[size_t(-status)];
  return "不明なエラーです。(" + std::to_string(status) + ")";
}

}  // namespace velmora::avi
