// Bond lengths with esds against those that the authors of real CIFs printed in their
// _geom_bond_ loops: how many were compared, how many are equal to the last printed digit, and
// what the rest are.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <map>
#include <set>
#include <sstream>

#include "cifcode/cif_code_new/scanner.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "places.h"
#include "src/facetor6_readfiles/readfiles.h"
#include "src/kva_crystal_structures/atom_search.h"
#include "src/kva_crystal_structures/uncertainty.h"

namespace {

namespace fs = std::filesystem;
using namespace KVA_CRYSTAL_STRUCTURES;

// The operators as the file lists them, with or without quotes and numbers: codes count by them.
std::vector<XTAL::SYM_OP> LISTED_OPERATORS(const KVA_UTILITIES::FILE_LINES& block) {
  std::vector<XTAL::SYM_OP> operators;
  int line = KVA_UTILITIES::FINDLINE(block, "_space_group_symop_operation_xyz", 0, 0);
  if (line == 0) return operators;
  for (++line; line <= block.COUNT(); ++line) {
    std::string text = KVA_UTILITIES::LEFT_ADJUST(block(line));
    if (text.empty() || text[0] == '_' || text.starts_with("loop_")) break;
    std::string rest = text;
    const std::string word = KVA_UTILITIES::CUT_WORD(rest);
    if (word.find_first_not_of("0123456789") == std::string::npos) text = rest;  // its number
    std::erase_if(text, [](char c) { return c == '\'' || c == '"'; });
    XTAL::SYM_OP op;
    int start = 1;
    XTAL::READ_XSYM(text, start, op.ROT, op.TR);
    if (!XTAL::ERR_SYMM) operators.push_back(op);
  }
  return operators;
}

// How far the printed coordinates of a site can lie from what the authors had, in cells: half a
// unit of the last digit. A short coordinate such as 0.25 is taken for exact.
using ROUNDINGS = std::map<std::string, VECTOR3>;

float ROUNDING_OF(const std::string& printed) {
  constexpr int least_decimals = 3;
  const std::size_t point = printed.find('.');
  if (point == std::string::npos) return 0.0f;
  const std::size_t end = std::min(printed.find('('), printed.size());
  const int decimals = static_cast<int>(end - point) - 1;
  return decimals < least_decimals ? 0.0f : 0.5f * std::pow(10.0f, static_cast<float>(-decimals));
}

ROUNDINGS COORDINATE_ROUNDINGS(const KVA_UTILITIES::FILE_LINES& block) {
  KVA_CIFNEW::CIFDATA_TYPE loop;
  loop.KEY = "_atom_site_";
  const std::array<const char*, 4> names{"_atom_site_label", "_atom_site_fract_x",
                                         "_atom_site_fract_y", "_atom_site_fract_z"};
  loop.NLABELS = static_cast<int>(names.size());
  for (int i = 1; i <= loop.NLABELS; ++i) {
    loop.LABELS(i) = names[static_cast<std::size_t>(i - 1)];
    loop.VTYPE(i) = 'C';
  }
  KVA_UTILITIES::FILE_LINES lines = block;
  KVA_CIFNEW::READ_LOOP_CIF(lines, loop);
  ROUNDINGS roundings;
  for (int row = 1; row <= loop.N; ++row)
    roundings[KVA_UTILITIES::LEFT_ADJUST(loop.CVAL(row, 1))] = {ROUNDING_OF(loop.CVAL(row, 2)),
                                                                ROUNDING_OF(loop.CVAL(row, 3)),
                                                                ROUNDING_OF(loop.CVAL(row, 4))};
  return roundings;
}

// One printed bond.
struct PRINTED {
  std::string LABEL_1;
  std::string LABEL_2;
  std::string DISTANCE;  // as printed, "1.234(5)"
  std::string CODE_1;
  std::string CODE_2;
};

std::vector<PRINTED> PRINTED_BONDS(const KVA_UTILITIES::FILE_LINES& block) {
  KVA_CIFNEW::CIFDATA_TYPE loop;
  loop.KEY = "_geom_bond_";
  const std::array<const char*, 5> names{
      "_geom_bond_atom_site_label_1", "_geom_bond_atom_site_label_2", "_geom_bond_distance",
      "_geom_bond_site_symmetry_1", "_geom_bond_site_symmetry_2"};
  loop.NLABELS = static_cast<int>(names.size());
  for (int i = 1; i <= loop.NLABELS; ++i) {
    loop.LABELS(i) = names[static_cast<std::size_t>(i - 1)];
    loop.VTYPE(i) = 'C';
  }
  KVA_UTILITIES::FILE_LINES lines = block;
  KVA_CIFNEW::READ_LOOP_CIF(lines, loop);
  std::vector<PRINTED> bonds;
  for (int row = 1; row <= loop.N; ++row)
    bonds.push_back({KVA_UTILITIES::LEFT_ADJUST(loop.CVAL(row, 1)),
                     KVA_UTILITIES::LEFT_ADJUST(loop.CVAL(row, 2)),
                     KVA_UTILITIES::LEFT_ADJUST(loop.CVAL(row, 3)),
                     KVA_UTILITIES::LEFT_ADJUST(loop.CVAL(row, 4)),
                     KVA_UTILITIES::LEFT_ADJUST(loop.CVAL(row, 5))});
  return bonds;
}

int FIND_LABEL(const CRYSTAL_STRUCTURE_TYPE& phase, const std::string& label) {
  for (int i = 1; i <= phase.NATOMS; ++i)
    if (phase.ATOM(i).LAB == label) return i;
  return 0;
}

// Position of atom i under a code such as 3_655, which counts the operators as the file lists them.
bool COORDINATES_UNDER_CODE(const CRYSTAL_STRUCTURE_TYPE& phase, int i, const std::string& code,
                            const std::vector<XTAL::SYM_OP>& operators, VECTOR3& x_frac) {
  x_frac = phase.ATOM(i).X;
  if (code.empty() || code == "." || code == "?") return true;
  const std::size_t bar = code.find('_');
  const std::size_t number = static_cast<std::size_t>(std::atoi(code.c_str()));
  if (number < 1 || number > operators.size()) return false;
  x_frac = XTAL::APPLY_OP(operators[number - 1], x_frac);
  if (bar == std::string::npos) return true;
  if (code.size() != bar + 4) return false;
  for (std::size_t k = 0; k < 3; ++k) x_frac[k] += static_cast<float>(code[bar + 1 + k] - '5');
  return true;
}

struct TALLY {
  int ROWS = 0;        // printed rows
  int UNREADABLE = 0;  // label, code or value that names nothing here
  int COMPARED = 0;
  int EQUAL = 0;              // to the last printed digit
  int ROUNDED = 0;            // as close as the rounding of the printed coordinates allows
  int WITHIN_ESD = 0;         // further, but within three printed esds
  int OFF = 0;                // further still: the file's geometry is not of its coordinates
  int ESD_GENERAL = 0;        // esds compared, both atoms on general positions
  int ESD_GENERAL_CLOSE = 0;  // of these, within one unit of the last digit
  int ESD_SPECIAL = 0;
  int ESD_SPECIAL_CLOSE = 0;
  std::vector<float> ESD_RATIO;  // our esd over the printed one

  void ADD(const TALLY& other) {
    ROWS += other.ROWS;
    UNREADABLE += other.UNREADABLE;
    COMPARED += other.COMPARED;
    EQUAL += other.EQUAL;
    ROUNDED += other.ROUNDED;
    WITHIN_ESD += other.WITHIN_ESD;
    OFF += other.OFF;
    ESD_GENERAL += other.ESD_GENERAL;
    ESD_GENERAL_CLOSE += other.ESD_GENERAL_CLOSE;
    ESD_SPECIAL += other.ESD_SPECIAL;
    ESD_SPECIAL_CLOSE += other.ESD_SPECIAL_CLOSE;
    ESD_RATIO.insert(ESD_RATIO.end(), other.ESD_RATIO.begin(), other.ESD_RATIO.end());
  }
};

int DECIMALS(const std::string& printed) {
  const std::size_t point = printed.find('.');
  if (point == std::string::npos) return 0;
  const std::size_t end = std::min(printed.find('('), printed.size());
  return static_cast<int>(end - point) - 1;
}

// Largest change of a distance by the rounding of the coordinates of both atoms, angstroms.
float ALLOWANCE(const CRYSTAL_STRUCTURE_TYPE& phase, const PRINTED& printed,
                const ROUNDINGS& roundings) {
  float sum = 0.0f;
  for (const std::string& label : {printed.LABEL_1, printed.LABEL_2})
    for (std::size_t k = 0; k < 3; ++k) sum += roundings.at(label)[k] * phase.CELL.CELL[k];
  return sum;
}

bool GENERAL_POSITION(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  return phase.ATOM(i).MULT * phase.SPG.NUMLAT == phase.SPG.MULTIP;
}

void COMPARE_BOND(const CRYSTAL_STRUCTURE_TYPE& phase, const PRINTED& printed,
                  const std::vector<XTAL::SYM_OP>& operators, const ROUNDINGS& roundings,
                  TALLY& tally) {
  ++tally.ROWS;
  const int first = FIND_LABEL(phase, printed.LABEL_1);
  const int second = FIND_LABEL(phase, printed.LABEL_2);
  VECTOR3 x1{};
  VECTOR3 x2{};
  std::array<float, 1> value{};
  std::array<float, 1> esd{};
  int count = 0;
  KVA_UTILITIES::GETNUM_STD(printed.DISTANCE, value, esd, count);
  if (first == 0 || second == 0 || count != 1 || value[0] <= 0.0f ||
      !COORDINATES_UNDER_CODE(phase, first, printed.CODE_1, operators, x1) ||
      !COORDINATES_UNDER_CODE(phase, second, printed.CODE_2, operators, x2)) {
    ++tally.UNREADABLE;
    return;
  }
  const VALUE_ESD ours = DISTANCE_AND_SIGMA_VCV(phase, x1, x2);
  const float unit = std::pow(10.0f, static_cast<float>(-DECIMALS(printed.DISTANCE)));
  const float units_off = std::abs(ours.VALUE - value[0]) / unit;
  ++tally.COMPARED;
  if (units_off <= 0.51f)
    ++tally.EQUAL;
  else if (units_off <= 0.51f + ALLOWANCE(phase, printed, roundings) / unit)
    ++tally.ROUNDED;
  else if (units_off * unit <= 3.0f * std::max(esd[0], unit))
    ++tally.WITHIN_ESD;
  else
    ++tally.OFF;
  if (esd[0] <= 0.0f || ours.ESD <= 0.0f) return;
  const bool close = std::abs(ours.ESD - esd[0]) / unit <= 1.0f;
  tally.ESD_RATIO.push_back(ours.ESD / esd[0]);
  const bool general = GENERAL_POSITION(phase, first) && GENERAL_POSITION(phase, second);
  (general ? tally.ESD_GENERAL : tally.ESD_SPECIAL) += 1;
  if (close) (general ? tally.ESD_GENERAL_CLOSE : tally.ESD_SPECIAL_CLOSE) += 1;
}

// All printed bonds of a file. The reading's own messages go nowhere.
TALLY COMPARE_FILE(const fs::path& path) {
  TALLY tally;
  std::string bytes;
  KVA_UTILITIES::READ_FILE_BYTES(path.string(), bytes);
  STRUCTURE_LIST phases;
  int nblocks = 0;
  std::ostringstream nowhere;
  std::streambuf* const console = std::cout.rdbuf(nowhere.rdbuf());
  FACETOR_READFILES::READ_CIF_TO_LIST(bytes, phases, nblocks);
  std::cout.rdbuf(console);

  int block = 0;
  KVA_UTILITIES::FILE_LINES block_lines;
  for (std::string_view text : KVA_CIFNEW::BLOCKS_OF_CIF(bytes)) {
    if (++block > nblocks) break;
    KVA_CIFNEW::CLEAN_LINES_OF(text, block_lines);
    const std::vector<PRINTED> bonds = PRINTED_BONDS(block_lines);
    if (bonds.empty()) continue;
    const std::vector<XTAL::SYM_OP> operators = LISTED_OPERATORS(block_lines);
    const ROUNDINGS roundings = COORDINATE_ROUNDINGS(block_lines);
    SET_ALLATOM_MULTIP(phases(block));
    for (const PRINTED& bond : bonds)
      COMPARE_BOND(phases(block), bond, operators, roundings, tally);
  }
  return tally;
}

float MEDIAN(std::vector<float> values) {
  if (values.empty()) return 0.0f;
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void PRINT_TALLY(const std::string& name, const TALLY& t) {
  std::cout << name << ": " << t.ROWS << " rows, " << t.UNREADABLE << " not resolved, "
            << t.COMPARED << " compared; equal " << t.EQUAL
            << ", within the rounding of the coordinates " << t.ROUNDED << ", within 3 esds "
            << t.WITHIN_ESD << ", off " << t.OFF << "; esds general " << t.ESD_GENERAL_CLOSE
            << " of " << t.ESD_GENERAL << ", special " << t.ESD_SPECIAL_CLOSE << " of "
            << t.ESD_SPECIAL << ", median ratio of the esds " << MEDIAN(t.ESD_RATIO) << '\n';
}

}  // namespace

// Bonds that do not follow from the coordinates as they are read. om4005498: a text field hides the
// heading of the second block, so its bonds are taken with the cell of the first. Burford and
// b002906h: an independent calculation finds the same rows off; in the latter a label stands twice.
// P21c: the label C83' loses its apostrophe and is taken for C83.
const std::map<std::string, int> not_of_the_coordinates{
    {"om4005498_si_003-filtered.cif", 45},
    {"Burford_2000_p152_crude.cif", 5},
    {"b002906h-problems-with-merged-biblio.cif", 4},
    {"P21c-final.cif", 3},
    {"P21c.cif", 3}};

// Files whose printed esds were not made with the full covariance matrix of the refinement, so that
// ours must be the same; in the others correlations and unprinted digits make the difference.
const std::set<std::string> without_full_matrix{"1518798.cif", "4300015.cif", "p-1_a.cif"};

TEST(PRINTED_BONDS, DISTANCES_AND_ESDS_OF_REAL_FILES) {
  const std::vector<fs::path> files = PLACES::SAMPLE_FILES();
  if (files.empty()) GTEST_SKIP() << "no sample files at " << PLACES::SAMPLES();
  TALLY all;
  for (const fs::path& file : files) {
    const std::string name = file.filename();
    const TALLY tally = COMPARE_FILE(file);
    if (tally.ROWS == 0) continue;
    PRINT_TALLY(name, tally);
    const auto known = not_of_the_coordinates.find(name);
    EXPECT_EQ(tally.OFF, known == not_of_the_coordinates.end() ? 0 : known->second) << name;
    if (without_full_matrix.contains(name)) {
      EXPECT_EQ(tally.ESD_GENERAL_CLOSE, tally.ESD_GENERAL) << name;
      EXPECT_GT(tally.ESD_GENERAL, 0) << name;
    }
    all.ADD(tally);
  }
  PRINT_TALLY("all files", all);
  EXPECT_GT(all.COMPARED, 4800);
  EXPECT_GE(all.EQUAL + all.ROUNDED, all.COMPARED - 70);
  EXPECT_NEAR(MEDIAN(all.ESD_RATIO), 1.1f, 0.05f) << "full matrices make esds a tenth smaller";
}
