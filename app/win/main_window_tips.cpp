#include "app/win/main_window_tips.h"

#include <vector>

#include "app/win/main_window_ids.h"
#include "ui/tip_text.h"

namespace velmora::win {

std::span<const ControlTip> MainWindowTips() {
  static const std::vector<ControlTip> tips = {
      {IDC_LABEL1_LEFT, "キャプチャする領域の左端のX座標です。"},
      {IDC_TEXT1_LEFT, TipText({"キャプチャする領域の左端のX座標です。",
                                "画面の左上が0です。マイナスも指定できます。"})},
      {IDC_LABEL2_TOP, "キャプチャする領域の上端のY座標です。"},
      {IDC_TEXT1_TOP, TipText({"キャプチャする領域の上端のY座標です。",
                               "画面の左上が0です。マイナスも指定できます。"})},
      {IDC_LABEL3_WIDTH, "キャプチャする領域の幅です。"},
      {IDC_TEXT1_WIDTH, TipText({"キャプチャする領域の幅です。", "1以上の数字を入力してください。",
                                 "画面の色数に合わせて切り下げられることがあります。"})},
      {IDC_LABEL4_HEIGHT, "キャプチャする領域の高さです。"},
      {IDC_TEXT1_HEIGHT,
       TipText({"キャプチャする領域の高さです。", "1以上の数字を入力してください。"})},
      {IDC_COMMAND1_BY_MOUSE, "キャプチャする領域をマウスで指定します。"},
      {IDC_CHECK1_WINDOW, TipText({"チェックするとマウスの下のウィンドウの領域を取得します。",
                                   "未チェックの時は領域をマウスのドラッグで指定します。"})},
      {IDC_CHECK1_CLIENT, "クライアント領域を取得します。"},
      {IDC_CHECK5_FOLLOW_MOUSE, TipText({"マウスカーソルを中心にしてキャプチャします。",
                                         "領域はマウスに合わせて動きます。"})},
      {IDC_LABEL_FPS, "1秒間に何枚キャプチャするかです。"},
      {IDC_HSCROLL1_FPS, "1秒間に何枚キャプチャするかを指定します。"},
      {IDC_LABEL5_FPS, "1秒間にキャプチャする枚数です。"},
      {IDC_LABEL_SECONDS, "キャプチャする時間です。"},
      {IDC_HSCROLL1_SECONDS, "キャプチャする時間を指定します。"},
      {IDC_LABEL5_SECONDS, "キャプチャする時間です（分:秒）。"},
      {IDC_CHECK2_DRAW_MOUSE, "マウスカーソルも動画に書きこみます。"},
      {IDC_CHECK3_SOUND, "録画と同時にサウンドも録音します。"},
      {IDC_LABEL_SOUND_FORMAT, "録音するサウンドの音質です。"},
      {IDC_COMBO1_SOUND_FORMAT, "録音するサウンドの音質を選びます。"},
      {IDC_CHECK4_DELETE_WAVE, "AVIを作成した後でWaveファイルを削除します。"},
      {IDC_LABEL_RECORDING_LINE, "録音する入力です。"},
      {IDC_COMBO2_RECORDING_LINE,
       TipText({"録音する入力を選びます。", "「変更なし」の時は今の設定のまま録音します。"})},
      {IDC_OPTION1_TYPE0, "キャプチャ方法Type 0を使います。"},
      {IDC_OPTION1_TYPE1, "キャプチャ方法Type 1を使います。"},
      {IDC_OPTION1_TYPE2, "キャプチャ方法Type 2を使います。"},
      {IDC_LABEL_CPU_RELEASE, TipText({"1枚キャプチャするごとにCPUを開放する回数と時間です。",
                                       "他のプログラムが重くなる時に増やしてください。"})},
      {IDC_HSCROLL2_COUNT, "1枚ごとにCPUを開放する回数を指定します。"},
      {IDC_LABEL6_COUNT, "1枚ごとにCPUを開放する回数です。"},
      {IDC_HSCROLL2_TIME, "1回ごとにCPUを開放する時間を指定します。"},
      {IDC_LABEL6_TIME, "1回ごとにCPUを開放する時間です。"},
      {IDC_LABEL_PRIORITY, "キャプチャ中のプログラムの優先度です。"},
      {IDC_COMBO3_PRIORITY, TipText({"キャプチャ中のプログラムの優先度を選びます。",
                                     "「変更なし」の時は変更しません。"})},
      {IDC_CHECK7_ASYNC_WRITE, TipText({"先にファイル領域を確保して、書き込みを非同期で行います。",
                                        "コマ落ちが減ることがあります。"})},
      {IDC_OPTION2_AVI_AND_QRK, "AVIとQRKの両方を作成します。"},
      {IDC_OPTION2_AVI_ONLY, "AVIだけを作成します。QRKは作成後に削除します。"},
      {IDC_OPTION2_QRK_ONLY, "QRKだけを作成します。AVIは作成しません。"},
      {IDC_CHECK6_AVI24, "AVIを24bitの色深度で保存します。"},
      {IDC_LABEL10_COMPRESSOR, "AVIの圧縮方法です。"},
      {IDC_LABEL11_COMPRESSOR_NAME, "選ばれているAVIの圧縮方法です。"},
      {IDC_COMMAND8_COMPRESSOR, "AVIの圧縮方法を選びます。"},
      {IDC_LABEL_MOVIE_FILE, "保存するファイルの名前です。"},
      {IDC_TEXT2_MOVIE_FILE, TipText({"保存するファイルの名前です。",
                                      "AVIやWaveは同じ名前で拡張子を変えて作成します。"})},
      {IDC_COMMAND2_BROWSE, "保存するファイルを選びます。"},
      {IDC_COMMAND4_PLAYER, "再生画面を表示します。"},
      {IDC_LABEL_INFO, "今の設定でキャプチャした時の内容です。"},
      {IDC_PICTURE2_INFO, "今の設定でキャプチャした時の内容です。"},
      {IDC_LABEL12_ESTIMATE, "圧縮しなかった時に必要になる最大の容量です。"},
      {IDC_LABEL9_ESTIMATE, TipText({"圧縮しなかった時に必要になる最大の容量です。",
                                     "空き容量が足りない時は赤くなります。"})},
      {IDC_LABEL_PREVIEW, "キャプチャする領域のプレビューです。"},
      {IDC_PICTURE1_PREVIEW, "キャプチャする領域のプレビューです。"},
      {IDC_COMMAND10_LOAD, "設定を読み込みます。"},
      {IDC_COMMAND7_SAVE, TipText({"設定を保存します。", "default.QRTという名前をつけて保存すると",
                                   "起動時にその設定を読み込みます。",
                                   "注）AVIの圧縮方法は保存されません。常に未圧縮になります。"})},
      {IDC_COMMAND9_RESTORE, TipText({"標準の設定に戻します。", "default.QRTは関係ありません。"})},
      {IDC_COMMAND6_REDRAW, "キャプチャ情報とプレビューを描きなおします。"},
      {IDC_COMMAND3_BENCHMARK,
       TipText({"キャプチャ方法のType0～2を現在の設定で",
                "2秒間ずつキャプチャして、1フレームあたりの", "平均キャプチャ時間を調べます。"})},
      {IDC_COMMAND5_START, "今の設定でキャプチャを開始します。"},
      {IDC_COMMAND11_HELP, "ヘルプを表示します。"},
      {IDC_FRAME_REGION, "キャプチャする画面の領域です。"},
      {IDC_FRAME_SETTINGS, "キャプチャの枚数、時間、マウスとサウンドの設定です。"},
      {IDC_FRAME_METHOD, "キャプチャの方法と、キャプチャ中のCPUの使い方です。"},
      {IDC_FRAME_SAVE, "何を作成して残すかと、AVIの設定です。"},
  };
  return tips;
}

std::string NoRecorderTip() {
  return TipText({"録音できるサウンドドライバか、録音プログラム(WaveInExe.exe)が",
                  "見つからなかったため、サウンドは取り込めません。"});
}

}  // namespace velmora::win
