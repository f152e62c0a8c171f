// QRKPlayer.exe driven from outside, as a user would meet it: a movie plays
// to its last frame, a bad file gives the engine's message.
#include <gtest/gtest.h>
#include <windows.h>

#include "engine/win/handles.h"
#include "engine/win/text_encoding.h"
#include "player/player_title.h"
#include "tests/conversion_movies.h"
#include "tests/files.h"
#include "tests/temp_dir.h"
#include "tests/win/launch.h"
#include "tests/win/pattern_window.h"

namespace velmora {
namespace {

win::UniqueHandleObj StartPlayer(const std::string& movie) {
  return test::Launch(test::BesideThisProgram(L"QRKPlayer.exe"), L"\"" + win::Widen(movie) + L"\"");
}

std::string WindowText(HWND w) { return win::Narrow(test::WindowTextW(w)); }

TEST(QRKPlayer, PlaysAMovieToItsLastFrameWithTheCounterInTheTitle) {
  test::TempDir dir;
  for (const int32_t method : {1, 0}) {
    SCOPED_TRACE(method);
    const std::string path = test::WriteMovie(dir, "再生" + std::to_string(method) + ".QRK",
                                              test::MakeMovie(method, 32, 160, 120, 10));
    auto process = StartPlayer(path);
    HWND wnd = test::WaitForWindow(process.get(), L"VelmoraQRKPlayer", 5000);
    ASSERT_NE(wnd, nullptr);
    RECT client{};
    GetClientRect(wnd, &client);
    EXPECT_EQ(client.right, 160);
    EXPECT_EQ(client.bottom, 120);
    const std::string end = PlayerTitle(path, 10, 10);
    test::WaitUntil([&] { return WindowText(wnd) == end; }, 5000);
    EXPECT_EQ(WindowText(wnd), end);
    PostMessageW(wnd, WM_CLOSE, 0, 0);
    EXPECT_EQ(test::ExitCodeWithin(process, 10000), 0u);
  }
}

TEST(QRKPlayer, RefusedFilesShowTheEnginesMessage) {
  test::TempDir dir;
  const auto good =
      test::ReadFile(test::WriteMovie(dir, "good.QRK", test::MakeMovie(1, 32, 64, 48, 10)));
  auto badMagic = good;
  badMagic[3] = 'G';
  const auto truncated = std::vector<uint8_t>(good.begin(), good.begin() + 32 + 8 + 4);
  test::WriteFile(dir.Path("magic.QRK"), badMagic);
  test::WriteFile(dir.Path("short.QRK"), truncated);
  // The engine's other refusals (no file, empty file) reach the same box:
  // their codes are checked by HeaderFile.QueryRefusesBadFilesWithTheirCodes.
  const struct {
    std::string file, text;
  } cases[] = {
      {"magic.QRK", "ファイルが壊れているか、対応していないバージョンです。"},
      {"short.QRK", "フレームヘッダが見つかりません。"},  // the payload is cut short
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.file);
    auto process = StartPlayer(dir.Path(c.file));
    HWND box = test::WaitForWindow(process.get(), L"#32770", 5000);
    ASSERT_NE(box, nullptr);
    // The box may be found before its texts are set.
    test::WaitUntil([&] { return !WindowText(GetDlgItem(box, 0xFFFF)).empty(); }, 3000);
    EXPECT_EQ(WindowText(box), "QRKPlayer");
    EXPECT_EQ(WindowText(GetDlgItem(box, 0xFFFF)), c.text);
    PostMessageW(box, WM_COMMAND, IDOK, 0);
    EXPECT_EQ(test::ExitCodeWithin(process, 10000), 1u);
  }
}

}  // namespace
}  // namespace velmora
