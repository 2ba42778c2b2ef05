// The same file read by gemmi's C++ library into small structures: what READ is measured against.
// gemmi_reader FILE REPEATS reads it so often and prints the mean CPU time of one reading, as the
// cases have it.
#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <gemmi/cif.hpp>
#include <gemmi/smcif.hpp>
#include <iostream>
#include <vector>

namespace {

double CPU_SECONDS() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

std::size_t READ(const char* name) {
  const gemmi::cif::Document document = gemmi::cif::read_file(name);
  std::vector<gemmi::SmallStructure> structures;
  for (const gemmi::cif::Block& block : document.blocks)
    structures.push_back(gemmi::make_small_structure_from_block(block));
  return structures.size();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return EXIT_FAILURE;
  const int repeats = std::max(std::atoi(argv[2]), 1);
  std::size_t blocks = READ(argv[1]);  // from now on the file is in memory
  const double start = CPU_SECONDS();
  for (int repeat = 0; repeat < repeats; ++repeat) blocks = READ(argv[1]);
  std::cout << blocks << " blocks, " << (CPU_SECONDS() - start) / repeats << " s\n";
}
