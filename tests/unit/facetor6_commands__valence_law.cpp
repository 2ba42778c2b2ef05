// The valence of a bond and the sum around a centre: mixed sites, their occupancies, and pairs
// without parameters, on bonds put into the record by hand.
#include "facetor6_commands__valence_blocks.h"
#include "src/kva_crystal_structures/valence.h"

using namespace VALENCE_TESTS;

namespace {

// With lengths of 2.0 and 1.5 angstroms and b = 0.5 these give whole powers of e:
// exp((2.0 - 2.0) / 0.5) = 1, exp((2.5 - 2.0) / 0.5) = e, exp((1.5 - 2.0) / 0.5) = 1/e.
constexpr float e = 2.718281828f;

KVA_UTILITIES::LIST<BV_PAIR> TABLE() {
  KVA_UTILITIES::LIST<BV_PAIR> pairs;
  pairs.ADD({"SI+4", "O-2", 0.5f, 2.0f, ""});
  pairs.ADD({"AL+3", "O-2", 0.5f, 2.5f, ""});
  pairs.ADD({"MG+2", "O-2", 0.5f, 1.5f, ""});
  pairs.ADD({"SI+4", "F-1", 0.5f, 2.5f, ""});
  return pairs;
}

struct SPECIES {
  std::string LABEL;
  float OCC;
};

// Sites of up to three species each; atom numbers run through the sites.
CRYSTAL_STRUCTURE_TYPE STRUCTURE(const std::vector<std::vector<SPECIES>>& sites) {
  std::vector<SITE> atoms;
  for (std::size_t site = 0; site < sites.size(); ++site)
    for (std::size_t k = 0; k < sites[site].size(); ++k)
      atoms.push_back({"X", {0.1f * static_cast<float>(site), 0, 0}});
  CRYSTAL_STRUCTURE_TYPE phase = MADE({20, 20, 20}, {90, 90, 90}, "P 1", atoms);
  int number = 0;
  for (const std::vector<SPECIES>& site : sites) {
    const int first = number + 1;
    for (std::size_t k = 0; k < site.size(); ++k) {
      ATOM_TYPE& atom = phase.ATOM(++number);
      atom.SFACSYMB = site[k].LABEL;
      atom.OCC = site[k].OCC;
      if (k > 0) phase.ATOM_DUP(first, static_cast<int>(k)) = number;
    }
  }
  return phase;
}

void BOND(CRYSTAL_STRUCTURE_TYPE& phase, int centre, int row, int ligand, float length) {
  constexpr float std = 0.01f;
  ++phase.NBONDS(centre);
  phase.BONDS(centre, row, BOND_CENTRE) = static_cast<float>(centre);
  phase.BONDS(centre, row, BOND_LIGAND) = static_cast<float>(ligand);
  phase.BONDS(centre, row, BOND_LENGTH) = length;
  phase.BONDS(centre, row, BOND_LENGTH_STD) = std;
}

// The valence of one bond of 2 angstroms from atom 1 to the site that begins with atom ligand, and
// that it is the same from the other end.
float VALENCE(CRYSTAL_STRUCTURE_TYPE phase, int ligand) {
  BOND(phase, 1, 1, ligand, 2.0f);
  BOND(phase, ligand, 1, 1, 2.0f);
  CALC_VALENCE_ALLBONDS(phase, TABLE());
  EXPECT_FLOAT_EQ(phase.BONDS(1, 1, BOND_VALENCE), phase.BONDS(ligand, 1, BOND_VALENCE));
  return phase.BONDS(1, 1, BOND_VALENCE);
}

}  // namespace

// ---- occupancies ----

TEST(VALENCE_LAW, BOTH_OCCUPANCIES_OF_SINGLE_SPECIES_WEIGH) {
  EXPECT_FLOAT_EQ(VALENCE(STRUCTURE({{{"SI+4", 0.5f}}, {{"O-2", 0.75f}}}), 2), 0.375f);
}

TEST(VALENCE_LAW, A_MIXED_LIGAND_SUMS_ITS_SPECIES_TIMES_THE_OCCUPANCY_OF_THE_CENTRE) {
  // (0.75 * 1 + 0.25 * e) * 0.5
  EXPECT_FLOAT_EQ(VALENCE(STRUCTURE({{{"SI+4", 0.5f}}, {{"O-2", 0.75f}, {"F-1", 0.25f}}}), 2),
                  (0.75f + 0.25f * e) * 0.5f);
}

TEST(VALENCE_LAW, A_MIXED_CENTRE_SUMS_ITS_SPECIES_TIMES_THE_OCCUPANCY_OF_THE_LIGAND) {
  EXPECT_FLOAT_EQ(VALENCE(STRUCTURE({{{"SI+4", 0.75f}, {"AL+3", 0.25f}}, {{"O-2", 0.5f}}}), 3),
                  (0.75f + 0.25f * e) * 0.5f);
}

TEST(VALENCE_LAW, THREE_SPECIES_ON_A_SITE) {
  // 0.5 * 1 + 0.25 * e + 0.25 / e, at either end.
  const float sum = 0.5f + 0.25f * e + 0.25f / e;
  const std::vector<SPECIES> cations{{"SI+4", 0.5f}, {"AL+3", 0.25f}, {"MG+2", 0.25f}};
  EXPECT_FLOAT_EQ(VALENCE(STRUCTURE({cations, {{"O-2", 1.0f}}}), 4), sum);
  EXPECT_FLOAT_EQ(VALENCE(STRUCTURE({{{"O-2", 1.0f}}, cations}), 2), sum);
}

TEST(VALENCE_LAW, A_SPECIES_WITHOUT_PARAMETERS_ADDS_NOTHING) {
  EXPECT_FLOAT_EQ(VALENCE(STRUCTURE({{{"SI+4", 0.75f}, {"ZR+4", 0.25f}}, {{"O-2", 1.0f}}}), 3),
                  0.75f);
}

// ---- where a second species counts ----

TEST(VALENCE_LAW, A_SECOND_LIGAND_COUNTS_FROM_AN_OCCUPANCY_OF_0_0001) {
  // Below it the site is single, and a mixed centre has a valence; from it on both are mixed.
  const std::vector<SPECIES> centre{{"SI+4", 0.75f}, {"AL+3", 0.25f}};
  CRYSTAL_STRUCTURE_TYPE phase = STRUCTURE({centre, {{"O-2", 1.0f}, {"F-1", 0.00009f}}});
  BOND(phase, 1, 1, 3, 2.0f);
  CALC_VALENCE_ALLBONDS(phase, TABLE());
  EXPECT_FLOAT_EQ(phase.BONDS(1, 1, BOND_VALENCE), 0.75f + 0.25f * e);
  phase.ATOM(4).OCC = 0.00011f;
  CALC_VALENCE_ALLBONDS(phase, TABLE());
  EXPECT_EQ(phase.BONDS(1, 1, BOND_VALENCE), 0.0f);
}

TEST(VALENCE_LAW, A_SECOND_CENTRE_COUNTS_FROM_AN_OCCUPANCY_OF_0_001) {
  const std::vector<SPECIES> ligand{{"O-2", 0.75f}, {"F-1", 0.25f}};
  CRYSTAL_STRUCTURE_TYPE phase = STRUCTURE({{{"SI+4", 1.0f}, {"AL+3", 0.0009f}}, ligand});
  BOND(phase, 1, 1, 3, 2.0f);
  CALC_VALENCE_ALLBONDS(phase, TABLE());
  EXPECT_FLOAT_EQ(phase.BONDS(1, 1, BOND_VALENCE), 0.75f + 0.25f * e);
  phase.ATOM(2).OCC = 0.0011f;
  CALC_VALENCE_ALLBONDS(phase, TABLE());
  EXPECT_EQ(phase.BONDS(1, 1, BOND_VALENCE), 0.0f);
}

// ---- esds, sums, rows that are missing ----

TEST(VALENCE_LAW, THE_ESD_IS_THAT_OF_THE_FIRST_SPECIES) {
  CRYSTAL_STRUCTURE_TYPE phase = STRUCTURE({{{"SI+4", 0.75f}, {"AL+3", 0.25f}}, {{"O-2", 1.0f}}});
  BOND(phase, 1, 1, 3, 2.0f);
  KVA_UTILITIES::LIST<BV_PAIR> pairs = TABLE();
  pairs(1).B = 0.25f;  // exp(0 / 0.25) is 1 as well
  CALC_VALENCE_ALLBONDS(phase, pairs);
  const float s = 0.75f + 0.25f * e;
  EXPECT_FLOAT_EQ(phase.BONDS(1, 1, BOND_VALENCE), s);
  EXPECT_FLOAT_EQ(phase.BONDS(1, 1, BOND_VALENCE_STD), s * 0.01f / 0.25f);
}

TEST(VALENCE_LAW, A_BOND_WITHOUT_A_ROW_GETS_0_AND_KEEPS_ITS_ESD_WHICH_IS_SUMMED) {
  CRYSTAL_STRUCTURE_TYPE phase =
      STRUCTURE({{{"SI+4", 1.0f}}, {{"O-2", 1.0f}}, {{"CL-1", 1.0f}}, {{"O-2", 1.0f}}});
  BOND(phase, 1, 1, 2, 2.0f);
  BOND(phase, 1, 2, 3, 2.0f);
  BOND(phase, 1, 3, 4, 1.5f);
  phase.BONDS(1, 2, BOND_VALENCE) = 0.7f;
  phase.BONDS(1, 2, BOND_VALENCE_STD) = 0.3f;
  CALC_VALENCE_ALLBONDS(phase, TABLE());
  EXPECT_EQ(phase.BONDS(1, 2, BOND_VALENCE), 0.0f);
  EXPECT_EQ(phase.BONDS(1, 2, BOND_VALENCE_STD), 0.3f);
  // Valences 1, 0 and e; esds 1 * 0.01 / 0.5 = 0.02, 0.3 and 0.02 e.
  EXPECT_FLOAT_EQ(phase.POLYHEDRON(1, POLY_VALENCE_SUM), 1.0f + e);
  EXPECT_FLOAT_EQ(phase.POLYHEDRON(1, POLY_VALENCE_SUM_STD), 0.02f + 0.3f + 0.02f * e);
}

TEST(VALENCE_LAW, A_GAP_AMONG_THE_BONDS_IS_PASSED_OVER) {
  CRYSTAL_STRUCTURE_TYPE phase = STRUCTURE({{{"SI+4", 1.0f}}, {{"O-2", 1.0f}}});
  BOND(phase, 1, 3, 2, 2.0f);
  CALC_VALENCE_ALLBONDS(phase, TABLE());
  EXPECT_FLOAT_EQ(phase.BONDS(1, 3, BOND_VALENCE), 1.0f);
  EXPECT_FLOAT_EQ(phase.POLYHEDRON(1, POLY_VALENCE_SUM), 1.0f);
}

TEST(VALENCE_LAW, AN_EMPTY_TABLE_LEAVES_EVERYTHING_AS_IT_WAS) {
  CRYSTAL_STRUCTURE_TYPE phase = STRUCTURE({{{"SI+4", 1.0f}}, {{"O-2", 1.0f}}});
  BOND(phase, 1, 1, 2, 2.0f);
  phase.BONDS(1, 1, BOND_VALENCE) = 0.5f;
  phase.BONDS(1, 1, BOND_VALENCE_STD) = 0.25f;
  phase.POLYHEDRON(1, POLY_VALENCE_SUM) = 4.0f;
  phase.POLYHEDRON(1, POLY_VALENCE_SUM_STD) = 0.125f;
  CALC_VALENCE_ALLBONDS(phase, {});
  EXPECT_EQ(phase.BONDS(1, 1, BOND_VALENCE), 0.5f);
  EXPECT_EQ(phase.BONDS(1, 1, BOND_VALENCE_STD), 0.25f);
  EXPECT_EQ(phase.POLYHEDRON(1, POLY_VALENCE_SUM), 4.0f);
  EXPECT_EQ(phase.POLYHEDRON(1, POLY_VALENCE_SUM_STD), 0.125f);
}

// ---- rows by their labels ----

TEST(VALENCE_LAW, THE_FIRST_ROW_WHOSE_LABELS_BEGIN_WITH_THE_GIVEN_ONES) {
  KVA_UTILITIES::LIST<BV_PAIR> pairs = TABLE();
  pairs.ADD({"SI+4", "O-2", 0.37f, 1.624f, "again"});
  EXPECT_EQ(FIND_BVLOCAL("Si+4", "O-2", pairs), 1) << "the first wins, in any case";
  EXPECT_EQ(FIND_BVLOCAL("SI", "F", pairs), 4);
  EXPECT_EQ(FIND_BVLOCAL("O-2", "SI+4", pairs), 0) << "the cation comes first";
  EXPECT_EQ(FIND_BVLOCAL("SI+4", "", pairs), 0) << "an empty label begins none";
  EXPECT_EQ(FIND_BVLOCAL("", "O-2", pairs), 0);
}
