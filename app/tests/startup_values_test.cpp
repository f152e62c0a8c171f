// The start-up paths, the depth rule and the instance name.
#include "app/startup_values.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(StartupPaths, AreBuiltFromTheApplicationFolderWithExactlyOneBackslash) {
  const StartupPaths p = BuildStartupPaths(ExecutableFolder("C:\\Tools\\録画\\velmora.exe"));
  EXPECT_EQ(p.AppDir, "C:\\Tools\\録画\\");
  EXPECT_EQ(p.RecorderExe, "C:\\Tools\\録画\\WaveInExe.exe");
  EXPECT_EQ(p.RecorderTempMarker, "C:\\Tools\\録画\\WaveInExe.exetemp");
  EXPECT_EQ(p.DefaultSettingsFile, "C:\\Tools\\録画\\settings\\default.QRT");
  EXPECT_EQ(p.HelpFile, "C:\\Tools\\録画\\help/main.htm");

  // At a drive root the folder already ends in "\" and gets no second one.
  EXPECT_EQ(ExecutableFolder("D:\\velmora.exe"), "D:\\");
  EXPECT_EQ(BuildStartupPaths("D:\\").RecorderExe, "D:\\WaveInExe.exe");
  EXPECT_EQ(BuildStartupPaths("\\\\server\\share").AppDir, "\\\\server\\share\\");
}

TEST(StartupRules, OnlyEightBitsIsRefusedAndInstanceNamesFollowThePath) {
  for (int32_t bits : {1, 4, 15, 16, 24, 32}) EXPECT_FALSE(IsRefusedDisplayDepth(bits)) << bits;
  EXPECT_TRUE(IsRefusedDisplayDepth(8));

  EXPECT_EQ(TwipsPerPixel(120), 12);
  EXPECT_EQ(TwipsPerPixel(168), 9);  // 8.57: rounded, not cut
  EXPECT_EQ(TwipsPerPixel(0), 0);

  const std::string a = InstanceName("C:\\Program Files\\Velmora\\velmora.exe");
  EXPECT_EQ(a, InstanceName("c:\\program files\\VELMORA\\VELMORA.EXE"));
  EXPECT_EQ(a, InstanceName("C:/Program Files/Velmora/velmora.exe"));
  EXPECT_NE(a, InstanceName("C:\\Other\\velmora.exe"));
  EXPECT_EQ(a.find('\\'), std::string::npos);
  EXPECT_LT(a.size(), 64u);
}

}  // namespace
}  // namespace velmora
