// Names that must differ.
#include <gtest/gtest.h>

#include "console_code/kva_utilities/names.h"

using namespace KVA_UTILITIES;

TEST(UNIQUE_NAME, LATER_ONES_ARE_NUMBERED_FROM_2) {
  NAMES_TAKEN taken;
  EXPECT_EQ(UNIQUE_NAME("quartz", taken, 80), "quartz");
  EXPECT_EQ(UNIQUE_NAME("quartz", taken, 80), "quartz_2");
  EXPECT_EQ(UNIQUE_NAME("quartz", taken, 80), "quartz_3");
  EXPECT_EQ(UNIQUE_NAME("calcite", taken, 80), "calcite");
}

TEST(UNIQUE_NAME, LETTERS_DO_NOT_TELL_NAMES_APART) {
  NAMES_TAKEN taken;
  UNIQUE_NAME("Quartz", taken, 80);
  EXPECT_EQ(UNIQUE_NAME("QUARTZ", taken, 80), "QUARTZ_2");
  EXPECT_EQ(UNIQUE_NAME("quartz", taken, 80), "quartz_3");
}

TEST(UNIQUE_NAME, A_NUMBERED_NAME_CAN_BE_TAKEN_ITSELF) {
  NAMES_TAKEN taken;
  UNIQUE_NAME("a_2", taken, 80);
  EXPECT_EQ(UNIQUE_NAME("a", taken, 80), "a");
  EXPECT_EQ(UNIQUE_NAME("a", taken, 80), "a_3");
  EXPECT_EQ(UNIQUE_NAME("A_2", taken, 80), "A_2_2");
}

TEST(UNIQUE_NAME, A_NAME_LIKE_ONE_THAT_WAS_MADE_IS_ITS_SECOND) {
  NAMES_TAKEN taken;
  UNIQUE_NAME("a", taken, 80);
  UNIQUE_NAME("a", taken, 80);
  EXPECT_EQ(UNIQUE_NAME("a_2", taken, 80), "a_2_2");
  EXPECT_EQ(UNIQUE_NAME("a_2", taken, 80), "a_2_3");
}

// Ten letters and room for eight: "_2" stands behind six of them.
TEST(UNIQUE_NAME, KEEPS_TO_ITS_LENGTH) {
  NAMES_TAKEN taken;
  UNIQUE_NAME("abcdefgh", taken, 8);
  EXPECT_EQ(UNIQUE_NAME("abcdefgh", taken, 8), "abcdef_2");
  EXPECT_EQ(UNIQUE_NAME("abcdefgh", taken, 8), "abcdef_3");
}

TEST(UNIQUE_NAME, CAPITALS_MAY_TELL_NAMES_APART) {
  NAMES_TAKEN taken{true, {}};
  UNIQUE_NAME("Fe1", taken, 80);
  EXPECT_EQ(UNIQUE_NAME("FE1", taken, 80), "FE1");
  EXPECT_EQ(UNIQUE_NAME("Fe1", taken, 80), "Fe1_2");
}
