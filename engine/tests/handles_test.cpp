// The owners close exactly once, moves transfer ownership, and a selection
// guard puts the previous object back; a forced delete removes read-only files.
#include "engine/win/handles.h"

#include <gtest/gtest.h>

#include <fstream>

#include "tests/temp_dir.h"
#include "engine/win/text_encoding.h"
#include "engine/win/win_idioms.h"

namespace velmora::win {
namespace {

int g_closed = 0;
struct CountClose {
  static int Invalid() { return -1; }
  static void Close(int) { ++g_closed; }
};
using Counted = UniqueHandle<int, CountClose>;

TEST(Handles, CloseOnceAndMove) {
  g_closed = 0;
  {
    Counted a(5);
    Counted b(std::move(a));
    EXPECT_FALSE(a);
    EXPECT_EQ(b.get(), 5);
    Counted c;
    c = std::move(b);
    c = Counted(7);  // closes 5
    EXPECT_EQ(g_closed, 1);
    EXPECT_EQ(c.release(), 7);
  }
  EXPECT_EQ(g_closed, 1);
}

TEST(Handles, RealEventAndSelection) {
  UniqueHandleObj ev(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  ASSERT_TRUE(ev);
  HANDLE raw = ev.get();
  ev.reset();
  EXPECT_FALSE(ev);
  DWORD flags = 0;
  EXPECT_FALSE(GetHandleInformation(raw, &flags));  // really closed

  WindowDc screen = WindowDc::Get(nullptr);
  UniqueMemoryDc mem(CreateCompatibleDC(screen.get()));
  UniqueBitmap bmp(CreateCompatibleBitmap(screen.get(), 8, 8));
  HGDIOBJ original = GetCurrentObject(mem.get(), OBJ_BITMAP);
  {
    SelectGuard sel(mem.get(), bmp.get());
    EXPECT_EQ(GetCurrentObject(mem.get(), OBJ_BITMAP), bmp.get());
  }
  EXPECT_EQ(GetCurrentObject(mem.get(), OBJ_BITMAP), original);
}

TEST(ForceDelete, RemovesReadOnlyAndPlainFilesAndSaysWhenNothingWasThere) {
  test::TempDir dir;
  for (const DWORD attributes : {DWORD{FILE_ATTRIBUTE_READONLY}, DWORD{FILE_ATTRIBUTE_NORMAL}}) {
    const std::string path = dir.Path("消す.avi");
    std::ofstream(test::TempDir::Fs(path)) << "x";
    ASSERT_TRUE(SetFileAttributesW(Widen(path).c_str(), attributes));
    EXPECT_TRUE(ForceDelete(path)) << attributes;
    EXPECT_EQ(GetFileAttributesW(Widen(path).c_str()), INVALID_FILE_ATTRIBUTES) << attributes;
  }
  EXPECT_FALSE(ForceDelete(dir.Path("無い.avi")));
}

}  // namespace
}  // namespace velmora::win
