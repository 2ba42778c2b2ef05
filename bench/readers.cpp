// One file read to records by each reader in turns: READ full, READ cif with its check, and gemmi's
// C++ library into small structures. readers FILE TURNS prints the mean CPU time of one reading by
// each, in ms, and its share of gemmi's.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <gemmi/cif.hpp>
#include <gemmi/smcif.hpp>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <string_view>
#include <vector>

#include "src/facetor6_readfiles/readfiles.h"

namespace {

using namespace KVA_UTILITIES;
using namespace FACETOR_READFILES;

enum READER { GEMMI, FULL, PLAIN, PLAIN_CHECKED, READERS };
constexpr std::array<std::string_view, READERS> reader_names{
    "gemmi", "READ full", "READ cif without check", "READ cif"};  // ORDER READER

int READ_BY_GEMMI(const std::string& name) {
  const gemmi::cif::Document document = gemmi::cif::read_file(name);
  std::vector<gemmi::SmallStructure> structures;
  for (const gemmi::cif::Block& block : document.blocks)
    structures.push_back(gemmi::make_small_structure_from_block(block));
  return static_cast<int>(structures.size());
}

int READ_BY_FULL(const std::string& name) {
  std::string bytes;
  STRUCTURE_LIST blocks;
  int count = 0;
  READ_FILE_BYTES(name, bytes);
  READ_FULL_TO_LIST(bytes, blocks, count);
  return count;
}

int READ_BY_PLAIN(const std::string& name, bool checked) {
  std::string bytes;
  STRUCTURE_LIST blocks;
  int count = 0;
  READ_FILE_BYTES(name, bytes);
  READ_CIF_TO_LIST(bytes, blocks, count);
  if (checked) CHECK_PLAIN_READING(bytes, blocks);
  return count;
}

int READ_BY(int reader, const std::string& name) {
  switch (reader) {
    case GEMMI:
      return READ_BY_GEMMI(name);
    case FULL:
      return READ_BY_FULL(name);
    default:
      return READ_BY_PLAIN(name, reader == PLAIN_CHECKED);
  }
}

double CPU_SECONDS() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return EXIT_FAILURE;
  const std::string name = argv[1];
  const int turns = std::max(std::atoi(argv[2]), 1);
  std::ostringstream said;  // what the readers tell the user
  std::streambuf* const console = std::cout.rdbuf(said.rdbuf());
  std::array<double, READERS> seconds{};
  int blocks = READ_BY(GEMMI, name);  // from now on the file is in memory
  for (int turn = 0; turn < turns; ++turn)
    for (int reader = 0; reader < READERS; ++reader) {
      const double start = CPU_SECONDS();
      blocks = READ_BY(reader, name);
      seconds[static_cast<std::size_t>(reader)] += CPU_SECONDS() - start;
    }
  std::cout.rdbuf(console);
  std::cout << blocks << " blocks" << std::fixed << std::setprecision(3);
  for (std::size_t reader = 0; reader < READERS; ++reader)
    std::cout << "; " << reader_names[reader] << ' ' << 1000.0 * seconds[reader] / turns << " ms ("
              << std::setprecision(2) << seconds[reader] / seconds[GEMMI] << ')'
              << std::setprecision(3);
  std::cout << '\n';
}
