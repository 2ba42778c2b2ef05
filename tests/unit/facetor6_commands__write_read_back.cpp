// What WRITE writes READ reads back: made-up structures of all systems, every tabulated setting,
// the examples and real series.
#include "facetor6_commands__write_blocks.h"
#include "foundations/XTAL_Space_Group_Tables.h"
#include "places.h"

using namespace WRITE_TESTS;

namespace {

// ---- two records ----

void EXPECT_SAME_ATOM(const CRYSTAL_STRUCTURE_TYPE& phase, const ATOM_TYPE& seen,
                      const ATOM_TYPE& atom) {
  EXPECT_EQ(seen.LAB, atom.LAB);
  EXPECT_EQ(seen.Z, atom.Z) << atom.LAB;
  for (std::size_t k = 0; k < 3; ++k)
    EXPECT_VALUE_AND_ESD(seen.X[k], seen.X_STD[k], atom.X[k], atom.X_STD[k], atom.LAB);
  EXPECT_VALUE_AND_ESD(seen.OCC, seen.OCC_STD, atom.OCC, atom.OCC_STD, atom.LAB + " occupancy");
  ASSERT_EQ(IS_ANISO(seen), IS_ANISO(atom)) << atom.LAB;
  if (!IS_ANISO(atom)) {
    EXPECT_WRITTEN(seen.UEQ, atom.BISO / EIGHT_PI_SQ, atom.BISO_STD / EIGHT_PI_SQ, atom.LAB + " U");
    return;
  }
  const VECTOR6 u = U_OF(phase, atom.U);
  const VECTOR6 u_esd = U_OF(phase, atom.U_STD);
  const VECTOR6 seen_u = U_OF(phase, seen.U);
  const VECTOR6 seen_esd = U_OF(phase, seen.U_STD);
  // The cell may have been rounded too, and with it the beta of the same U.
  for (std::size_t k = 0; k < 6; ++k)
    EXPECT_NEAR(seen_u[k], u[k], MARGIN(u[k], u_esd[k]) + 0.002f * std::abs(u[k])) << atom.LAB;
  for (std::size_t k = 0; k < 6; ++k)
    EXPECT_LE(std::abs(seen_esd[k] - u_esd[k]), 0.44f * u_esd[k]) << atom.LAB;
}

void EXPECT_SAME_BLOCK(const CRYSTAL_STRUCTURE_TYPE& seen, const CRYSTAL_STRUCTURE_TYPE& phase) {
  std::string title = TRIM(phase.BLOCK_TITLE);
  REPLACE_CHAR(title, ' ', '_');
  EXPECT_EQ(seen.BLOCK_TITLE, title);
  SCOPED_TRACE(title);
  for (std::size_t k = 0; k < 3; ++k) {
    EXPECT_VALUE_AND_ESD(seen.CELL.CELL[k], seen.CELL.CELL_STD[k], phase.CELL.CELL[k],
                         phase.CELL.CELL_STD[k], "cell length");
    EXPECT_VALUE_AND_ESD(seen.CELL.ANG[k], seen.CELL.ANG_STD[k], phase.CELL.ANG[k],
                         phase.CELL.ANG_STD[k], "cell angle");
  }
  EXPECT_VALUE_AND_ESD(seen.PT(TEMPERATURE, PT_VALUE), seen.PT(TEMPERATURE, PT_ESD),
                       phase.PT(TEMPERATURE, PT_VALUE), phase.PT(TEMPERATURE, PT_ESD), "T");
  EXPECT_VALUE_AND_ESD(seen.PT(PRESSURE, PT_VALUE), seen.PT(PRESSURE, PT_ESD),
                       phase.PT(PRESSURE, PT_VALUE), phase.PT(PRESSURE, PT_ESD), "P");
  EXPECT_EQ(seen.SPG.SYMOPSYMB.ITEMS(), phase.SPG.SYMOPSYMB.ITEMS());
  EXPECT_EQ(seen.SPG.NUMSPG, phase.SPG.NUMSPG);
  EXPECT_EQ(seen.SPG.CRYSTALSYS, phase.SPG.CRYSTALSYS);
  const std::vector<int> numbers = NUMBERS_IN_USE(phase);
  ASSERT_EQ(static_cast<std::size_t>(seen.NATOMS), numbers.size());
  for (int s = 1; s <= seen.NATOMS; ++s)
    EXPECT_SAME_ATOM(phase, seen.ATOM(s), phase.ATOM(numbers[static_cast<std::size_t>(s - 1)]));
}

// Bonds may change with what was rounded of the cell and the two atoms, by less than one esd, since
// each was rounded by about a quarter of its own at most; without esds by what 6 decimals leave.
void EXPECT_SAME_BONDS(const CRYSTAL_STRUCTURE_TYPE& seen, const CRYSTAL_STRUCTURE_TYPE& phase) {
  SCOPED_TRACE(phase.BLOCK_TITLE);
  const std::vector<int> numbers = NUMBERS_IN_USE(phase);
  ASSERT_EQ(static_cast<std::size_t>(seen.NATOMS), numbers.size());
  for (int s = 1; s <= seen.NATOMS; ++s) {
    const int i = numbers[static_cast<std::size_t>(s - 1)];
    ASSERT_EQ(BONDS_PRESENT(seen, s), BONDS_PRESENT(phase, i)) << phase.ATOM(i).LAB;
    for (int j : BONDS_PRESENT(phase, i)) {
      EXPECT_EQ(LIGAND(seen, s, j), LIGAND(phase, i, j));
      EXPECT_EQ(seen.BONDS(s, j, BOND_SYMCODE), phase.BONDS(i, j, BOND_SYMCODE));
      EXPECT_NEAR(seen.BONDS(s, j, BOND_LENGTH), phase.BONDS(i, j, BOND_LENGTH),
                  phase.BONDS(i, j, BOND_LENGTH_STD) + 0.0005f)
          << phase.ATOM(i).LAB << "-" << LIGAND(phase, i, j);
    }
  }
}

class READ_BACK : public WRITTEN_BLOCKS {
 protected:
  // The tables of what is written of each block. Left out is the scattering factor in columns 57 to
  // 62 where a label gave it: AL is read back as Al.
  static std::string TABLES() {
    const std::string cells = SAID("", [] { FACETOR_LIST_CELLS("ESD"); });
    std::istringstream sites(SAID("", [] { FACETOR_LIST_ALL_XYZ("ESD"); }));
    std::string text = cells;
    for (std::string line; std::getline(sites, line);) {
      if (line.size() > 61 && line[56] == '(') line.replace(56, 6, 6, ' ');
      text += TRIM(U_CASE(line)) + "\n";
    }
    return text;
  }

  // Writes all blocks, reads them back, writes and reads again.
  static void EXPECT_READ_BACK() {
    if (CALC_IS_SHORT()) CALC();
    const STRUCTURE_LIST phases = PHASE;
    const int n = NPHASES;
    const std::string tables = TABLES();
    WRITE("first.cif");
    READ_ALONE("first.cif");
    ASSERT_EQ(NPHASES, n);
    for (int k = 1; k <= n; ++k) EXPECT_SAME_BLOCK(PHASE(k), phases(k));
    EXPECT_EQ(TABLES(), tables);
    WRITE("second.cif");
    if (CALC_IS_SHORT()) {
      CALC();
      for (int k = 1; k <= n; ++k) EXPECT_SAME_BONDS(PHASE(k), phases(k));
    }
    READ_ALONE("second.cif");
    WRITE("third.cif");
    EXPECT_EQ(TEXT_OF("third.cif"), TEXT_OF("second.cif")) << "nothing more is lost";
  }
};

}  // namespace

TEST_F(READ_BACK, HEMATITE) {
  READ(PLACES::SOURCE() + "/examples/hematite-pressure/hematite.cif");
  EXPECT_READ_BACK();
}

TEST_F(READ_BACK, GYPSUM) {
  READ(PLACES::SOURCE() + "/examples/gypsum-pressure/gypsum.cif");
  EXPECT_READ_BACK();
}

TEST_F(READ_BACK, SODIUM_NICKELATE) {
  READ(PLACES::SOURCE() + "/examples/sodium-nickelate-pressure/nanio2.cif");
  EXPECT_READ_BACK();
}

TEST_F(READ_BACK, SERIES) {
  const fs::path series = fs::path(PLACES::SAMPLES()) / "cif-series";
  if (!fs::exists(series)) GTEST_SKIP() << "no sample files at " << PLACES::SAMPLES();
  for (const fs::directory_entry& folder_of : fs::directory_iterator(series)) {
    SCOPED_TRACE(folder_of.path());
    READ_SERIES(folder_of);
    // Some series give all their blocks one name, which WRITE would number.
    for (int k = 1; k <= NPHASES; ++k) PHASE(k).BLOCK_TITLE += "_" + std::to_string(k);
    for (const char* name : {"first.cif", "second.cif", "third.cif"}) fs::remove(name);
    EXPECT_READ_BACK();
  }
}

// ---- made-up structures ----

TEST_F(READ_BACK, ALL_SYSTEMS_AND_KINDS_OF_DISPLACEMENT) {
  ADD_MADE_UP();
  EXPECT_READ_BACK();
}

TEST_F(READ_BACK, IONS_THAT_SHARE_A_SITE) {
  ADD_TIED();
  WRITE("out.cif");
  READ_ALONE("out.cif");
  ASSERT_GT(NPHASES, 0);
  for (int k = 1; k <= NPHASES; ++k) {
    SCOPED_TRACE(PHASE(k).BLOCK_TITLE);
    ASSERT_EQ(PHASE(k).NATOMS, 2);
    EXPECT_EQ(PHASE(k).ATOM_USE(2), -1);
    EXPECT_EQ(PHASE(k).ATOM(1).SFACSYMB, "Fe+3");
    EXPECT_EQ(PHASE(k).ATOM(1).CHARGE, 3.0f);
    EXPECT_EQ(PHASE(k).ATOM(2).SFACSYMB, "Mg+2");
    EXPECT_EQ(PHASE(k).ATOM(2).CHARGE, 2.0f);
    EXPECT_FLOAT_EQ(PHASE(k).ATOM(2).OCC, 0.4f);
  }
}

// U of 0.0123(4) without a B is kept as B, with its esd.
TEST_F(READ_BACK, THE_ESD_OF_AN_ISOTROPIC_U) {
  PUT_FILE("in.cif",
           "data_one\n_symmetry_space_group_name_H-M 'P 1'\n\nloop_\n_atom_site_label\n"
           "_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n"
           "_atom_site_U_iso_or_equiv\nO1 0.1 0.2 0.3 0.0123(4)\n");
  READ("in.cif");
  WRITE("out.cif");
  EXPECT_NE(TEXT_OF("out.cif").find("  0.0123(4)  Uiso\n"), std::string::npos);
}

TEST_F(READ_BACK, A_COORDINATE_THAT_ROUNDS_TO_1_COMES_BACK_AS_0) {
  ADD("first", MADE({5, 5, 5}, {90, 90, 90}, "P 1", {{"O1", {0.9999999f, 0.5f, 0.5f}}}));
  WRITE("out.cif");
  READ_ALONE("out.cif");
  EXPECT_EQ(PHASE(1).ATOM(1).X, (VECTOR3{0, 0.5f, 0.5f}));
}

// ---- every setting ----

TEST_F(READ_BACK, EVERY_TABULATED_SETTING) {
  for (const XTAL::SPGR_INFO_TYPE& row : XTAL::SPGR_INFO)
    ADD(std::string(row.HM), MADE({5, 5, 5}, {90, 90, 90}, std::string(row.HM), {}));
  const STRUCTURE_LIST phases = PHASE;
  WRITE("first.cif");
  const std::string said = READ_ALONE("first.cif");
  ASSERT_EQ(NPHASES, static_cast<int>(XTAL::SPGR_INFO.size()));
  EXPECT_EQ(said.find("agree"), std::string::npos) << said;
  for (int k = 1; k <= NPHASES; ++k)
    EXPECT_EQ(PHASE(k).SPG.SYMOPSYMB.ITEMS(), phases(k).SPG.SYMOPSYMB.ITEMS())
        << phases(k).SPG.HALL;
}

// Inversion centres off the origin, at 1/8 and at a place that is no fraction.
TEST_F(READ_BACK, OPERATORS_THAT_NO_SYMBOL_STANDS_FOR) {
  for (const std::string x : {"-x+1/4", "-x+0.1400"}) {
    const std::vector<std::string> operators{"x,y,z", x + ",-y,-z"};
    CRYSTAL_STRUCTURE_TYPE phase = MADE({5, 6, 7}, {90, 90, 90}, "P 1", {});
    XTAL::SET_SPACEGROUP("", phase.SPG, operators, "GEN");
    ASSERT_EQ(phase.SPG.SYMOPSYMB.ITEMS(), operators);
    ASSERT_EQ(phase.SPG.SPG_SYMB, "unknown");
    INIT_PHASE_LIST();
    fs::remove("out.cif");
    ADD("first", phase);
    WRITE("out.cif");
    EXPECT_EQ(READ_ALONE("out.cif").find("symmetry"), std::string::npos) << "no warning";
    EXPECT_EQ(PHASE(1).SPG.SYMOPSYMB.ITEMS(), operators);
  }
}
