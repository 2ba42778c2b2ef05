// Bonds of a block, classes of pairs left out, and the same bonds in another block.
#include "src/kva_crystal_structures/bonds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "structures.h"

using namespace STRUCTURES;

namespace {

const BOND_EXCLUSION exclude_all{{true, true, true, true}};
const BOND_EXCLUSION include_all{};

// Perovskite, SrTiO3 like: Ti-O a / 2, Sr-O a / sqrt(2).
CRYSTAL_STRUCTURE_TYPE PEROVSKITE(float a = 4.0f) {
  return MADE({a, a, a}, {90, 90, 90}, "P m -3 m",
              {{"Sr1", {0, 0, 0}}, {"Ti1", {0.5f, 0.5f, 0.5f}}, {"O1", {0.5f, 0.5f, 0}}});
}

// Quartz-like: Si on a two-fold axis, O general.
std::vector<SITE> QUARTZ_SITES() {
  return {{"Si1", {0.4697f, 0, 0.66667f}, {0.0002f, 0, 0}},
          {"O1", {0.4135f, 0.2669f, 0.7858f}, {0.0003f, 0.0004f, 0.0002f}}};
}

CRYSTAL_STRUCTURE_TYPE QUARTZ(const std::vector<SITE>& sites) {
  return MADE({4.9137f, 4.9137f, 5.4047f}, {90, 90, 120}, "P 32 2 1", sites,
              {0.0005f, 0.0005f, 0.0005f});
}

// Finds the bonds of the reference block and measures it as CALC does.
void CALC(CRYSTAL_STRUCTURE_TYPE& reference, float dmax = 2.2f) {
  CALC_BONDS_ALLATOMS(reference, 0.01f, dmax, &exclude_all);
  MEASURE_BLOCK(TARGETS_OF(reference), RULER_FOR(reference), reference, MATCHING_RADIUS(reference));
}

CRYSTAL_STRUCTURE_TYPE MEASURED(const CRYSTAL_STRUCTURE_TYPE& reference,
                                CRYSTAL_STRUCTURE_TYPE block) {
  MEASURE_BLOCK(TARGETS_OF(reference), RULER_FOR(block), block, MATCHING_RADIUS(reference));
  return block;
}

std::vector<float> LENGTHS(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  std::vector<float> lengths;
  for (int j = 1; j <= phase.NBONDS(i); ++j) lengths.push_back(phase.BONDS(i, j, BOND_LENGTH));
  std::sort(lengths.begin(), lengths.end());
  return lengths;
}

}  // namespace

// ---- classes ----

TEST(CLASSES, THE_SHORT_LIST_OF_ANIONS) {
  for (int z : {2, 8, 9, 10, 17, 18, 35, 36, 53, 54, 85, 86}) EXPECT_FALSE(ISCATION(z)) << z;
  for (int z : {0, 1, 7, 16, 34, 52, 14, 26}) EXPECT_TRUE(ISCATION(z)) << z;
}

TEST(CLASSES, EACH_FLAG_EXCLUDES_ITS_OWN) {
  const auto phase = MADE({9, 9, 9}, {90, 90, 90}, "P 1",
                          {{"O1", {0, 0, 0}},
                           {"O2", {0.2f, 0, 0}},
                           {"Cl1", {0, 0.2f, 0}},
                           {"N1", {0, 0, 0.2f}},
                           {"Si1", {0.5f, 0, 0}}});
  const auto only = [](BOND_CLASS bond_class) {
    BOND_EXCLUSION bondex{};
    bondex(bond_class) = true;
    return bondex;
  };
  EXPECT_TRUE(EXCLUDEBOND(phase, 1, 1, only(EQUIV_SAME_ATOM)));
  EXPECT_FALSE(EXCLUDEBOND(phase, 1, 2, only(EQUIV_SAME_ATOM)));
  EXPECT_TRUE(EXCLUDEBOND(phase, 1, 2, only(SAME_ELEMENT)));
  EXPECT_TRUE(EXCLUDEBOND(phase, 4, 5, only(CATION_CATION)));
  EXPECT_FALSE(EXCLUDEBOND(phase, 1, 5, only(CATION_CATION)));
  EXPECT_TRUE(EXCLUDEBOND(phase, 1, 2, only(ANION_ANION)));
  EXPECT_TRUE(EXCLUDEBOND(phase, 3, 1, only(ANION_ANION))) << "Cl-O";
  EXPECT_FALSE(EXCLUDEBOND(phase, 4, 1, only(ANION_ANION))) << "N-O is cation-anion here";
  EXPECT_FALSE(EXCLUDEBOND(phase, 1, 1, include_all));
}

TEST(CLASSES, TWO_UNKNOWN_ELEMENTS_ARE_THE_SAME_ELEMENT) {
  auto phase = MADE({9, 9, 9}, {90, 90, 90}, "P 1", {{"Si1", {0, 0, 0}}, {"Si2", {0.2f, 0, 0}}});
  phase.ATOM(1).CHEMSYMB = "";
  BOND_EXCLUSION bondex{};
  bondex(SAME_ELEMENT) = true;
  EXPECT_FALSE(EXCLUDEBOND(phase, 1, 2, bondex)) << "unknown and Si";
  phase.ATOM(2).CHEMSYMB = "";
  EXPECT_TRUE(EXCLUDEBOND(phase, 1, 2, bondex));
}

// ---- the search ----

TEST(SEARCH, BONDS_OF_PEROVSKITE) {
  auto phase = PEROVSKITE();
  CALC_BONDS_ALLATOMS(phase, 0.01f, 3.0f, &exclude_all);
  EXPECT_EQ(phase.NBONDS(1), 12);
  EXPECT_EQ(phase.NBONDS(2), 6);
  EXPECT_EQ(phase.NBONDS(3), 6) << "two Ti and four Sr";
  for (int j = 1; j <= 6; ++j) EXPECT_FLOAT_EQ(phase.BONDS(2, j, BOND_LENGTH), 2.0f);
  EXPECT_EQ(phase.BONDS(2, 1, BOND_CENTRE), 2.0f);
  EXPECT_EQ(phase.BONDS(2, 1, BOND_LIGAND), 3.0f);
  EXPECT_FLOAT_EQ(phase.SHORT_BOND, 2.0f);
  EXPECT_EQ(phase.BOND_CEN(2, CENTRE_ATOM), 2.0f);
  EXPECT_EQ(CENTRE_POSITION(phase, 2), (VECTOR3{0.5f, 0.5f, 0.5f}));
  for (int j = 1; j <= 6; ++j) {
    const int op = phase.BONDS.OPERATOR(2, j);
    ASSERT_GT(op, 0);
    const VECTOR3 image = XTAL::APPLY_OP(phase.SPG.SYMOP(op), phase.ATOM(3).X);
    const VECTOR3 reached = XTAL::ADD(phase.ATOM(2).X, phase.BONDS.VECTOR(2, j));
    EXPECT_EQ(XTAL::MODULO_LAT(image), XTAL::MODULO_LAT(reached)) << j;
  }
}

TEST(SEARCH, A_LIMIT_BELONGS_TO_THE_RANGE) {
  auto phase = PEROVSKITE();
  CALC_BONDS_ALLATOMS(phase, 0.01f, 2.0f, &exclude_all);
  EXPECT_EQ(phase.NBONDS(2), 6);
}

TEST(SEARCH, IMAGES_OF_THE_SAME_ATOM_ARE_NO_BONDS_WHEN_EXCLUDED) {
  auto phase = MADE({2, 9, 9}, {90, 90, 90}, "P 1", {{"Si1", {0, 0, 0}}});
  CALC_BONDS_ALLATOMS(phase, 0.01f, 2.2f, &exclude_all);
  EXPECT_EQ(phase.NBONDS(1), 0);
  EXPECT_EQ(phase.SHORT_BOND, 3.0f) << "no bonds at all";
  CALC_BONDS_ALLATOMS(phase, 0.01f, 2.2f);
  EXPECT_EQ(phase.NBONDS(1), 2);
}

TEST(SEARCH, OMITTED_ATOMS_AND_DUPLICATES_HAVE_NO_BONDS) {
  auto phase = PEROVSKITE();
  phase.ATOM_USE(2) = ATOM_OMITTED;
  CALC_BONDS_ALLATOMS(phase, 0.01f, 2.2f, &exclude_all);
  EXPECT_EQ(phase.NBONDS(2), 0);
  EXPECT_EQ(phase.NBONDS(3), 0) << "an omitted atom is no ligand";
}

TEST(SEARCH, A_DUPLICATE_IS_NO_CENTRE) {
  auto phase =
      MADE({9, 9, 9}, {90, 90, 90}, "P 1",
           {{"Mg1", {0, 0, 0}}, {"Fe1", {0, 0, 0}}, {"O1", {0.2f, 0, 0}}, {"Al1", {0.4f, 0, 0}}});
  ASSERT_EQ(phase.ATOM_USE(2), -1);
  CALC_BONDS_ALLATOMS(phase, 0.01f, 2.2f, &exclude_all);
  EXPECT_EQ(phase.NBONDS(1), 1);
  EXPECT_EQ(phase.NBONDS(2), 0);
  EXPECT_EQ(phase.BOND_CEN(2, CENTRE_ATOM), 0.0f);
  EXPECT_EQ(phase.NBONDS(3), 2);
}

TEST(SEARCH, LENGTHS_BELOW_A_TENTH_OF_AN_ANGSTROM_ARE_NO_SHORT_BOND) {
  const auto short_bond = [](float length) {
    auto phase = MADE({10, 10, 10}, {90, 90, 90}, "P 1",
                      {{"Si1", {0, 0, 0}}, {"O1", {length / 10.0f, 0, 0}}, {"O2", {0, 0.28f, 0}}});
    CALC_BONDS_ALLATOMS(phase, 0.01f, 3.5f, &exclude_all);
    EXPECT_EQ(phase.NBONDS(1), 2);
    return phase.SHORT_BOND;
  };
  EXPECT_NEAR(short_bond(0.099f), 2.8f, 1e-5f) << "the next longer one";
  EXPECT_NEAR(short_bond(0.101f), 0.101f, 1e-6f);
}

TEST(SEARCH, CLEARS_WHAT_AN_EARLIER_SEARCH_LEFT) {
  auto phase = PEROVSKITE();
  SET_ERR_KVASTRUCTURES("left over");
  SET_WARN_KVASTRUCTURES("left over");
  CALC_BONDS_ALLATOMS(phase, 0.01f, 2.2f, &exclude_all);
  EXPECT_FALSE(ERR_KVASTRUCTURES);
  EXPECT_EQ(ERR_KVASTRUCTURES_MESS, "");
  EXPECT_FALSE(WARN_KVASTRUCTURES);
  EXPECT_EQ(WARN_KVASTRUCTURES_MESS, "");
}

TEST(SEARCH, ROWS_KEEP_THEIR_ORDER_WHEN_SOME_ARE_LEFT_OUT) {
  auto phase = MADE(
      {9, 9, 9}, {90, 90, 90}, "P 1",
      {{"Si1", {0, 0, 0}}, {"O1", {0.2f, 0, 0}}, {"Al1", {0, 0.2f, 0}}, {"O2", {0, 0, 0.15f}}});
  CALC_BONDS_ALLATOMS(phase, 0.01f, 2.0f, &exclude_all);
  ASSERT_EQ(phase.NBONDS(1), 2);
  EXPECT_EQ(phase.BONDS(1, 1, BOND_LIGAND), 2.0f);
  EXPECT_EQ(phase.BONDS(1, 2, BOND_LIGAND), 4.0f);
  EXPECT_EQ(phase.BONDS(1, 3, BOND_LIGAND), 0.0f) << "the freed row is zero";
}

TEST(SEARCH, MORE_THAN_20_NEIGHBOURS_WARN_AND_LATER_ATOMS_GO_ON) {
  auto phase = MADE({2.5f, 2.5f, 2.5f}, {90, 90, 90}, "P 1",
                    {{"Si1", {0, 0, 0}}, {"O1", {0.5f, 0.5f, 0.5f}}});
  CALC_BONDS_ALLATOMS(phase, 0.01f, 4.5f);
  EXPECT_EQ(phase.NBONDS(1), 20);
  EXPECT_EQ(phase.NBONDS(2), 20);
  EXPECT_TRUE(WARN_KVASTRUCTURES);
}

TEST(RADIUS, NINE_TENTHS_OF_THE_SHORTEST_BOND) {
  auto phase = PEROVSKITE();
  phase.SHORT_BOND = 2.0f;
  EXPECT_FLOAT_EQ(MATCHING_RADIUS(phase), 1.8f);
  phase.SHORT_BOND = 0.1f;
  EXPECT_EQ(MATCHING_RADIUS(phase), 0.5f);
  phase.SHORT_BOND = 0.11f;
  EXPECT_EQ(MATCHING_RADIUS(phase), 0.5f) << "0.099 is below the limit as well";
  phase.SHORT_BOND = 0.12f;
  EXPECT_FLOAT_EQ(MATCHING_RADIUS(phase), 0.108f);
}

// ---- the same bonds in other blocks ----

TEST(MEASURING, THE_REFERENCE_MATCHES_ITSELF) {
  auto quartz = QUARTZ(QUARTZ_SITES());
  CALC(quartz);
  ASSERT_EQ(quartz.NBONDS(1), 4);
  EXPECT_EQ(quartz.BOND_CEN(1, CENTRE_ATOM), 1.0f);
  EXPECT_FLOAT_EQ(quartz.BOND_CEN(1, CENTRE_SYMCODE), 1.555f);
  const std::vector<float> lengths = LENGTHS(quartz, 1);
  // From an independent calculation with these parameters: 1.60403, 1.60405, 1.61304, 1.61307.
  EXPECT_NEAR(lengths[0], 1.60403f, 0.00002f);
  EXPECT_NEAR(lengths[1], 1.60405f, 0.00002f);
  EXPECT_NEAR(lengths[2], 1.61304f, 0.00002f);
  EXPECT_NEAR(lengths[3], 1.61307f, 0.00002f);
  for (int j = 1; j <= 4; ++j) EXPECT_GT(quartz.BONDS(1, j, BOND_LENGTH_STD), 0.0f);
}

TEST(MEASURING, OTHER_ORDER_AND_LABELS_GIVE_THE_SAME_ROWS) {
  auto reference = QUARTZ(QUARTZ_SITES());
  CALC(reference);
  std::vector<SITE> other{QUARTZ_SITES()[1], QUARTZ_SITES()[0]};
  other[0].LABEL = "OX7";
  other[1].LABEL = "T";
  const auto block = MEASURED(reference, QUARTZ(other));
  ASSERT_EQ(block.NBONDS(1), 4);
  EXPECT_EQ(block.BONDS(1, 1, BOND_CENTRE), 2.0f) << "its own number of the centre";
  EXPECT_EQ(block.BONDS(1, 1, BOND_LIGAND), 1.0f);
  for (int j = 1; j <= 4; ++j) {
    EXPECT_EQ(block.BONDS(1, j, BOND_LENGTH), reference.BONDS(1, j, BOND_LENGTH));
    EXPECT_EQ(block.BONDS(1, j, BOND_LENGTH_STD), reference.BONDS(1, j, BOND_LENGTH_STD));
  }
}

TEST(MEASURING, ANOTHER_ASYMMETRIC_UNIT_GIVES_THE_SAME_LENGTHS) {
  auto reference = QUARTZ(QUARTZ_SITES());
  CALC(reference);
  std::vector<SITE> moved = QUARTZ_SITES();
  moved[1].X = XTAL::APPLY_OP(reference.SPG.SYMOP(3), moved[1].X);
  for (float& x : moved[0].X) x += 2.0f;
  const auto block = MEASURED(reference, QUARTZ(moved));
  ASSERT_EQ(block.NBONDS(1), 4);
  for (int j = 1; j <= 4; ++j)
    EXPECT_NEAR(block.BONDS(1, j, BOND_LENGTH), reference.BONDS(1, j, BOND_LENGTH), 1e-5f);
}

TEST(MEASURING, THE_STRUCTURE_IN_P1_HAS_THE_SAME_BONDS) {
  auto symmetric = QUARTZ(QUARTZ_SITES());
  CALC(symmetric);
  std::vector<SITE> all;
  for (const SITE& site : QUARTZ_SITES())
    for (int op = 1; op <= symmetric.SPG.MULTIP; ++op) {
      const VECTOR3 x = XTAL::MODULO_LAT(XTAL::APPLY_OP(symmetric.SPG.SYMOP(op), site.X));
      const bool known = std::any_of(all.begin(), all.end(), [&](const SITE& other) {
        const VECTOR3 d = XTAL::SUBTRACT(other.X, x);
        return XTAL::LENGTH(VECTOR3{d[0] - std::round(d[0]), d[1] - std::round(d[1]),
                                    d[2] - std::round(d[2])}) < 0.001f;
      });
      if (!known) all.push_back({site.LABEL, x});
    }
  ASSERT_EQ(all.size(), 9u) << "three Si and six O";
  auto p1 = MADE({4.9137f, 4.9137f, 5.4047f}, {90, 90, 120}, "P 1", all);
  CALC(p1);
  for (int i = 1; i <= 3; ++i) {
    const std::vector<float> lengths = LENGTHS(p1, i);
    ASSERT_EQ(lengths.size(), 4u);
    for (std::size_t j = 0; j < 4; ++j) EXPECT_NEAR(lengths[j], LENGTHS(symmetric, 1)[j], 1e-5f);
  }
}

TEST(MEASURING, A_SHIFTED_ORIGIN_MATCHES_NOTHING) {
  auto reference =
      MADE({9, 9, 9}, {90, 90, 90}, "P 1", {{"Si1", {0, 0, 0}}, {"O1", {0.18f, 0, 0}}});
  CALC(reference);
  ASSERT_EQ(reference.NBONDS(1), 1);
  const auto block = MEASURED(reference, MADE({9, 9, 9}, {90, 90, 90}, "P 1",
                                              {{"Si1", {0, 0.5f, 0}}, {"O1", {0.18f, 0.5f, 0}}}));
  EXPECT_EQ(block.NBONDS(1), NO_CENTRE);
  EXPECT_EQ(block.NBONDS(2), NO_CENTRE);
}

TEST(MEASURING, AN_OMITTED_CENTRE_HAS_NO_BONDS_BUT_IS_THERE) {
  auto reference = PEROVSKITE();
  CALC(reference);
  auto block = PEROVSKITE(3.9f);
  block.ATOM_USE(2) = ATOM_OMITTED;
  block = MEASURED(reference, block);
  EXPECT_EQ(block.NBONDS(2), 0);
  EXPECT_EQ(block.NBONDS(3), 0) << "its only ligand within range is the omitted atom";
}

TEST(MEASURING, A_MISSING_LIGAND_LEAVES_A_GAP_IN_ITS_ROW) {
  const std::vector<SITE> sites{
      {"Si1", {0.5f, 0.5f, 0.5f}}, {"O1", {0.68f, 0.5f, 0.5f}}, {"O2", {0.5f, 0.68f, 0.5f}}};
  auto reference = MADE({9, 9, 9}, {90, 90, 90}, "P 1", sites);
  CALC(reference);
  ASSERT_EQ(reference.NBONDS(1), 2);
  const auto block =
      MEASURED(reference, MADE({9, 9, 9}, {90, 90, 90}, "P 1", {sites[0], sites[2]}));
  EXPECT_EQ(block.NBONDS(1), 1);
  EXPECT_EQ(block.BONDS(1, 1, BOND_CENTRE), 0.0f);
  EXPECT_EQ(block.BONDS(1, 2, BOND_CENTRE), 1.0f);
  EXPECT_NEAR(block.BONDS(1, 2, BOND_LENGTH), 1.62f, 1e-4f);
}

TEST(MEASURING, RIGID_BOND_LENGTHS_NEED_BOTH_B) {
  auto phase = PEROVSKITE();
  phase.ATOM(2).BISO = 0.3f;
  phase.ATOM(3).BISO = 0.5f;
  CALC(phase);
  // sqrt(4 + 3 / (8 pi^2) * 0.2)
  EXPECT_NEAR(phase.BONDS(2, 1, BOND_LENGTH_SRB), std::sqrt(4.0f + 0.03799544f * 0.2f), 1e-6f);
  EXPECT_EQ(phase.BONDS(2, 1, BOND_DISPL_CENTRE), 0.0f) << "isotropic atoms have no direction";
  phase.ATOM(3).BISO = 0.0f;
  CALC(phase);
  EXPECT_EQ(phase.BONDS(2, 1, BOND_LENGTH_SRB), 0.0f);
}

TEST(MEASURING, DISPLACEMENTS_ALONG_THE_BOND) {
  auto phase = MADE({9, 9, 9}, {90, 90, 90}, "P 1", {{"Si1", {0, 0, 0}}, {"O1", {0.18f, 0, 0}}});
  for (int i = 1; i <= 2; ++i) {
    phase.ATOM(i).THTYPE = "Aniso";
    phase.ATOM(i).UTYPE = "beta";
    const float u11 = i == 1 ? 0.01f : 0.04f;
    XTAL::U_TO_BETA({u11, 0.09f, 0.09f, 0, 0, 0}, phase.ATOM(i).U, phase.CELL);
  }
  CALC(phase);
  EXPECT_NEAR(phase.BONDS(1, 1, BOND_DISPL_CENTRE), 0.1f, 1e-5f);
  EXPECT_NEAR(phase.BONDS(1, 1, BOND_DISPL_LIGAND), 0.2f, 1e-5f);
}

TEST(MEASURING, THE_CENTRE_SAYS_WHETHER_THERE_ARE_DISPLACEMENTS_ALONG_THE_BOND) {
  auto phase = MADE({9, 9, 9}, {90, 90, 90}, "P 1", {{"Si1", {0, 0, 0}}, {"O1", {0.18f, 0, 0}}});
  phase.ATOM(2).THTYPE = "Aniso";
  phase.ATOM(2).UTYPE = "beta";
  XTAL::U_TO_BETA({0.04f, 0.09f, 0.09f, 0, 0, 0}, phase.ATOM(2).U, phase.CELL);
  CALC(phase);
  EXPECT_EQ(phase.BONDS(1, 1, BOND_DISPL_CENTRE), 0.0f);
  EXPECT_EQ(phase.BONDS(1, 1, BOND_DISPL_LIGAND), 0.0f) << "the centre is isotropic";
  EXPECT_NEAR(phase.BONDS(2, 1, BOND_DISPL_CENTRE), 0.2f, 1e-5f);
  EXPECT_EQ(phase.BONDS(2, 1, BOND_DISPL_LIGAND), 0.0f) << "the silicon does not move";
}

TEST(MEASURING, RIGID_BOND_LENGTHS_ARE_FOR_ANISOTROPIC_ATOMS_ALIKE) {
  auto phase = PEROVSKITE();
  phase.ATOM(2).BISO = 0.3f;
  phase.ATOM(3).BISO = 0.5f;
  for (int i : {2, 3}) {
    phase.ATOM(i).THTYPE = "Aniso";
    phase.ATOM(i).UTYPE = "beta";
  }
  CALC(phase);
  EXPECT_NEAR(phase.BONDS(2, 1, BOND_LENGTH_SRB), std::sqrt(4.0f + 0.03799544f * 0.2f), 1e-6f);
}

TEST(MEASURING, SYMMETRY_CODES_BRING_THE_LIGAND_TO_ITS_PLACE) {
  auto quartz = QUARTZ(QUARTZ_SITES());
  CALC(quartz);
  for (int j = 1; j <= 4; ++j) {
    const float code = quartz.BONDS(1, j, BOND_SYMCODE);
    const int op = static_cast<int>(code);
    const int digits = static_cast<int>(std::lround((code - static_cast<float>(op)) * 1000.0f));
    VECTOR3 x = XTAL::APPLY_OP(quartz.SPG.SYMOP(op), quartz.ATOM(2).X);
    x = XTAL::ADD(x,
                  {static_cast<float>(digits / 100 - 5), static_cast<float>(digits / 10 % 10 - 5),
                   static_cast<float>(digits % 10 - 5)});
    const VECTOR3 delta = XTAL::SUBTRACT(x, quartz.ATOM(1).X);
    for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(delta[k], quartz.BONDS.VECTOR(1, j)[k], 1e-5f);
  }
}
