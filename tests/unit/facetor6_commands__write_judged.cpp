// What other programs see in the files that WRITE writes: gemmi and cod-tools, where they are
// installed.
#include "facetor6_commands__write_blocks.h"
#include "places.h"

using namespace WRITE_TESTS;

namespace {

// ---- what another program sees ----

// A line of the judge: a block, what it is about, a label, and what follows it.
struct SEEN {
  std::string BLOCK;
  std::string KIND;
  std::string LABEL;
  std::vector<std::string> WORDS;

  float NUMBER(std::size_t k) const { return std::stof(WORDS.at(k)); }
};

std::vector<SEEN> SEEN_IN(const std::string& file, const std::string& judge) {
  const std::string command = "echo '" + file + "' | /usr/bin/python3 '" + PLACES::SOURCE() +
                              "/tests/judges/written_cif.py' " + judge + " > judged.txt";
  EXPECT_EQ(std::system(command.c_str()), 0) << "does not parse";
  std::vector<SEEN> lines;
  std::ifstream judged("judged.txt");
  for (std::string line; std::getline(judged, line);) {
    std::istringstream fields(line);
    SEEN seen;
    std::getline(fields, seen.BLOCK, '\t');
    std::getline(fields, seen.KIND, '\t');
    std::getline(fields, seen.LABEL, '\t');
    for (std::string word; fields >> word;) seen.WORDS.push_back(word);
    lines.push_back(seen);
  }
  return lines;
}

// The lines of one block and kind, in order.
std::vector<SEEN> LINES_OF(const std::vector<SEEN>& all, const std::string& block,
                           const std::string& kind) {
  std::vector<SEEN> lines;
  std::copy_if(all.begin(), all.end(), std::back_inserter(lines),
               [&](const SEEN& line) { return line.BLOCK == block && line.KIND == kind; });
  return lines;
}

void EXPECT_CELL_SEEN(const SEEN& line, const XTAL::CRYSTAL_CELL& cell) {
  for (std::size_t k = 0; k < 3; ++k) {
    EXPECT_VALUE_AND_ESD(line.NUMBER(2 * k), line.NUMBER(2 * k + 1), cell.CELL[k], cell.CELL_STD[k],
                         "cell length");
    EXPECT_VALUE_AND_ESD(line.NUMBER(6 + 2 * k), line.NUMBER(7 + 2 * k), cell.ANG[k],
                         cell.ANG_STD[k], "cell angle");
  }
  EXPECT_VALUE_AND_ESD(line.NUMBER(12), line.NUMBER(13), cell.CELLVOL, cell.STDVOL, "volume");
}

void EXPECT_CONDITIONS_SEEN(const SEEN& line, const CRYSTAL_STRUCTURE_TYPE& phase) {
  constexpr float kpa_per_gpa = 1e6f;
  EXPECT_VALUE_AND_ESD(line.NUMBER(0), line.NUMBER(1), phase.PT(TEMPERATURE, PT_VALUE),
                       phase.PT(TEMPERATURE, PT_ESD), "T");
  EXPECT_VALUE_AND_ESD(line.NUMBER(2), line.NUMBER(3), kpa_per_gpa * phase.PT(PRESSURE, PT_VALUE),
                       kpa_per_gpa * phase.PT(PRESSURE, PT_ESD), "P");
}

std::string KIND_OF_DISPLACEMENT(const ATOM_TYPE& atom) {
  if (IS_ANISO(atom)) return "Uani";
  return atom.BISO > 0.0f ? "Uiso" : ".";
}

void EXPECT_ATOM_SEEN(const SEEN& line, const ATOM_TYPE& atom) {
  EXPECT_EQ(line.LABEL, atom.LAB);
  EXPECT_EQ(line.WORDS.at(0), atom.SFACSYMB.empty() ? "." : atom.SFACSYMB) << atom.LAB;
  EXPECT_EQ(line.WORDS.at(1), KIND_OF_DISPLACEMENT(atom)) << atom.LAB;
  for (std::size_t k = 0; k < 3; ++k)
    EXPECT_VALUE_AND_ESD(line.NUMBER(2 + 2 * k), line.NUMBER(3 + 2 * k), atom.X[k], atom.X_STD[k],
                         atom.LAB);
  EXPECT_VALUE_AND_ESD(line.NUMBER(8), line.NUMBER(9), atom.OCC, atom.OCC_STD, atom.LAB);
  if (IS_ANISO(atom)) return;  // see EXPECT_UEQ_SEEN
  const float u_esd = atom.BISO > 0.0f ? atom.BISO_STD / EIGHT_PI_SQ : 0.0f;
  EXPECT_VALUE_AND_ESD(line.NUMBER(10), line.NUMBER(11), atom.BISO / EIGHT_PI_SQ, u_esd,
                       atom.LAB + " U");
}

// Ueq of the judge comes from the written tensor, whose components lost a quarter of their esds.
void EXPECT_UEQ_SEEN(const std::vector<SEEN>& atoms, const std::vector<SEEN>& ueq) {
  auto line = ueq.begin();
  for (const SEEN& atom : atoms) {
    if (atom.WORDS.at(1) != "Uani" || line == ueq.end()) continue;
    EXPECT_EQ(line->LABEL, atom.LABEL);
    EXPECT_NEAR(atom.NUMBER(10), line->NUMBER(0),
                MARGIN(line->NUMBER(0), line->NUMBER(1)) + 0.5f * line->NUMBER(1) + 2e-6f)
        << atom.LABEL;
    EXPECT_GE(atom.NUMBER(11), 0.65f * line->NUMBER(1)) << atom.LABEL;
    EXPECT_LE(atom.NUMBER(11), 1.45f * line->NUMBER(1)) << atom.LABEL;
    ++line;
  }
  EXPECT_EQ(line, ueq.end());
}

void EXPECT_TENSORS_SEEN(const std::vector<SEEN>& lines, const CRYSTAL_STRUCTURE_TYPE& phase) {
  auto line = lines.begin();
  for (int i : NUMBERS_IN_USE(phase)) {
    const ATOM_TYPE& atom = phase.ATOM(i);
    if (!IS_ANISO(atom)) continue;
    ASSERT_NE(line, lines.end());
    EXPECT_EQ(line->LABEL, atom.LAB);
    const VECTOR6 u = U_OF(phase, atom.U);
    const VECTOR6 u_esd = U_OF(phase, atom.U_STD);
    for (std::size_t k = 0; k < 6; ++k)
      EXPECT_VALUE_AND_ESD(line->NUMBER(2 * k), line->NUMBER(2 * k + 1), u[k], u_esd[k],
                           atom.LAB + " tensor");
    ++line;
  }
  EXPECT_EQ(line, lines.end());
}

void EXPECT_BONDS_SEEN(const std::vector<SEEN>& lines, const CRYSTAL_STRUCTURE_TYPE& phase) {
  auto line = lines.begin();
  for (int i : NUMBERS_IN_USE(REFERENCE()))  // the rows are those of the reference's centres
    for (int j : BONDS_PRESENT(phase, i)) {
      ASSERT_NE(line, lines.end());
      EXPECT_TRUE(line->LABEL.starts_with(CENTRE(phase, i, j) + " " + LIGAND(phase, i, j) + " "))
          << line->LABEL;
      EXPECT_VALUE_AND_ESD(line->NUMBER(0), line->NUMBER(1), phase.BONDS(i, j, BOND_LENGTH),
                           phase.BONDS(i, j, BOND_LENGTH_STD), line->LABEL);
      ++line;
    }
  EXPECT_EQ(line, lines.end());
}

void EXPECT_ANGLES_SEEN(const std::vector<SEEN>& lines, const CRYSTAL_STRUCTURE_TYPE& phase) {
  auto line = lines.begin();
  for (int i : NUMBERS_IN_USE(REFERENCE())) {
    const std::vector<int> present = BONDS_PRESENT(phase, i);
    for (std::size_t first = 0; first < present.size(); ++first)
      for (std::size_t second = first + 1; second < present.size(); ++second) {
        const int j = present[first];
        const int k = present[second];
        ASSERT_NE(line, lines.end());
        const std::string labels =
            LIGAND(phase, i, j) + " " + CENTRE(phase, i, j) + " " + LIGAND(phase, i, k) + " ";
        EXPECT_TRUE(line->LABEL.starts_with(labels)) << line->LABEL;
        EXPECT_VALUE_AND_ESD(line->NUMBER(0), line->NUMBER(1), phase.BANGLES(i, j, k, ANGLE),
                             phase.BANGLES(i, j, k, ANGLE_STD), line->LABEL);
        ++line;
      }
  }
  EXPECT_EQ(line, lines.end());
}

// What the judge measures between its own positions, against what was written: both come from
// nearly the same coordinates, so they differ by less than one esd. Where a block of another
// structure has one ligand twice, or the centre as a ligand, there is nothing to measure.
void EXPECT_MEASURED(const std::vector<SEEN>& measured, const std::vector<SEEN>& written,
                     float margin) {
  for (std::size_t row = 0; row < measured.size(); ++row) {
    EXPECT_EQ(measured[row].LABEL, written.at(row).LABEL);
    if (!(measured[row].NUMBER(0) > 0.0f)) continue;
    EXPECT_NEAR(measured[row].NUMBER(0), written.at(row).NUMBER(0),
                written.at(row).NUMBER(1) + margin)
        << written.at(row).LABEL;
  }
}

// The judge's own model of the sites: the tensor and the group are what it makes of the items.
void EXPECT_MODEL_SEEN(const std::vector<SEEN>& all, const std::string& title,
                       const CRYSTAL_STRUCTURE_TYPE& phase) {
  // A 32-bit cosine that is two units of its last bit from -1 is that of an angle 0.028 below 180.
  constexpr float two_bits_at_180 = 0.04f;
  const std::vector<SEEN> group = LINES_OF(all, title, "group");
  if (group.empty()) return;
  EXPECT_EQ(std::stoi(group.at(0).WORDS.at(0)), phase.SPG.NUMSPG);
  EXPECT_MEASURED(LINES_OF(all, title, "measured bond"), LINES_OF(all, title, "bond"), 0.0005f);
  EXPECT_MEASURED(LINES_OF(all, title, "measured angle"), LINES_OF(all, title, "angle"),
                  two_bits_at_180);
  const std::vector<SEEN> sites = LINES_OF(all, title, "site");
  const std::vector<int> numbers = NUMBERS_IN_USE(phase);
  ASSERT_EQ(sites.size(), numbers.size());
  for (std::size_t s = 0; s < sites.size(); ++s) {
    const ATOM_TYPE& atom = phase.ATOM(numbers[s]);
    const std::string element = atom.CHEMSYMB.empty() ? "X" : atom.CHEMSYMB;
    EXPECT_TRUE(EQUAL_TEXT(sites[s].WORDS.at(0), element)) << atom.LAB;
    EXPECT_WRITTEN(sites[s].NUMBER(1), atom.X[0], atom.X_STD[0], atom.LAB);
    const VECTOR6 u = IS_ANISO(atom) ? U_OF(phase, atom.U) : VECTOR6{};
    const VECTOR6 u_esd = IS_ANISO(atom) ? U_OF(phase, atom.U_STD) : VECTOR6{};
    for (std::size_t k = 0; k < 6; ++k)
      EXPECT_WRITTEN(sites[s].NUMBER(6 + k), u[k], u_esd[k], atom.LAB + " tensor");
  }
}

void EXPECT_BLOCK_SEEN(const std::vector<SEEN>& all, const CRYSTAL_STRUCTURE_TYPE& phase) {
  SCOPED_TRACE(phase.BLOCK_TITLE);
  std::string title = phase.BLOCK_TITLE;
  REPLACE_CHAR(title, ' ', '_');
  const auto lines = [&](const std::string& kind) { return LINES_OF(all, title, kind); };
  ASSERT_EQ(lines("cell").size(), 1u);
  EXPECT_CELL_SEEN(lines("cell").at(0), phase.CELL);
  EXPECT_CONDITIONS_SEEN(lines("conditions").at(0), phase);
  EXPECT_EQ(lines("operators").at(0).WORDS, phase.SPG.SYMOPSYMB.ITEMS());
  const std::vector<SEEN> atoms = lines("atom");
  const std::vector<int> numbers = NUMBERS_IN_USE(phase);
  ASSERT_EQ(atoms.size(), numbers.size());
  for (std::size_t s = 0; s < atoms.size(); ++s) EXPECT_ATOM_SEEN(atoms[s], phase.ATOM(numbers[s]));
  EXPECT_UEQ_SEEN(atoms, lines("ueq"));
  EXPECT_TENSORS_SEEN(lines("tensor"), phase);
  EXPECT_BONDS_SEEN(lines("bond"), phase);
  EXPECT_ANGLES_SEEN(lines("angle"), phase);
  EXPECT_MODEL_SEEN(all, title, phase);
}

class JUDGED : public WRITTEN_BLOCKS {
 protected:
  // The judges that are installed.
  static std::vector<std::string> JUDGES() {
    std::vector<std::string> judges;
    if (std::system("/usr/bin/python3 -c 'import gemmi' 2>/dev/null") == 0)
      judges.push_back("gemmi");
    if (std::system("command -v cif2json >/dev/null 2>&1") == 0) judges.push_back("cod");
    return judges;
  }

  // Writes all blocks, which must differ in their titles, and asks the judges.
  static void EXPECT_JUDGED(const std::string& name) {
    WRITE(name);
    for (const std::string& judge : JUDGES()) {
      SCOPED_TRACE(judge);
      const std::vector<SEEN> all = SEEN_IN(name, judge);
      for (int k = 1; k <= NPHASES; ++k) EXPECT_BLOCK_SEEN(all, PHASE(k));
    }
  }
};

}  // namespace

TEST_F(JUDGED, ALL_SYSTEMS_AND_KINDS_OF_DISPLACEMENT) {
  if (JUDGES().empty()) GTEST_SKIP() << "neither python3-gemmi nor cod-tools is installed";
  ADD_MADE_UP();
  EXPECT_JUDGED("out.cif");
  CALC();
  EXPECT_JUDGED("with_bonds.cif");
}

// Ueq and its esd against the judge's, which finds the free components of each tensor itself.
TEST_F(JUDGED, IONS_THAT_SHARE_A_SITE_WITH_A_TIED_TENSOR) {
  if (JUDGES().empty()) GTEST_SKIP() << "neither python3-gemmi nor cod-tools is installed";
  ADD_TIED();
  EXPECT_JUDGED("out.cif");
  const std::vector<SEEN> all = SEEN_IN("out.cif", JUDGES().at(0));
  const auto count =
      std::count_if(all.begin(), all.end(), [](const SEEN& line) { return line.KIND == "atom"; });
  EXPECT_EQ(count, 2 * NPHASES);
}

TEST_F(JUDGED, THE_EXAMPLES) {
  if (JUDGES().empty()) GTEST_SKIP() << "neither python3-gemmi nor cod-tools is installed";
  for (const char* example : {"hematite-pressure/hematite.cif", "gypsum-pressure/gypsum.cif",
                              "sodium-nickelate-pressure/nanio2.cif"}) {
    SCOPED_TRACE(example);
    INIT_PHASE_LIST();
    READ(PLACES::SOURCE() + "/examples/" + std::string(example));
    CALC();
    EXPECT_JUDGED(fs::path(example).filename());
  }
}

TEST_F(JUDGED, THE_SERIES) {
  const fs::path series = fs::path(PLACES::SAMPLES()) / "cif-series";
  if (!fs::exists(series)) GTEST_SKIP() << "no sample files at " << PLACES::SAMPLES();
  if (JUDGES().empty()) GTEST_SKIP() << "neither python3-gemmi nor cod-tools is installed";
  for (const fs::directory_entry& folder_of : fs::directory_iterator(series)) {
    SCOPED_TRACE(folder_of.path());
    READ_SERIES(folder_of);
    // Some series give all their blocks one name, or none.
    for (int k = 1; k <= NPHASES; ++k) PHASE(k).BLOCK_TITLE += "_" + std::to_string(k);
    if (CALC_IS_SHORT()) CALC();
    EXPECT_JUDGED(folder_of.path().filename().string() + ".cif");
  }
}
