// Line start, block summaries and cells: order, hidden blocks, and numbers that do not fit.
#include <limits>

#include "facetor6_commands__list_blocks.h"

using namespace LIST_TESTS;

namespace {

constexpr float no_number = std::numeric_limits<float>::quiet_NaN();

class PHASES : public BLOCKS {};

}  // namespace

TEST_F(PHASES, LINE_START_UNDER_ITS_HEAD) {
  EXPECT_EQ(FACETOR_HEADSTART(), head);
  EXPECT_EQ(head.size(), 45u);
  ADD("first");
  EXPECT_EQ(FACETOR_LINESTART(1), start_1);
  EXPECT_EQ(start_1.size(), 44u);
  EXPECT_EQ(FACETOR_LINESTART(1, true), esd_start_1);
  PHASE(1).BLOCK_TITLE = "a title that is too long";
  EXPECT_EQ(FACETOR_LINESTART(1), "  1: a title that i: 298.0   0.000         1");
  PHASE(1).PT(TEMPERATURE, PT_VALUE) = 123456.0f;
  EXPECT_EQ(FACETOR_LINESTART(1), "  1: a title that i:123456.0   0.000         1");
}

TEST_F(PHASES, AMBIENT_PRESSURE_HAS_NO_ESD) {
  ADD("first");
  PHASE(1).PT(PRESSURE, PT_ESD) = 0.00001f;
  PHASE(1).PT(PRESSURE, PT_VALUE) = 0.00011f;
  EXPECT_EQ(FACETOR_LINESTART(1, true), esd_start_1);
  PHASE(1).PT(PRESSURE, PT_VALUE) = 0.00012f;
  EXPECT_EQ(FACETOR_LINESTART(1, true), "  1: first         : 298.0(10) 0.000120(10) 1");
  PHASE(1).PT(PRESSURE, PT_VALUE) = 3.5f;
  PHASE(1).PT(PRESSURE, PT_ESD) = 0.05f;
  EXPECT_EQ(FACETOR_LINESTART(1, true), "  1: first         : 298.0(10) 3.50(5)     1");
}

TEST_F(PHASES, ROWS_FOLLOW_THE_DISPLAY_ORDER_WITH_THE_NUMBERS_OF_THE_BLOCKS) {
  ADD("first");
  ADD("second");
  ADD("third");
  ISORT(1) = 3;
  ISORT(2) = 1;
  ISORT(3) = 2;
  EXPECT_EQ(FACETOR_LINESTART(1), start_3);
  EXPECT_EQ(FACETOR_LINESTART(2, true), esd_start_1);
  EXPECT_EQ(SAID("", FACETOR_LIST_PHASE),
            head + "\n" + start_3 + "\n" + start_1 + "\n" + start_2 + "\n");
}

TEST_F(PHASES, NO_BLOCKS_NO_ROWS) {
  EXPECT_EQ(SAID("", FACETOR_LIST_PHASE), head + "\n");
  EXPECT_EQ(SAID("", FACETOR_LIST_PHASE_USED), head + "\n");
}

TEST_F(PHASES, A_HIDDEN_BLOCK_HAS_A_BLANK_LINE_START_IN_BOTH_FORMS) {
  ADD("first");
  IUSE(1) = 0;
  RUN.LIST_ALL_BLOCKS = false;
  EXPECT_EQ(FACETOR_LINESTART(1), "");
  EXPECT_EQ(FACETOR_LINESTART(1, true), "");
  RUN.LIST_ALL_BLOCKS = true;
  EXPECT_EQ(FACETOR_LINESTART(1), "  1: first         : 298.0   0.000         0");
  EXPECT_EQ(FACETOR_LINESTART(1, true), "  1: first         : 298.0(10) 0.0001      0");
}

TEST_F(PHASES, HIDDEN_BLOCKS_LEAVE_NO_ROW_AND_NUMBERS_KEEP_THEIR_GAPS) {
  ADD("first");
  ADD("second");
  ADD("third");
  IUSE(2) = 0;
  const std::string used = head + "\n" + start_1 + "\n" + start_3 + "\n";
  EXPECT_EQ(SAID("", FACETOR_LIST_PHASE_USED), used);
  EXPECT_TRUE(RUN.LIST_ALL_BLOCKS) << "the setting is restored";
  EXPECT_EQ(
      SAID("", FACETOR_LIST_PHASE),
      head + "\n" + start_1 + "\n  2: second        : 298.0   0.000         0\n" + start_3 + "\n");
  RUN.LIST_ALL_BLOCKS = false;
  EXPECT_EQ(SAID("", FACETOR_LIST_PHASE), used);
  EXPECT_EQ(SAID("", FACETOR_LIST_PHASE_USED), used);
  EXPECT_FALSE(RUN.LIST_ALL_BLOCKS) << "the setting is restored when it was off";
}

TEST_F(PHASES, COLUMNS_OF_THE_LINE_START_WIDEN_FOR_LONG_VALUES) {
  ADD("first");
  PHASE(1).PT(TEMPERATURE, PT_VALUE) = no_number;
  PHASE(1).PT(PRESSURE, PT_VALUE) = 12345.5f;
  // "No value" behind the colon is two columns longer than 21-26, "12345.500" two than 28-34.
  EXPECT_EQ(FACETOR_LINESTART(1), "  1: first         :No value 12345.500         1");
  // The field of T reaches to column 30 and takes 10 characters with its blank, or without it;
  // that of P reaches from 31 to 42.
  PHASE(1).PT(TEMPERATURE, PT_VALUE) = 1234.5f;
  PHASE(1).PT(TEMPERATURE, PT_ESD) = 1.2f;
  PHASE(1).PT(PRESSURE, PT_ESD) = 0.5f;
  EXPECT_EQ(FACETOR_LINESTART(1, true), "  1: first         :1234.5(12) 12345.5(5)  1");
  PHASE(1).PT(TEMPERATURE, PT_ESD) = 0.12f;
  PHASE(1).PT(PRESSURE, PT_ESD) = 0.0005f;
  // "1234.50(12)" has 12 characters with its blank for 10 columns, "12345.5000(5)" 14 for 12.
  EXPECT_EQ(FACETOR_LINESTART(1, true), "  1: first         : 1234.50(12) 12345.5000(5) 1");
}

TEST_F(PHASES, ONLY_PRESSURES_FROM_ZERO_TO_THAT_OF_THE_AIR_ARE_AMBIENT) {
  ADD("first");
  PHASE(1).PT(PRESSURE, PT_VALUE) = 0.0f;
  EXPECT_EQ(FACETOR_LINESTART(1, true), esd_start_1);
  PHASE(1).PT(PRESSURE, PT_VALUE) = -2.0f;
  EXPECT_EQ(FACETOR_LINESTART(1, true), "  1: first         : 298.0(10) -2.0000      1");
  PHASE(1).PT(PRESSURE, PT_VALUE) = -0.00005f;
  PHASE(1).PT(PRESSURE, PT_ESD) = 0.00002f;
  EXPECT_EQ(FACETOR_LINESTART(1, true), "  1: first         : 298.0(10) -0.00005(2)  1");
  PHASE(1).PT(PRESSURE, PT_VALUE) = no_number;
  EXPECT_EQ(FACETOR_LINESTART(1, true), "  1: first         : 298.0(10) No value     1");
  EXPECT_EQ(FACETOR_LINESTART(1), "  1: first         : 298.0 No value         1");
}

// ---- summaries of lists ----

TEST_F(PHASES, LIST_NUMBERS_ARE_PLACES_IN_THE_LIST) {
  ADD("a title of more than twenty characters");
  ADD("second");
  ADD("third");
  PHASE(2).PT(PRESSURE, PT_VALUE) = 12.5f;
  PHASE(2).PT(PRESSURE, PT_ESD) = 0.25f;
  ISORT(1) = 3;
  ISORT(3) = 1;
  IUSE(2) = 0;
  // Title 6-25, blank, T 27-32, blank, P 34-40.
  EXPECT_EQ(SAID("", [] { LIST_PHASE(PHASE, 2); }),
            "\n       BLOCKNAME              T       P\n"
            "  1: a title of more than  298.0   0.000\n"
            "  2: second                298.0  12.500\n");
  // P 26-32, its esd 33-39, blank, T 41-46, its esd 47-52.
  EXPECT_EQ(SAID("", [] { LIST_PHASE_ESD(PHASE, 2, 3); }),
            "\n       BLOCKNAME              P    esdP     T    esdT\n"
            "  2: second               12.500  0.250  298.0   1.0\n"
            "  3: third                 0.000  0.000  298.0   1.0\n");
  const std::string none = "\n      There are no crystal structures to list\n";
  EXPECT_EQ(SAID("", [] { LIST_PHASE(PHASE, 0); }), none);
  EXPECT_EQ(SAID("", [] { LIST_PHASE_ESD(PHASE, 2, 1); }), none);
}

TEST_F(PHASES, COLUMNS_OF_LISTS_WIDEN_FOR_LONG_VALUES) {
  ADD("first");
  PHASE(1).PT(TEMPERATURE, PT_VALUE) = 10000.0f;
  PHASE(1).PT(TEMPERATURE, PT_ESD) = no_number;
  PHASE(1).PT(PRESSURE, PT_VALUE) = -1000.0f;
  EXPECT_EQ(SAID("", [] { LIST_PHASE(PHASE, 1); }),
            "\n       BLOCKNAME               T         P\n"
            "  1: first                10000.0 -1000.000\n");
  EXPECT_EQ(SAID("", [] { LIST_PHASE_ESD(PHASE, 1, 1); }),
            "\n       BLOCKNAME                 P    esdP      T       esdT\n"
            "  1: first                -1000.000  0.000 10000.0 No value\n");
}

// ---- cells ----

TEST_F(PHASES, CELLS_IN_BOTH_FORMS_WITHOUT_THE_HIDDEN_BLOCK) {
  ADD("first", MADE({5.1234f, 12.5f, 7.25f}, {91.5f, 100.25f, 119.75f}, "P 1", {{"Si1", {}}},
                    {0.0004f, 0.002f, 0.015f}, {0.02f, 0.03f, 0.5f}));
  ADD("second");
  ADD("third");
  IUSE(2) = 0;
  RUN.LIST_ALL_BLOCKS = false;
  // The volume is set here: its value is the unit cell's business.
  PHASE(1).CELL.CELLVOL = 395.125f;
  PHASE(1).CELL.STDVOL = 0.06f;
  // a 45-53, b 54-62, c 63-71, angles 72-79, 80-87, 88-95, V 96-104.
  EXPECT_EQ(SAID("", [] { FACETOR_LIST_CELLS(); }),
            head + "  a        b        c       alpha   beta    gamma     V\n" + start_1 +
                "   5.1234  12.5000   7.2500  91.500 100.250 119.750  395.125\n" + start_3 +
                "  10.0000  10.0000  10.0000  90.000  90.000  90.000 1000.000\n");
  // Fields from 47, 60, 73, 86, 99, 112 and 125, each text with its blank first; 10 without an esd
  // as 10.0000, 1000 as 1000.00.
  EXPECT_EQ(
      SAID("", [] { FACETOR_LIST_CELLS("esd"); }),
      head + "  a            b            c            alpha        beta         gamma        V\n" +
          esd_start_1 +
          "   5.1234(4)    12.500(2)    7.250(15)    91.50(2)     100.25(3)    119.8(5)     "
          "395.12(6)\n" +
          esd_start_3 +
          "   10.0000      10.0000      10.0000      90.0000      90.0000      90.0000      "
          "1000.00\n");
}

TEST_F(PHASES, CELLS_IN_DISPLAY_ORDER) {
  ADD("first");
  ADD("second");
  PHASE(2).CELL.CELL[0] = 12.5f;
  ISORT(1) = 2;
  ISORT(2) = 1;
  const std::string rest = "  10.0000  10.0000  90.000  90.000  90.000 1000.000\n";
  EXPECT_EQ(ROWS(SAID("", [] { FACETOR_LIST_CELLS(); }), start_2),
            start_2 + "  12.5000" + rest + start_1 + "  10.0000" + rest);
}

TEST_F(PHASES, COLUMNS_WIDEN_FOR_LONG_CELL_VALUES) {
  ADD("first");
  XTAL::CRYSTAL_CELL& cell = PHASE(1).CELL;
  cell.CELL = {12345.5f, 10.0f, no_number};
  cell.CELL_STD = {0.0f, 0.00000012f, 0.0f};
  cell.CELLVOL = 123456.5f;
  // "12345.5000" and "123456.500" have 11 characters with a blank, for 9 columns.
  EXPECT_EQ(ROWS(SAID("", [] { FACETOR_LIST_CELLS(); }), start_1),
            start_1 + " 12345.5000  10.0000 No value  90.000  90.000  90.000 123456.500\n");
  // "10.00000000(12)" has 16 characters with its blank, for the 13 columns 60 to 72. A number
  // without decimals has no point; the tie of 123456.5 goes to the even digit.
  EXPECT_EQ(
      ROWS(SAID("", [] { FACETOR_LIST_CELLS("ESD"); }), esd_start_1),
      esd_start_1 +
          "   12345.5      10.00000000(12) No value      90.0000      90.0000      90.0000      "
          "123456\n");
}
