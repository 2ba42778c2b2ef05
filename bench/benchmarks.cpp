// How fast the commands work on long series, and the neighbour search against the plain loops.
// Every case runs the command itself, dialogue and report included; what it says goes to a file.
#include <benchmark/benchmark.h>
#include <malloc.h>  // for mallinfo2

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "bench/series.h"
#include "console_code/console/input.h"
#include "console_code/console/state.h"
#include "console_code/kva_utilities/files.h"
#include "src/facetor6_calc/calc.h"
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"
#include "src/facetor6_exportfiles/exportfiles.h"
#include "src/facetor6_list/list.h"
#include "src/facetor6_readfiles/readfiles.h"
#include "src/facetor6_sheets/csv.h"
#include "src/facetor6_writefiles/writefiles.h"
#include "src/kva_crystal_structures/atom_search.h"
#include "src/kva_crystal_structures/bonds.h"
#include "src/kva_crystal_structures/uncertainty.h"
#include "tests/unit/plain_loops.h"

namespace {

namespace fs = std::filesystem;
using namespace FACETOR_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;

// ---- dialogues ----

fs::path FOLDER() {
  static const fs::path folder = [] {
    const fs::path made = fs::temp_directory_path() / "gemmara_bench";
    fs::create_directories(made);
    return made;
  }();
  return folder;
}

// Runs a command with the input lines; what it says goes to a file.
template <class COMMAND>
void RUN_DIALOGUE(const std::string& lines, COMMAND command) {
  static std::ofstream said(FOLDER() / "said.txt");
  said.seekp(0);
  std::istringstream input(lines);
  std::streambuf* const old_input = std::cin.rdbuf(input.rdbuf());
  std::streambuf* const old_output = std::cout.rdbuf(said.rdbuf());
  KVA_CONSOLE::CLEAR_INPUT();
  command();
  std::cin.rdbuf(old_input);
  std::cout.rdbuf(old_output);
}

// ---- series ----

std::string KIND(const benchmark::State& state) {
  return std::string(BENCH::SERIES_KINDS()[static_cast<std::size_t>(state.range(0))]);
}

int BLOCKS(const benchmark::State& state) {
  return static_cast<int>(state.range(1));
}

// The file with the series, made when it is first asked for.
fs::path SERIES_FILE(const std::string& kind, int blocks) {
  const fs::path path = FOLDER() / (kind + "-" + std::to_string(blocks) + ".cif");
  if (!fs::exists(path)) std::ofstream(path) << BENCH::SERIES_TEXT(kind, blocks);
  return path;
}

void READ_SERIES(const std::string& kind, int blocks) {
  ALLOCATE_PHASE_LIST(START_PHASES);
  CLEAR_FACETOR_VALENCE();
  RUN_DIALOGUE("1\n" + SERIES_FILE(kind, blocks).string() + "\nY\n",
               [] { FACETOR_READFILES::READ_PHASE_FROM_FILE(); });
}

// Angstroms: with all bonds of the structures, such as eight around the largest cations.
float RADIUS_FOR(const std::string& kind) {
  if (kind == "garnet") return 2.5f;
  return kind == "pyroxene" ? 2.8f : 2.2f;
}

void CALC_SERIES(const std::string& kind) {
  RUN.DMAX = RADIUS_FOR(kind);
  RUN_DIALOGUE("\n", [] { FACETOR_CALC::RUN_FACETOR_CALC_BONDS(); });
}

void COUNT_BLOCKS(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * NPHASES);
  state.SetLabel(KIND(state));
}

// ---- commands ----

void READ(benchmark::State& state) {
  const fs::path path = SERIES_FILE(KIND(state), BLOCKS(state));
  for (auto _ : state) READ_SERIES(KIND(state), BLOCKS(state));
  COUNT_BLOCKS(state);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(fs::file_size(path)));
}

// The same without dialogue and lists: the file to records, as other programs' readers do it.
void RECORDS(benchmark::State& state) {
  const fs::path path = SERIES_FILE(KIND(state), BLOCKS(state));
  for (auto _ : state) {
    std::string bytes;
    STRUCTURE_LIST blocks;
    int count = 0;
    KVA_UTILITIES::READ_FILE_BYTES(path.string(), bytes);
    RUN_DIALOGUE("", [&] { FACETOR_READFILES::READ_CIF_TO_LIST(bytes, blocks, count); });
    benchmark::DoNotOptimize(count);
  }
  state.SetItemsProcessed(state.iterations() * BLOCKS(state));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(fs::file_size(path)));
  state.SetLabel(KIND(state));
}

double BYTES_IN_USE() {
  const struct mallinfo2 info = ::mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

void CALC(benchmark::State& state) {
  ALLOCATE_PHASE_LIST(START_PHASES);
  const double before = BYTES_IN_USE();
  READ_SERIES(KIND(state), BLOCKS(state));
  for (auto _ : state) CALC_SERIES(KIND(state));
  COUNT_BLOCKS(state);
  // The records with their geometry: the lines of the file are forgotten by now.
  state.counters["bytes_per_block"] = (BYTES_IN_USE() - before) / BLOCKS(state);
}

void VALENCE(benchmark::State& state) {
  READ_SERIES(KIND(state), BLOCKS(state));
  CALC_SERIES(KIND(state));
  for (auto _ : state) RUN_DIALOGUE("N\n", [] { FACETOR_CALC::RUN_FACETOR_CALC_VALENCE(); });
  COUNT_BLOCKS(state);
}

// Bond lengths and angles that the two tables below show.
std::int64_t TABLE_VALUES() {
  std::int64_t values = 0;
  for (int i = 1; i <= REFERENCE().NATOMS; ++i) {
    const int n = REFERENCE().NBONDS(i);
    if (n > 0) values += n + n * (n - 1) / 2;
  }
  return values * NPHASES;
}

void TABLE(benchmark::State& state) {
  READ_SERIES(KIND(state), BLOCKS(state));
  CALC_SERIES(KIND(state));
  for (auto _ : state)
    RUN_DIALOGUE("", [] {
      FACETOR_LIST::FACETOR_LIST_ALL_BONDS("ESD");
      FACETOR_LIST::FACETOR_LIST_ALL_ANGLES("ESD");
    });
  COUNT_BLOCKS(state);
  state.counters["values"] = benchmark::Counter(
      static_cast<double>(state.iterations() * TABLE_VALUES()), benchmark::Counter::kIsRate);
}

// Ten measures with esds, warnings of doubtful matches and table included; labels of the garnet and
// the pyroxene.
constexpr std::array measures{"chain = angle(O1, O1, O1)",
                              "bridge = angle(Si1, O1, Si1)",
                              "turn = torsion(O1, Si1, O1, Si1)",
                              "off = offplane(Si1; O1, O1, O1)",
                              "size = vol(Si1)",
                              "shape = av(Si1)",
                              "near = econ(Si1)",
                              "shrink = V/ref(V)",
                              "kink = 180 - chain",
                              "part = size/V"};

void MEASURE_TABLE(benchmark::State& state) {
  READ_SERIES(KIND(state), BLOCKS(state));
  CALC_SERIES(KIND(state));
  for (const std::string line : measures) {
    const std::size_t sign = line.find('=');
    if (!DEFINE_MEASURE(line.substr(0, sign - 1), line.substr(sign + 2)).empty())
      state.SkipWithError(line.c_str());
  }
  for (auto _ : state) RUN_DIALOGUE("", [] { FACETOR_LIST::FACETOR_LIST_MEASURES_USED(); });
  MEASURES.clear();
  COUNT_BLOCKS(state);
}

void WRITE(benchmark::State& state) {
  const std::string path = (FOLDER() / "written.cif").string();
  READ_SERIES(KIND(state), BLOCKS(state));
  CALC_SERIES(KIND(state));
  for (auto _ : state) {
    KVA_UTILITIES::OPEN_WHOLE(KVA_CONSOLE::DATA_UNIT, path, KVA_UTILITIES::UNIT_MODE::REPLACE);
    int written = 0;
    int error = 0;
    RUN_DIALOGUE("Y\nY\n",
                 [&] { FACETOR_WRITEFILES::WRITE_CIF_FACETOR(KVA_CONSOLE::DATA_UNIT, written); });
    KVA_UTILITIES::KEEP_UNIT(KVA_CONSOLE::DATA_UNIT, error);
  }
  COUNT_BLOCKS(state);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(fs::file_size(path)));
}

// The command itself, from its first question to the file that is kept.
void CSV(benchmark::State& state) {
  const std::string path = (FOLDER() / "written.csv").string();
  READ_SERIES(KIND(state), BLOCKS(state));
  CALC_SERIES(KIND(state));
  for (auto _ : state) {
    fs::remove(path);
    RUN_DIALOGUE("all " + path + "\n", [] {
      KVA_CONSOLE::GET_INPUT("");
      FACETOR_SHEETS::RUN_CSV();
    });
  }
  COUNT_BLOCKS(state);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(fs::file_size(path)));
}

// The volumes of one site.
void EXPORT(benchmark::State& state) {
  const std::string path = (FOLDER() / "written.dat").string();
  READ_SERIES(KIND(state), BLOCKS(state));
  CALC_SERIES(KIND(state));
  for (auto _ : state) {
    fs::remove(path);
    RUN_DIALOGUE("Y\n2\nSi1\n" + path + "\n\n\n\n", [] { FACETOR_EXPORTFILES::RUN_EXPORT(); });
  }
  COUNT_BLOCKS(state);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(fs::file_size(path)));
}

// ---- the search and the plain loops ----

void SEARCH(benchmark::State& state) {
  READ_SERIES(KIND(state), 1);
  const ATOM_IMAGES images = IMAGES_OF(REFERENCE());
  int count = 0;
  NEIGHBOUR_TABLE table;
  for (auto _ : state)
    for (int i = 1; i <= REFERENCE().NATOMS; ++i)
      DISTANCE_ARRAY(images, REFERENCE().ATOM(i).X, RUN.DMIN, RADIUS_FOR(KIND(state)), count,
                     table);
  state.SetItemsProcessed(state.iterations() * REFERENCE().NATOMS);
  state.SetLabel(KIND(state));
}

void SEARCH_BY_LOOPS(benchmark::State& state) {
  READ_SERIES(KIND(state), 1);
  for (auto _ : state)
    for (int i = 1; i <= REFERENCE().NATOMS; ++i)
      benchmark::DoNotOptimize(PLAIN_LOOPS::SEARCH(REFERENCE(), REFERENCE().ATOM(i).X, RUN.DMIN,
                                                   RADIUS_FOR(KIND(state)), false, false));
  state.SetItemsProcessed(state.iterations() * REFERENCE().NATOMS);
  state.SetLabel(KIND(state));
}

// ---- CALC by plain loops ----

// One search that finds the atom at a position.
void FIND_BY_LOOPS(const VECTOR3& x_frac, float radius) {
  benchmark::DoNotOptimize(PLAIN_LOOPS::SEARCH(REFERENCE(), x_frac, -0.1f, radius, false, false));
}

// Atoms that the rules look up to measure between positions: each distance and each pair of ligands
// of a volume asks for both its atoms, each angle for its ligands and then for two pairs.
constexpr int searches_of_distance = 2;
constexpr int searches_of_angle = 6;
constexpr int searches_of_volume_pair = 2;

// All searches that the rules of CALC ask for in one block, each made by plain loops and none
// spared: a bound from below for what a program that follows the rules to the letter would need.
void SEARCHES_OF_CALC_BY_LOOPS() {
  const CRYSTAL_STRUCTURE_TYPE& phase = REFERENCE();
  for (int i = 1; i <= phase.NATOMS; ++i) {
    const VECTOR3& centre = phase.ATOM(i).X;
    FIND_BY_LOOPS(centre, RUN.DMAX);                      // the bonds
    FIND_BY_LOOPS(centre, MATCHING_RADIUS(REFERENCE()));  // the centre in another block
    const int n = phase.NBONDS(i);
    for (int j = 1; j <= n; ++j) {
      const VECTOR3 ligand = XTAL::ADD(centre, phase.BONDS.VECTOR(i, j));
      const int pairs = n - j;  // with the ligands behind this one
      const int for_pair =
          searches_of_distance + searches_of_angle + (n > 3 ? searches_of_volume_pair : 0);
      FIND_BY_LOOPS(ligand, MATCHING_RADIUS(REFERENCE()));
      const int searches = searches_of_distance + pairs * for_pair;
      for (int s = 0; s < searches; ++s) FIND_BY_LOOPS(ligand, MATCH_RADIUS);
    }
  }
}

void CALC_BY_LOOPS(benchmark::State& state) {
  READ_SERIES(KIND(state), 1);
  CALC_SERIES(KIND(state));
  for (auto _ : state) SEARCHES_OF_CALC_BY_LOOPS();
  state.SetItemsProcessed(state.iterations());
  state.SetLabel(KIND(state));
}

// ---- cases ----

enum SERIES_KIND { GARNET, PYROXENE, TRICLINIC, ZEOLITE, TWENTY };

void LONG_SERIES(benchmark::internal::Benchmark* measured) {
  for (int blocks : {10, 100, 1000, 10000}) measured->Args({PYROXENE, blocks});
  measured->Args({GARNET, 1000})->Args({TWENTY, 1000})->Args({TRICLINIC, 100})->Args({ZEOLITE, 30});
  measured->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
}

void NAMED_SITES(benchmark::internal::Benchmark* measured) {
  for (int blocks : {100, 1000, 10000}) measured->Args({PYROXENE, blocks});
  measured->Args({GARNET, 1000})->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
}

void ALL_KINDS(benchmark::internal::Benchmark* measured) {
  for (int kind : {GARNET, PYROXENE, TRICLINIC, ZEOLITE}) measured->Arg(kind);
  measured->Unit(benchmark::kMicrosecond)->MeasureProcessCPUTime();
}

BENCHMARK(READ)->Apply(LONG_SERIES);
BENCHMARK(RECORDS)->Apply(LONG_SERIES);
BENCHMARK(CALC)->Apply(LONG_SERIES);
BENCHMARK(VALENCE)->Apply(LONG_SERIES);
BENCHMARK(TABLE)->Apply(LONG_SERIES);
BENCHMARK(MEASURE_TABLE)->Apply(NAMED_SITES);
BENCHMARK(WRITE)->Apply(LONG_SERIES);
BENCHMARK(CSV)->Apply(NAMED_SITES);
BENCHMARK(EXPORT)->Apply(NAMED_SITES);
BENCHMARK(SEARCH)->Apply(ALL_KINDS);
BENCHMARK(SEARCH_BY_LOOPS)->Apply(ALL_KINDS);
BENCHMARK(CALC_BY_LOOPS)->Arg(GARNET)->Arg(PYROXENE)->MeasureProcessCPUTime();

}  // namespace

int main(int argc, char** argv) {
  // Answers come from the cases, never from the settings of whoever measures.
  KVA_CONSOLE::CONSOLE.RUN_TYPE = 1;
  FACETOR_CONSOLE::INIT_PHASE_LIST();
  FACETOR_CONSOLE::SET_DEFAULT_CHARGES();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  fs::remove_all(FOLDER());
}
