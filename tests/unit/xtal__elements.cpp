// The table of elements and the reading of labels.
#include <gtest/gtest.h>

#include "console_code/kva_utilities/text.h"
#include "foundations/XTAL_Scattering_Chemical_Tables.h"

using namespace XTAL;

namespace {

struct READ {
  std::string SYMBOL;
  int Z = 0;
  bool operator==(const READ&) const = default;
};

READ ELEMENT(std::string_view label) {
  READ read;
  GET_CHEMSYMB(label, read.SYMBOL, read.Z);
  return read;
}

}  // namespace

TEST(ELEMENTS, ROWS_GO_BY_ATOMIC_NUMBER_AND_END_WITH_THREE_SPECIAL_ONES) {
  for (int row = 1; row <= 105; ++row)
    EXPECT_EQ(CHEM_INFO[static_cast<std::size_t>(row - 1)].Z, row);
  EXPECT_EQ(CHEM_INFO[0].NAME, "Hydrogen");
  EXPECT_EQ(CHEM_INFO[25].SYMB, "FE");
  EXPECT_EQ(CHEM_INFO[105].SYMB, "BS");
  EXPECT_EQ(CHEM_INFO[105].Z, 5);
  EXPECT_EQ(CHEM_INFO[106].SYMB, "ZE");
  EXPECT_EQ(CHEM_INFO[107].SYMB, "D");
  for (const CHEM_INFO_TYPE& row : CHEM_INFO) {
    EXPECT_LE(row.NAME.size(), 12u) << row.NAME;
    EXPECT_EQ(row.SYMB, KVA_UTILITIES::U_CASE(row.SYMB));
  }
}

TEST(ELEMENTS, THE_TWO_LETTER_READING_WINS) {
  EXPECT_EQ(ELEMENT("CA1"), (READ{"Ca", 20}));
  EXPECT_EQ(ELEMENT("HO"), (READ{"Ho", 67}));
  EXPECT_EQ(ELEMENT("Si10"), (READ{"Si", 14}));
}

TEST(ELEMENTS, ELSE_THE_FIRST_LETTER) {
  EXPECT_EQ(ELEMENT("OW"), (READ{"O", 8}));
  EXPECT_EQ(ELEMENT("OH"), (READ{"O", 8}));
  EXPECT_EQ(ELEMENT("O2-"), (READ{"O", 8}));
  EXPECT_EQ(ELEMENT("F3+"), (READ{"F", 9}));
  EXPECT_EQ(ELEMENT("f"), (READ{"F", 9}));
  EXPECT_EQ(ELEMENT("  n1"), (READ{"N", 7}));
  EXPECT_EQ(ELEMENT("D1"), (READ{"D", 1}));
}

TEST(ELEMENTS, CHARGES_DO_NOT_MATTER) {
  EXPECT_EQ(ELEMENT("Fe3+"), (READ{"Fe", 26}));
  EXPECT_EQ(ELEMENT("Fe+3"), (READ{"Fe", 26}));
}

TEST(ELEMENTS, WHAT_IS_NONE) {
  for (const char* label : {"", "  ", "X1", "?", "1", "*"})
    EXPECT_EQ(ELEMENT(label), (READ{"**", 0}));
  EXPECT_EQ(ELEMENT("ZE"), (READ{"Ze", 0})) << "a row of the table and no element";
}

TEST(ELEMENTS, WHOLE_TEXTS_THAT_ARE_SYMBOLS) {
  EXPECT_TRUE(IS_CHEMSYMB("si"));
  EXPECT_TRUE(IS_CHEMSYMB("O"));
  EXPECT_FALSE(IS_CHEMSYMB("OW"));
  EXPECT_FALSE(IS_CHEMSYMB(""));
}
