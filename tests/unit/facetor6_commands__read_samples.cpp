// READ on real files: none does harm, and the space groups are those that an independent program
// finds for the same blocks.
#include <gtest/gtest.h>
#include <unistd.h>  // for getpid

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>

#include "places.h"
#include "src/facetor6_readfiles/readfiles.h"

using namespace FACETOR_READFILES;
using namespace KVA_CRYSTAL_STRUCTURES;
namespace fs = std::filesystem;

namespace {

// The blocks of a file, and what was said about them.
STRUCTURE_LIST BLOCKS_OF(const fs::path& path, int& count, std::string& said) {
  std::string bytes;
  EXPECT_TRUE(KVA_UTILITIES::READ_FILE_BYTES(path, bytes));
  STRUCTURE_LIST blocks;
  std::ostringstream console;
  std::streambuf* const old_output = std::cout.rdbuf(console.rdbuf());
  READ_CIF_TO_LIST(bytes, blocks, count);
  std::cout.rdbuf(old_output);
  said = console.str();
  return blocks;
}

bool IS_FINITE(const CRYSTAL_STRUCTURE_TYPE& phase) {
  bool finite = std::isfinite(phase.CELL.CELLVOL);
  for (int i = 1; i <= phase.NATOMS; ++i)
    for (float x : phase.ATOM(i).X) finite = finite && std::isfinite(x);
  return finite;
}

// A block, and the group numbers that the judge finds for its operators and its symbol: 0 for a
// group without a number, -1 for none.
struct JUDGED {
  std::string FILE;
  std::string BLOCK;
  int FROM_OPERATORS = 0;
  int FROM_SYMBOL = 0;
  bool QUOTED = false;  // the operators stand in quotes, without which they are not read
};

std::vector<JUDGED> JUDGED_BLOCKS(const std::vector<fs::path>& files) {
  const std::string in =
      fs::temp_directory_path() / ("gemmara_groups_" + std::to_string(::getpid()) + ".txt");
  const std::string out = in + ".out";
  {
    std::ofstream paths(in);
    for (const fs::path& file : files) paths << file.string() << '\n';
  }
  const std::string command = "/usr/bin/python3 '" + PLACES::SOURCE() +
                              "/tests/judges/cif_group_numbers.py' < " + in + " > " + out;
  EXPECT_EQ(std::system(command.c_str()), 0);
  std::vector<JUDGED> blocks;
  std::ifstream judged(out);
  for (std::string line; std::getline(judged, line);) {
    std::istringstream stream(line);
    std::vector<std::string> field(1);
    while (std::getline(stream, field.back(), '\t')) field.emplace_back();
    if (field.size() < 6 || field[1].starts_with("global")) continue;  // no structure in it
    const std::string block = field[1] == "#" ? "" : field[1];  // how the judge writes no name
    blocks.push_back({field[0], block, std::stoi(field[2]), std::stoi(field[3]), field[4] == "1"});
  }
  fs::remove(in);
  fs::remove(out);
  return blocks;
}

// Blocks whose group is not that of their operators, and the group that they get.
const std::map<std::string, int> other_groups{
    // No blank line ends the list of operators, so that a quoted text further down is taken for one
    // and all fail; the symbol is not quoted, or compact, which leaves P1. 1100977 has "Fddd".
    {"1100845", 1},
    {"1100976", 1},
    {"1100977", 70},
    {"1100978", 1},
    {"I", 1},
    {"imb293", 1},
    {"NiZprime2", 1},
    {"CuZprime2", 1},
    {"FeZprime8", 1},
    {"MgZprime8", 1},
    {"ZnZprime8", 1},
    // A stray ";" hides the heading of the next block, whose operators are the first in the block.
    {"imb2582b", 14}};

}  // namespace

TEST(SAMPLES, EVERY_FILE_IS_READ_OR_REFUSED_WITH_A_SENTENCE) {
  const std::vector<fs::path> files = PLACES::SAMPLE_FILES();
  if (files.empty()) GTEST_SKIP() << "no sample files at " << PLACES::SAMPLES();
  for (const fs::path& file : files) {
    int count = 0;
    std::string said;
    const STRUCTURE_LIST blocks = BLOCKS_OF(file, count, said);
    EXPECT_EQ(blocks.COUNT(), count) << file;
    if (count == 0) {
      EXPECT_NE(said.find("*****WARNING: "), std::string::npos) << file;
    }
    for (const CRYSTAL_STRUCTURE_TYPE& block : blocks) {
      EXPECT_TRUE(IS_FINITE(block)) << file << " " << block.BLOCK_TITLE;
      EXPECT_GT(block.CELL.CELLVOL, 0.0f) << file << " " << block.BLOCK_TITLE;
      EXPECT_GE(block.SPG.MULTIP, 1) << file << " " << block.BLOCK_TITLE;
    }
  }
}

TEST(SAMPLES, GROUPS_ARE_THOSE_THAT_ANOTHER_PROGRAM_FINDS) {
  const std::vector<fs::path> files = PLACES::SAMPLE_FILES();
  if (files.empty()) GTEST_SKIP() << "no sample files at " << PLACES::SAMPLES();
  if (std::system("/usr/bin/python3 -c 'import gemmi' 2>/dev/null") != 0)
    GTEST_SKIP() << "python3-gemmi is not installed";
  std::map<std::string, int> groups;
  std::map<std::string, std::string> said_of;
  for (const fs::path& file : files) {
    int count = 0;
    for (const CRYSTAL_STRUCTURE_TYPE& block : BLOCKS_OF(file, count, said_of[file]))
      groups[file.string() + "\t" + block.BLOCK_TITLE] = block.SPG.NUMSPG;
  }
  int compared = 0;
  int without_symmetry = 0;
  for (const JUDGED& judged : JUDGED_BLOCKS(files)) {
    const std::string name = judged.FILE + "\t" + judged.BLOCK;
    ASSERT_TRUE(groups.contains(name)) << name;
    const int ours = groups.at(name);
    const bool has_operators = judged.FROM_OPERATORS >= 0;
    const auto other = other_groups.find(judged.BLOCK);
    if (other != other_groups.end()) {
      EXPECT_EQ(ours, other->second) << name;
      continue;
    }
    if (!has_operators && judged.FROM_SYMBOL < 0) continue;
    ++compared;
    if (!has_operators || judged.QUOTED) {
      EXPECT_EQ(ours, has_operators ? judged.FROM_OPERATORS : judged.FROM_SYMBOL) << name;
    } else if (ours == 1 && judged.FROM_OPERATORS != 1) {
      ++without_symmetry;
      EXPECT_NE(said_of.at(judged.FILE).find("*****WARNING: No symmetry detected in CIF block #"),
                std::string::npos)
          << name;
    } else {  // the symbol tells the group; it can be right where the list is not
      EXPECT_TRUE(ours == judged.FROM_OPERATORS || ours == judged.FROM_SYMBOL) << name;
    }
  }
  EXPECT_GT(compared, 300);
  std::cout << compared << " blocks compared, of which " << without_symmetry
            << " are read without symmetry: the operators not in quotes, the symbol not of the "
               "tables\n";
}
