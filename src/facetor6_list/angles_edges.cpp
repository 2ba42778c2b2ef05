// Angles around a centre and edges of its polyhedron: a column for each pair of ligands.
#include "console_code/console/output.h"
#include "console_code/kva_utilities/columns.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/list_parts.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

struct PAIR {
  int J;
  int K;
};

// What differs between the two tables.
struct PAIR_TABLE {
  std::string_view TITLE;
  std::string_view NONE;
  std::string_view END_WORDS;  // over the last columns of the end value
  ANGLE_COLUMN VALUE;
  ANGLE_COLUMN STD;
  POLYHEDRON_COLUMN END_VALUE;
  int END_WIDTH;
  int END_DECIMALS;
};

constexpr PAIR_TABLE angle_table{"||     ANGLES AROUND CENTRAL ATOM ",
                                 "||     NO ANGLES FOUND FROM CENTRAL ATOM ",
                                 "AngleVar",
                                 ANGLE,
                                 ANGLE_STD,
                                 POLY_VARIANCE,
                                 9,
                                 4};
constexpr PAIR_TABLE edge_table{"||     EDGES AROUND CENTRAL ATOM ",
                                "||     NO EDGES FOUND AROUND CENTRAL ATOM ",
                                " AVERAGE",
                                EDGE,
                                EDGE_STD,
                                POLY_MEAN_EDGE,
                                8,
                                3};

std::vector<PAIR> ALL_PAIRS(int i) {
  std::vector<PAIR> pairs;
  for (int j = 1; j <= REFERENCE().NBONDS(i); ++j)
    for (int k = j + 1; k <= REFERENCE().NBONDS(i); ++k) pairs.push_back({j, k});
  return pairs;
}

// Pairs that are edges: in polyhedra of more than three ligands those across the body are none.
std::vector<PAIR> EDGE_PAIRS(int i) {
  constexpr float diagonal_angle = 146.0f;  // degrees
  const CRYSTAL_STRUCTURE_TYPE& reference = REFERENCE();
  if (reference.NBONDS(i) <= 3) return ALL_PAIRS(i);
  std::vector<PAIR> pairs;
  for (const PAIR& pair : ALL_PAIRS(i))
    if (reference.BANGLES(i, pair.J, pair.K, ANGLE) < diagonal_angle) pairs.push_back(pair);
  return pairs;
}

// Characters of a label beside another: together 7 columns with the "-" between, or 9 with esds,
// of which a label may use what a short one leaves.
int ROOM_BESIDE(const std::string& other, bool esd) {
  constexpr int plain_room = 3;
  constexpr int esd_room = 4;
  if (!esd) return plain_room;
  const bool other_is_short = FIRST_CHARACTERS(other, esd_room - 1) == other;
  return other_is_short ? esd_room + 1 : esd_room;
}

std::string PAIR_LABEL(const std::string& first, const std::string& second, bool esd) {
  return FIRST_CHARACTERS(first, ROOM_BESIDE(second, esd)) + "-" +
         FIRST_CHARACTERS(second, ROOM_BESIDE(first, esd));
}

void WRITE_PAIR_HEAD(int i, const std::vector<PAIR>& pairs, const PAIR_TABLE& table, bool esd) {
  std::vector<std::string> labels;
  std::vector<std::string> first_codes;
  std::vector<std::string> second_codes;
  for (const PAIR& pair : pairs) {
    labels.push_back(PAIR_LABEL(LIGAND_LABEL(i, pair.J), LIGAND_LABEL(i, pair.K), esd));
    first_codes.push_back(LIGAND_CODE(i, pair.J));
    second_codes.push_back(LIGAND_CODE(i, pair.K));
  }
  const int end_width = static_cast<int>(table.END_WORDS.size());
  const int end_column =
      END_COLUMN(static_cast<int>(pairs.size()), esd) + table.END_WIDTH - end_width;
  std::string head = TABLE_HEAD(labels, esd);
  PUT_AT(head, end_column, table.END_WORDS);
  WRITE_OUT(head);
  if (!RUN.LIST_SYMCODES) return;
  WRITE_OUT("|" + CODE_LINE(first_codes, esd, true));
  WRITE_OUT(CODE_LINE(second_codes, esd, false));
}

bool HAS_BOND(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int m) {
  return phase.BONDS.HAS_BOND(i, m);
}

std::string PAIR_ROW(int place, int i, const std::vector<PAIR>& pairs, const PAIR_TABLE& table,
                     bool esd) {
  const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(ISORT(place));
  std::string line;
  if (!START_CENTRE_ROW(place, i, esd, line)) return line;
  int m = 0;
  for (const PAIR& pair : pairs) {
    ++m;
    if (HAS_BOND(phase, i, pair.J) && HAS_BOND(phase, i, pair.K))
      PUT_VALUE(line, m, esd, phase.BANGLES(i, pair.J, pair.K, table.VALUE),
                phase.BANGLES(i, pair.J, pair.K, table.STD), 3);
    else
      PUT_NO_VALUE(line, m, esd);
  }
  PUT_AT(line, END_COLUMN(m, esd),
         REAL_COLUMNS(phase.POLYHEDRON(i, table.END_VALUE), table.END_WIDTH, table.END_DECIMALS));
  return line;
}

void WRITE_PAIR_TABLE(int i, const std::vector<PAIR>& pairs, const PAIR_TABLE& table, bool esd) {
  if (pairs.empty()) return WRITE_OUT(std::string(table.NONE) + REFERENCE().ATOM(i).LAB);
  WRITE_OUT(TABLE_TITLE(table.TITLE, i));
  WRITE_PAIR_HEAD(i, pairs, table, esd);
  for (int place : LISTED_PLACES()) WRITE_OUT(PAIR_ROW(place, i, pairs, table, esd));
}

}  // namespace

void FACETOR_LIST_ANGLES(int i, std::string_view option) {
  WRITE_PAIR_TABLE(i, ALL_PAIRS(i), angle_table, WANTS_ESDS(option));
}

void FACETOR_LIST_EDGES(int i, std::string_view option) {
  WRITE_PAIR_TABLE(i, EDGE_PAIRS(i), edge_table, WANTS_ESDS(option));
}

void FACETOR_LIST_ALL_ANGLES(std::string_view option) {
  FOR_EACH_USED_ATOM(FACETOR_LIST_ANGLES, option);
}

void FACETOR_LIST_ALL_EDGES(std::string_view option) {
  FOR_EACH_USED_ATOM(FACETOR_LIST_EDGES, option);
}

}  // namespace FACETOR_LIST
