// The words, blocks, items and loops of a CIF by the whole grammar: each kind of syntax in a small
// file, with the reading that the grammar of CIF 1.1 gives it, and each fault with its line.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "cifcode/cif_full/tree.h"

namespace {

using namespace KVA_CIFFULL;

// The words of a text: name _a, bare 5, quoted x y, loop, data a ...
std::string WORDS(std::string_view bytes) {
  static constexpr std::array<std::string_view, 11> kinds{
      "name", "bare", "quoted", "field", "list", "loop", "data", "save", "global", "stop", "end"};
  TOKENS tokens = TOKENS_OF(bytes);
  std::string words;
  while (true) {
    std::string_view text;
    const TOKEN token = NEXT_TOKEN(tokens, text);
    if (token == TOKEN::END) return words;
    if (!words.empty()) words += "; ";
    words += kinds[static_cast<std::size_t>(token)];
    if (!text.empty()) words += " " + std::string(text);
  }
}

TEST(WORDS_OF_A_CIF, NAMES_VALUES_AND_RESERVED_WORDS_IN_ANY_LETTERS) {
  EXPECT_EQ(WORDS("DATA_x loop_ LOOP_ _A 1.0 Save_f save_ GLOBAL_ Stop_"),
            "data x; loop; loop; name _A; bare 1.0; save f; save; global; stop");
  EXPECT_EQ(WORDS("data_ data_global"), "data; data global");
  EXPECT_EQ(WORDS("loop_x dat_a global_1 stop_it"),
            "bare loop_x; bare dat_a; bare global_1; bare stop_it");
}

TEST(WORDS_OF_A_CIF, QUOTES_END_WHERE_A_BLANK_FOLLOWS) {
  EXPECT_EQ(WORDS("'it's' \"a\"b\" 'x' "), "quoted it's; quoted a\"b; quoted x");
  EXPECT_EQ(WORDS("O1' \"O 2''\" ''"), "bare O1'; quoted O 2''; quoted");
  EXPECT_EQ(WORDS("'#'#no # comment 'x'\n5"), "quoted #'#no # comment 'x; bare 5");
}

TEST(WORDS_OF_A_CIF, TEXTS_BETWEEN_SEMICOLONS) {
  EXPECT_EQ(WORDS("_a\n;one\n two; three\n;\n_b 2"),
            "name _a; field one\n two; three; name _b; bare 2");
  EXPECT_EQ(WORDS("_a ;b ; c"), "name _a; bare ;b; bare ;; bare c");  // not at a line's start
  EXPECT_EQ(WORDS(";x\r\ny\r\n;\r\n5"), "field x\r\ny\r; bare 5");
  EXPECT_EQ(WORDS(";\n;"), "field");
  EXPECT_EQ(WORDS("_a\n;one\n_b 2"), "name _a; field one; name _b; bare 2");  // never ends
}

TEST(WORDS_OF_A_CIF, COMMENTS_BEGIN_WHERE_A_WORD_WOULD) {
  EXPECT_EQ(WORDS("a#b #c d\ne"), "bare a#b; bare e");
  EXPECT_EQ(WORDS("#"), "");
}

TEST(WORDS_OF_A_CIF, LINE_ENDS_TABS_AND_CONTROL_CHARACTERS_DIVIDE) {
  EXPECT_EQ(WORDS("_a\r1\r\n_b\t2\f\x1a"), "name _a; bare 1; name _b; bare 2");
  EXPECT_EQ(WORDS(std::string_view("_a\0001", 4)), "name _a; bare 1");
  EXPECT_EQ(WORDS("\xEF\xBB\xBF"
                  "data_a"),
            "data a");
  EXPECT_EQ(WORDS("\xEF\xBB\xBF;x\n;"), "field x");
}

TEST(WORDS_OF_A_CIF, CIF2_HAS_LISTS_TABLES_AND_TRIPLE_QUOTES) {
  const std::string cif2 = "#\\#CIF_2.0\n";
  EXPECT_EQ(WORDS(cif2 + "_a [1 [2 '] '] {'k':3}] _b {\"x\":[1]} 5"),
            "name _a; list [; name _b; list {; bare 5");
  EXPECT_EQ(WORDS(cif2 + "'''a'\nb''' \"\"\"c\"\"\" 6"), "quoted a'\nb; quoted c; bare 6");
  EXPECT_EQ(WORDS("_a [1 2]"), "name _a; bare [1; bare 2]");  // CIF 1.1 has none
}

// ---- blocks ----

std::string COLUMN_TEXT(const COLUMN& column) {
  std::string text;
  for (int row = 1; row <= column.ROWS; ++row)
    text += (row > 1 ? "," : "") + (IS_NULL(column(row)) ? "-" : std::string(column(row).TEXT()));
  return text;
}

// The names of a block that structures need with their values, then its faults by line.
std::string BLOCK_TEXT(const BLOCK& block, std::string_view bytes) {
  static constexpr std::array<std::string_view, FAULT_KINDS> words{
      "no block",   "stray word", "no value",  "no names",   "no values",  "uneven",
      "open quote", "open field", "open list", "open frame", "name twice", "reserved"};
  std::string text = "{" + std::string(block.NAME);
  for (int name = 0; name < NAME_COUNT; ++name)
    if (block.PLACES[static_cast<std::size_t>(name)].SLOT >= 0)
      text += " " + std::string(NAMES[static_cast<std::size_t>(name)].NAME.substr(1)) + "=" +
              COLUMN_TEXT(COLUMN_OF(block, name));
  for (std::size_t kind = 0; kind < FAULT_KINDS; ++kind) {
    const FAULT& fault = block.FOUND.KINDS[kind];
    if (fault.COUNT > 0)
      text += " !" + std::string(words[kind]) + " line " +
              std::to_string(LINE_NUMBER(bytes, fault.AT)) + " x" + std::to_string(fault.COUNT);
  }
  return text + "}";
}

std::string BLOCKS(std::string_view bytes) {
  READER reader = READER_OF(bytes);
  BLOCK block;
  std::string text;
  while (NEXT_BLOCK(reader, block)) text += BLOCK_TEXT(block, reader.SOURCE.BYTES);
  return text;
}

TEST(BLOCKS_OF_A_CIF, ITEMS_STAND_ANYWHERE_ON_THEIR_LINES) {
  EXPECT_EQ(
      BLOCKS("data_a _cell_length_a\n\n 5.1 _cell_length_b 6 _other 'x y' _CELL_LENGTH_C\n;7\n;\n"),
      "{a cell_length_a=5.1 cell_length_b=6 cell_length_c=7}");
  EXPECT_EQ(BLOCKS("data_a _cell.length_a ? _cell_length_b . _cell_length_c '?'"),
            "{a cell_length_a=- cell_length_b=- cell_length_c=?}");
}

TEST(BLOCKS_OF_A_CIF, LOOPS_STAND_ON_ANY_NUMBER_OF_LINES) {
  EXPECT_EQ(BLOCKS("data_a loop_ _atom_site_label _x _atom_site_fract_x A 1 0.1 B\n2\n0.2 "
                   "_cell_length_a 5 data_b"),
            "{a cell_length_a=5 atom_site_label=A,B atom_site_fract_x=0.1,0.2}{b}");
  EXPECT_EQ(BLOCKS("data_a loop_ _x _y 1 2 loop_ _atom_site_label A"), "{a atom_site_label=A}");
}

TEST(BLOCKS_OF_A_CIF, FRAMES_ARE_NO_PART_OF_THE_STRUCTURE) {
  EXPECT_EQ(BLOCKS("data_a save_f _cell_length_a 9 loop_ _x 1 2 save_ _cell_length_a 5"),
            "{a cell_length_a=5}");
  EXPECT_EQ(BLOCKS("data_a\nsave_f\n_cell_length_a 9\ndata_b _cell_length_a 5"),
            "{a !open frame line 2 x1}{b cell_length_a=5}");
}

TEST(BLOCKS_OF_A_CIF, A_BLOCK_NEEDS_NO_NAME) {
  EXPECT_EQ(BLOCKS("data_ _cell_length_a 5 global_ _cell_length_a 6"),
            "{ cell_length_a=5}{global cell_length_a=6}");
  EXPECT_EQ(BLOCKS("\n_cell_length_a 5\ndata_b"), "{ cell_length_a=5 !no block line 2 x1}{b}");
  EXPECT_EQ(BLOCKS(""), "");
}

// Each fault is told with the line of the first and how many there are, and the rest is read.
TEST(FAULTS_OF_A_CIF, ARE_TOLD_WITH_THEIR_LINES) {
  EXPECT_EQ(BLOCKS("data_a\n_cell_length_a 5 stray\nwords _cell_length_b 6"),
            "{a cell_length_a=5 cell_length_b=6 !stray word line 2 x2}");
  EXPECT_EQ(BLOCKS("data_a\n_cell_length_a\n_cell_length_b 6\n_x"),
            "{a cell_length_b=6 !no value line 2 x2}");
  EXPECT_EQ(BLOCKS("data_a\nloop_ 1 2\n_cell_length_b 6"),
            "{a cell_length_b=6 !stray word line 2 x2 !no names line 2 x1}");
  EXPECT_EQ(BLOCKS("data_a loop_\n_atom_site_label\nloop_ _x 1"),
            "{a atom_site_label= !no values line 2 x1}");
  EXPECT_EQ(BLOCKS("data_a\n_cell_length_a 'five\n_cell_length_b 6"),
            "{a cell_length_a=five cell_length_b=6 !open quote line 2 x1}");
  EXPECT_EQ(BLOCKS("data_a _x\n;one\n two\n_cell_length_b 6\n"),
            "{a cell_length_b=6 !open field line 2 x1}");
  EXPECT_EQ(BLOCKS("#\\#CIF_2.0\ndata_a _x [1 2\n_cell_length_b 6\n"),
            "{a cell_length_b=6 !open list line 2 x1}");
  EXPECT_EQ(BLOCKS("data_a\n_cell_length_a 5\n_Cell.Length_A 6"),
            "{a cell_length_a=5 !name twice line 3 x1}");
  EXPECT_EQ(BLOCKS("data_a stop_ _cell_length_b 6 save_"),
            "{a cell_length_b=6 !reserved line 1 x2}");
  EXPECT_EQ(BLOCKS("data_a\r_cell_length_a\r_x 5"), "{a !no value line 2 x1}");
}

// A row with too few or too many values is left out where rows are lines; where they are not, the
// whole rows from the start are kept.
TEST(FAULTS_OF_A_CIF, AN_UNEVEN_LOOP_KEEPS_ITS_WHOLE_ROWS) {
  const std::string head = "data_a\nloop_ _atom_site_label _atom_site_fract_x\n";
  EXPECT_EQ(BLOCKS(head + "A 1\nB\nC 3\n"),
            "{a atom_site_label=A,C atom_site_fract_x=1,3 !uneven line 4 x1}");
  EXPECT_EQ(BLOCKS(head + "A 1\nB 2 2\nC 3\n"),
            "{a atom_site_label=A,C atom_site_fract_x=1,3 !uneven line 4 x1}");
  EXPECT_EQ(BLOCKS(head + "A 1\nB 2\nC\n_x 1"),
            "{a atom_site_label=A,B atom_site_fract_x=1,2 !uneven line 5 x1}");
  EXPECT_EQ(BLOCKS(head + "A 1 B 2 C"),
            "{a atom_site_label=A,B atom_site_fract_x=1,2 !uneven line 3 x1}");
  for (const std::string first : {"A 1 1", "A"})
    EXPECT_EQ(BLOCKS(head + first + "\nB 2\nC 3\n"),
              "{a atom_site_label=B,C atom_site_fract_x=2,3 !uneven line 3 x1}");
  // Rows of two lines, the second of which lacks its second line.
  EXPECT_EQ(BLOCKS("data_a\nloop_ _atom_site_label _x _atom_site_fract_x\nA 1\n1\nB 2\nC 3\n3\n"),
            "{a atom_site_label=A,C atom_site_fract_x=1,3 !uneven line 5 x1}");
}

TEST(FAULTS_OF_A_CIF, A_UNIT_BEHIND_A_TEMPERATURE_IS_NONE) {
  READER reader = READER_OF("data_a _diffrn_ambient_temperature 150 K _cell_length_a 5 A");
  BLOCK block;
  ASSERT_TRUE(NEXT_BLOCK(reader, block));
  EXPECT_EQ(block.ITEMS.at(0).BEHIND, "K");
  EXPECT_EQ(block.FOUND.KINDS[STRAY_WORD].COUNT, 1);
  EXPECT_EQ(block.FOUND.KINDS[STRAY_WORD].TEXT, "A");
}

// ---- files that mean harm ----

double SECONDS_FOR(const std::string& bytes) {
  const auto start = std::chrono::steady_clock::now();
  READER reader = READER_OF(bytes);
  BLOCK block;
  while (NEXT_BLOCK(reader, block)) {
  }
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

std::string REPEATED(std::string_view text, int n) {
  std::string all;
  for (int i = 0; i < n; ++i) all += text;
  return all;
}

// Ten times as much takes about ten times as long: the bound leaves room for a busy machine and
// would be passed a hundredfold by anything that goes through the file again for each fault.
TEST(DAMAGED_FILES, TAKE_TIME_IN_PROPORTION) {
  constexpr int many = 100000;
  constexpr double bound = 5.0;  // seconds
  EXPECT_LT(SECONDS_FOR("data_a " + REPEATED("_x 'open\n", many)), bound);
  EXPECT_LT(SECONDS_FOR("data_a " + REPEATED("'open ", many)), bound);
  EXPECT_LT(SECONDS_FOR("#\\#CIF_2.0\ndata_a " + REPEATED("_x [ 1\n", many)), bound);
  EXPECT_LT(SECONDS_FOR("#\\#CIF_2.0\ndata_a " + REPEATED("_x '''a\n", many)), bound);
  EXPECT_LT(SECONDS_FOR("data_a " + REPEATED("save_f\n", many)), bound);
  EXPECT_LT(SECONDS_FOR("data_a " + REPEATED("loop_\n", many)), bound);
  EXPECT_LT(SECONDS_FOR("data_a loop_ " + REPEATED("_x\n", many) + REPEATED("1 2 3\n", many)),
            bound);
  EXPECT_LT(SECONDS_FOR("data_a loop_ _atom_site_label _x " + REPEATED("A\nB C\n", many) + "D"),
            bound);
  EXPECT_LT(SECONDS_FOR("data_a _x\n" + REPEATED("; text\n", many)), bound);
  EXPECT_LT(SECONDS_FOR(REPEATED("data_a\n", many)), bound);
  EXPECT_LT(SECONDS_FOR("data_a _cell_length_a " + std::string(10 * many, 'x')), bound);
}

}  // namespace
