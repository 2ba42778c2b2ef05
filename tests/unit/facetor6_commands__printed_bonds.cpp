// Bond lengths with esds against those that the authors of real CIFs printed in their
// _geom_bond_ loops: how many were compared, how many are equal to the last printed digit, and
// what the rest are.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <map>
#include <sstream>

#include "cifcode/cif_code_new/scanner.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_readfiles/readfiles.h"
#include "src/kva_crystal_structures/atom_search.h"
#include "src/kva_crystal_structures/uncertainty.h"

namespace {

namespace fs = std::filesystem;
using namespace KVA_CRYSTAL_STRUCTURES;

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
                            const std::vector<std::string>& operators, VECTOR3& x_frac) {
  x_frac = phase.ATOM(i).X;
  if (code.empty() || code == "." || code == "?") return true;
  const std::size_t bar = code.find('_');
  XTAL::SYM_OP op;
  const std::size_t number = static_cast<std::size_t>(std::atoi(code.c_str()));
  if (number < 1 || number > operators.size()) return false;
  int start = 1;
  XTAL::READ_XSYM(operators[number - 1], start, op.ROT, op.TR);
  if (XTAL::ERR_SYMM) return false;
  x_frac = XTAL::APPLY_OP(op, x_frac);
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
  int NEXT = 0;               // one unit away: rounding of coordinates and cell in print
  int WITHIN_ESD = 0;         // further, but within three printed esds
  int OFF = 0;                // further still: the file's geometry is not of its coordinates
  int ESD_GENERAL = 0;        // esds compared, both atoms on general positions
  int ESD_GENERAL_CLOSE = 0;  // of these, within one unit of the last digit
  int ESD_SPECIAL = 0;
  int ESD_SPECIAL_CLOSE = 0;

  void ADD(const TALLY& other) {
    ROWS += other.ROWS;
    UNREADABLE += other.UNREADABLE;
    COMPARED += other.COMPARED;
    EQUAL += other.EQUAL;
    NEXT += other.NEXT;
    WITHIN_ESD += other.WITHIN_ESD;
    OFF += other.OFF;
    ESD_GENERAL += other.ESD_GENERAL;
    ESD_GENERAL_CLOSE += other.ESD_GENERAL_CLOSE;
    ESD_SPECIAL += other.ESD_SPECIAL;
    ESD_SPECIAL_CLOSE += other.ESD_SPECIAL_CLOSE;
  }
};

int DECIMALS(const std::string& printed) {
  const std::size_t point = printed.find('.');
  if (point == std::string::npos) return 0;
  const std::size_t end = std::min(printed.find('('), printed.size());
  return static_cast<int>(end - point) - 1;
}

bool GENERAL_POSITION(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  return phase.ATOM(i).MULT * phase.SPG.NUMLAT == phase.SPG.MULTIP;
}

void COMPARE_BOND(const CRYSTAL_STRUCTURE_TYPE& phase, const PRINTED& printed,
                  const std::vector<std::string>& operators, TALLY& tally) {
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
  else if (units_off <= 1.51f)
    ++tally.NEXT;
  else if (units_off * unit <= 3.0f * std::max(esd[0], unit))
    ++tally.WITHIN_ESD;
  else
    ++tally.OFF;
  if (esd[0] <= 0.0f || ours.ESD <= 0.0f) return;
  const bool close = std::abs(ours.ESD - esd[0]) / unit <= 1.0f;
  const bool general = GENERAL_POSITION(phase, first) && GENERAL_POSITION(phase, second);
  (general ? tally.ESD_GENERAL : tally.ESD_SPECIAL) += 1;
  if (close) (general ? tally.ESD_GENERAL_CLOSE : tally.ESD_SPECIAL_CLOSE) += 1;
}

// All printed bonds of a file. The reading's own messages go nowhere.
TALLY COMPARE_FILE(const fs::path& path) {
  TALLY tally;
  KVA_UTILITIES::FILE_RECORD file;
  file.NAME = path.string();
  KVA_UTILITIES::FILE_LINES lines;
  std::string message;
  KVA_UTILITIES::READ_FILE(file, lines, message);
  STRUCTURE_LIST phases;
  int nblocks = 0;
  std::ostringstream nowhere;
  std::streambuf* const console = std::cout.rdbuf(nowhere.rdbuf());
  FACETOR_READFILES::READ_CIF_TO_LIST(lines, phases, nblocks);
  std::cout.rdbuf(console);

  LIST<int> starts;
  int count = 0;
  KVA_CIFNEW::FIND_ALL_BLOCKS_CIF(lines, starts, count);
  for (int block = 1; block <= std::min(nblocks, count); ++block) {
    const int start = starts(block);
    const int end = block < count ? starts(block + 1) - 1 : lines.COUNT();
    const std::vector<PRINTED> bonds = PRINTED_BONDS(KVA_CIFNEW::BLOCK_LINES(lines, start, end));
    if (bonds.empty()) continue;
    std::vector<std::string> operators;
    FACETOR_READFILES::READ_CIF_SYMM(lines, start, end, operators);
    SET_ALLATOM_MULTIP(phases(block));
    for (const PRINTED& bond : bonds) COMPARE_BOND(phases(block), bond, operators, tally);
  }
  return tally;
}

std::vector<fs::path> SAMPLE_FILES() {
  std::vector<fs::path> files;
  for (const char* folder : {"cif", "cif-series"}) {
    const fs::path path = fs::path(GEMMARA_SAMPLES) / folder;
    if (!fs::exists(path)) continue;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path))
      if (entry.path().extension() == ".cif") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

void PRINT_TALLY(const std::string& name, const TALLY& t) {
  std::cout << name << ": " << t.ROWS << " rows, " << t.UNREADABLE << " not resolved, "
            << t.COMPARED << " compared; equal " << t.EQUAL << ", one unit off " << t.NEXT
            << ", within 3 esds " << t.WITHIN_ESD << ", off " << t.OFF << "; esds general "
            << t.ESD_GENERAL_CLOSE << " of " << t.ESD_GENERAL << ", special " << t.ESD_SPECIAL_CLOSE
            << " of " << t.ESD_SPECIAL << '\n';
}

}  // namespace

TEST(PRINTED_BONDS, DISTANCES_AND_ESDS_OF_REAL_FILES) {
  const std::vector<fs::path> files = SAMPLE_FILES();
  if (files.empty()) GTEST_SKIP() << "no sample files at " << GEMMARA_SAMPLES;
  TALLY all;
  for (const fs::path& file : files) {
    const TALLY tally = COMPARE_FILE(file);
    if (tally.ROWS == 0) continue;
    PRINT_TALLY(file.filename().string(), tally);
    all.ADD(tally);
  }
  PRINT_TALLY("all files", all);
  EXPECT_GT(all.COMPARED, 2000);
}
