#include "sound/line_choice.h"

#include <gtest/gtest.h>

namespace velmora::sound {
namespace {

TEST(LineChoice, NameWinsWhenFoundOtherwiseTheIndexCounts) {
  const std::vector<std::string> lines = {"マイク", "ライン入力", "ステレオミキサー"};
  const std::string line = "ライン入力", missing = "CD";
  EXPECT_EQ(ChooseLine(lines, &line, 0), 1);
  EXPECT_EQ(ChooseLine(lines, &missing, 2), 2);
  EXPECT_EQ(ChooseLine(lines, nullptr, 0), 0);
  EXPECT_EQ(ChooseLine(lines, nullptr, 3), -1);
  EXPECT_EQ(ChooseLine(lines, nullptr, -1), -1);
  EXPECT_EQ(ChooseLine({"only"}, nullptr, 0), 0);  // a selector with one item
  EXPECT_EQ(ChooseLine({}, &line, 0), -1);         // no selector: nothing to choose
}

TEST(LineChoice, SelectedIsTheFirstValueWithBitZeroAndSettingWritesExactlyOneOne) {
  EXPECT_EQ(FirstSelected({0, 2, 3, 1}), 2);
  EXPECT_EQ(FirstSelected({0, 0}), -1);
  EXPECT_EQ(FirstSelected({}), -1);
  EXPECT_EQ(SelectionValues(3, 2), (std::vector<int32_t>{0, 0, 1}));
  EXPECT_EQ(SelectionValues(1, 0), (std::vector<int32_t>{1}));
  EXPECT_EQ(SelectionValues(2, 5), (std::vector<int32_t>{0, 0}));
}

}  // namespace
}  // namespace velmora::sound
