// AviLibrary over the real AVI5.DLL: the settings record (own or the caller's),
// names and properties, replacing files, and the compressor chooser driven
// like a user would.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <thread>

#include "conversion/avi5/comp_vars.h"
#include "conversion/avi5/tests/win/test_codec.h"
#include "conversion/win/avi_library.h"
#include "engine/byte_order.h"
#include "tests/conversion_movies.h"
#include "tests/files.h"
#include "tests/temp_dir.h"

namespace velmora {
namespace {

int32_t WriteFrames(AviLibrary& a, const std::string& path, const uint8_t* cv, int frames) {
  std::vector<uint8_t> frame(8 * 4 * 3, 0x42);
  int32_t st = a.CreateAvi(path, frames, 8, 4, 24, 10, "AVIFile", cv);
  for (int i = 0; i < frames && st == 0; ++i) st = a.AddFrame(frame.data());
  const int32_t closed = a.CloseAvi();
  return st ? st : closed;
}

TEST(AviLibrary, CallersRecordIsUsedOnceFilesAreReplacedAndTheChooserKeepsAChoice) {
  ASSERT_TRUE(test::InstallTestCodec());
  test::TempDir dir;
  AviLibrary a;
  AviLibrary::CompVars cv{};
  StoreLE32(cv.data(), int32_t(avi::kCompVarsBytes));  // cbSize
  StoreLE32(cv.data() + avi::kCompVarsHandlerOffset, int32_t(test::kTestCodecFcc));
  ASSERT_EQ(WriteFrames(a, dir.Path("圧縮.avi"), cv.data(), 3), 0);
  EXPECT_EQ(test::ReadAvi(dir.Path("圧縮.avi")).video.handler, test::kTestCodecFcc);
  AviLibrary::CompVars own;
  a.CopySettings(own.data());
  EXPECT_EQ(own, AviLibrary::CompVars{});
  EXPECT_EQ(a.CompressorName(), "未圧縮");

  // Without a record the library's own (uncompressed) settings apply, and an
  // existing read-only file is replaced.
  const std::string path = dir.Path("既存.avi");
  velmora::test::WriteFile(path, std::vector<uint8_t>(100000, 'j'));
  std::filesystem::permissions(test::TempDir::Fs(path), std::filesystem::perms::owner_write,
                               std::filesystem::perm_options::remove);
  ASSERT_EQ(WriteFrames(a, path, nullptr, 2), 0);
  const test::AviFrames replaced = test::ReadAvi(path);
  EXPECT_EQ(replaced.frames.size(), 2u);
  EXPECT_EQ(replaced.video.handler, 0u);

  std::thread ok([] { test::PressInChooser(nullptr, IDOK, L"検査用"); });
  AviLibrary::CompVars copy{};
  a.SelectCompressor(0, copy.data());
  ok.join();
  ASSERT_EQ(a.CompressorName(), "検査用コーデック");
  EXPECT_EQ(avi::CompVarsField(copy.data(), avi::kCompVarsHandlerOffset),
            int32_t(test::kTestCodecFcc));
  std::thread cancel([] { test::PressInChooser(nullptr, IDCANCEL, nullptr); });
  a.SelectCompressor(0, nullptr);
  cancel.join();
  EXPECT_EQ(a.CompressorName(), "検査用コーデック");
  test::RemoveTestCodec();
}

}  // namespace
}  // namespace velmora
