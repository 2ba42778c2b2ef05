// Many texts in few pieces of memory, and their counts.
#include "console_code/kva_utilities/text_list.h"

#include <gtest/gtest.h>

#include <ctime>
#include <optional>

using namespace KVA_UTILITIES;

TEST(TEXT_LIST, TEXTS_COME_BACK_BY_THEIR_NUMBERS_BLANK_ONES_TOO) {
  TEXT_LIST list;
  for (const char* text : {"Fe1", "", "O1[2]", "  "}) ADD_TEXT(text, list);
  ASSERT_EQ(list.ENDS.size(), 4u);
  EXPECT_EQ(TEXT_AT(list, 0), "Fe1");
  EXPECT_EQ(TEXT_AT(list, 1), "");
  EXPECT_EQ(TEXT_AT(list, 2), "O1[2]");
  EXPECT_EQ(TEXT_AT(list, 3), "  ");
}

// So many that the table grows more than ten times, each asked for twice.
TEST(TEXT_COUNTS, A_TEXT_KEEPS_ITS_NUMBER_AND_ITS_COUNT) {
  constexpr std::size_t many = 100000;
  const auto text = [](std::size_t k) { return "angle_" + std::to_string(k); };
  TEXT_COUNTS counts;
  for (std::size_t k = 0; k < many; ++k) {
    const std::size_t number = FIND_OR_ADD(text(k), counts);
    ASSERT_EQ(number, k);
    EXPECT_EQ(counts.COUNTS[number], 0) << "a new one";
    counts.COUNTS[number] = static_cast<int>(k);
  }
  for (std::size_t k = many; k-- > 0;) {
    const std::size_t number = FIND_OR_ADD(text(k), counts);
    ASSERT_EQ(number, k);
    ASSERT_EQ(counts.COUNTS[number], static_cast<int>(k));
  }
  EXPECT_EQ(counts.COUNTS.size(), many);
  EXPECT_EQ(FIND_OR_ADD("", counts), many) << "a blank text is one";
  EXPECT_EQ(FIND_OR_ADD("", counts), many);
}

// In processor time: a map with memory of its own for each takes a third of the time that it took
// to be made.
TEST(TEXT_COUNTS, A_MILLION_TEXTS_ARE_LET_GO_AT_ONCE) {
  constexpr int many = 1000000;
  const std::clock_t start = std::clock();
  std::optional<TEXT_COUNTS> counts(std::in_place);
  for (int k = 0; k < many; ++k) FIND_OR_ADD("a text of some length " + std::to_string(k), *counts);
  const std::clock_t made = std::clock();
  counts.reset();
  EXPECT_LT(std::clock() - made, (made - start) / 4);
}

TEST(TEXT_COUNTS, THE_START_OF_A_TEXT_IS_ANOTHER_TEXT) {
  TEXT_COUNTS counts;
  EXPECT_EQ(FIND_OR_ADD("Fe1-O1", counts), 0u);
  EXPECT_EQ(FIND_OR_ADD("Fe1-O", counts), 1u);
  EXPECT_EQ(FIND_OR_ADD("fe1-o", counts), 2u);
  EXPECT_EQ(FIND_OR_ADD("Fe1-O1", counts), 0u);
}
