// Resource and control ids of the main window. Plain macros: the .rc script
// and the C++ code both include this file. Each id carries the control's
// name in the window's conventions (Command5, Check3, ...) and its role.
#pragma once

#define IDI_VELMORA 1
#define IDD_MAIN_WINDOW 100

// Region group ("キャプチャ領域").
#define IDC_FRAME_REGION 1000
#define IDC_LABEL1_LEFT 1001
#define IDC_LABEL2_TOP 1002
#define IDC_LABEL3_WIDTH 1003
#define IDC_LABEL4_HEIGHT 1004
#define IDC_TEXT1_LEFT 1005    // Text1(0)
#define IDC_TEXT1_TOP 1006     // Text1(1)
#define IDC_TEXT1_WIDTH 1007   // Text1(2)
#define IDC_TEXT1_HEIGHT 1008  // Text1(3)
#define IDC_COMMAND1_BY_MOUSE 1009
#define IDC_CHECK1_WINDOW 1010  // Check1(0)
#define IDC_CHECK1_CLIENT 1011  // Check1(1)
#define IDC_CHECK5_FOLLOW_MOUSE 1012

// Frame settings group ("キャプチャ設定").
#define IDC_FRAME_SETTINGS 1020
#define IDC_LABEL_FPS 1021
#define IDC_HSCROLL1_FPS 1022  // HScroll1(0)
#define IDC_LABEL5_FPS 1023    // Label5(0), the value
#define IDC_LABEL_SECONDS 1024
#define IDC_HSCROLL1_SECONDS 1025  // HScroll1(1)
#define IDC_LABEL5_SECONDS 1026    // Label5(1), the value
#define IDC_CHECK2_DRAW_MOUSE 1027
#define IDC_CHECK3_SOUND 1028
#define IDC_LABEL_SOUND_FORMAT 1029
#define IDC_COMBO1_SOUND_FORMAT 1030
#define IDC_CHECK4_DELETE_WAVE 1031
#define IDC_LABEL_RECORDING_LINE 1032
#define IDC_COMBO2_RECORDING_LINE 1033

// Method group ("キャプチャ方法").
#define IDC_FRAME_METHOD 1040
#define IDC_OPTION1_TYPE0 1041
#define IDC_OPTION1_TYPE1 1042
#define IDC_OPTION1_TYPE2 1043
#define IDC_LABEL_CPU_RELEASE 1044
#define IDC_HSCROLL2_COUNT 1045  // HScroll2(0)
#define IDC_LABEL6_COUNT 1046    // Label6(0), the value
#define IDC_HSCROLL2_TIME 1047   // HScroll2(1)
#define IDC_LABEL6_TIME 1048     // Label6(1), the value
#define IDC_LABEL_PRIORITY 1049
#define IDC_COMBO3_PRIORITY 1050
#define IDC_CHECK7_ASYNC_WRITE 1051

// Save mode group ("保存方法").
#define IDC_FRAME_SAVE 1060
#define IDC_OPTION2_AVI_AND_QRK 1061  // Option2(0)
#define IDC_OPTION2_AVI_ONLY 1062     // Option2(1)
#define IDC_OPTION2_QRK_ONLY 1063     // Option2(2)
#define IDC_CHECK6_AVI24 1064
#define IDC_LABEL10_COMPRESSOR 1065
#define IDC_LABEL11_COMPRESSOR_NAME 1066
#define IDC_COMMAND8_COMPRESSOR 1067
#define IDC_LABEL_MOVIE_FILE 1068
#define IDC_TEXT2_MOVIE_FILE 1069
#define IDC_COMMAND2_BROWSE 1070
#define IDC_COMMAND4_PLAYER 1071

// Information, estimate, preview and the command buttons.
#define IDC_LABEL_INFO 1080
#define IDC_PICTURE2_INFO 1081
#define IDC_LABEL12_ESTIMATE 1082
#define IDC_LABEL9_ESTIMATE 1083
#define IDC_LABEL_PREVIEW 1084
#define IDC_PICTURE1_PREVIEW 1085
#define IDC_COMMAND10_LOAD 1090
#define IDC_COMMAND7_SAVE 1091
#define IDC_COMMAND9_RESTORE 1092
#define IDC_COMMAND6_REDRAW 1093
#define IDC_COMMAND3_BENCHMARK 1094
#define IDC_COMMAND5_START 1095
#define IDC_COMMAND11_HELP 1096

// Capture frame window (Form1): the statistics panel shown while recording.
#define IDD_FORM1_CAPTURE 110
#define IDC_FORM1_PICTURE1 1110
#define IDC_FORM1_COMMAND1_CANCEL 1111  // Command1(0)
#define IDC_FORM1_COMMAND1_MOVE 1112    // Command1(1)
// Picture1's texts, each a child window of Picture1 so its text can be read.
#define IDC_FORM1_MESSAGE 1120
#define IDC_FORM1_FRAME 1121
#define IDC_FORM1_DROP 1122
#define IDC_FORM1_DROP_RATE 1123
#define IDC_FORM1_CAPTURE 1124
#define IDC_FORM1_CAPTURE_AVE 1125
#define IDC_FORM1_TIME 1126
