// What CALC says of the atoms that it has matched with those of the reference block: other
// elements, shared places, other groups; and nothing where a series is in order.
#include <new>  // for bad_alloc

#include "facetor6_commands__list_blocks.h"
#include "refused_memory.h"
#include "src/facetor6_calc/calc.h"

using namespace LIST_TESTS;

namespace {

class MATCHED_SITES : public BLOCKS {
 protected:
  static void ADD_P1(const std::string& title, const std::vector<SITE>& sites, float edge = 10.0f) {
    ADD(title, MADE({edge, edge, edge}, {90, 90, 90}, "P 1", sites));
  }

  // The warnings of CALC that name a block, without what all warnings begin with.
  static std::vector<std::string> WARNINGS(float dmax = 2.2f) {
    RUN.DMAX = dmax;
    const std::string said = SAID("\n", FACETOR_CALC::RUN_FACETOR_CALC_BONDS);
    std::vector<std::string> warnings;
    std::istringstream lines(said);
    for (std::string line; std::getline(lines, line);)
      if (line.starts_with(begin) && line.find("lock #") != std::string::npos)
        warnings.push_back(line.substr(begin.size()));
    return warnings;
  }

 private:
  static inline const std::string begin = "*****WARNING: ";
};

using LINES = std::vector<std::string>;

// SiO4 with oxygens at 1.6 angstroms, and a fluorine that is bonded to the magnesium.
const std::vector<SITE> group_of_atoms{{"Si1", {0.2f, 0.2f, 0.2f}}, {"O1", {0.36f, 0.2f, 0.2f}},
                                       {"O2", {0.2f, 0.36f, 0.2f}}, {"O3", {0.2f, 0.2f, 0.36f}},
                                       {"Mg1", {0.7f, 0.7f, 0.7f}}, {"F1", {0.88f, 0.7f, 0.7f}}};

std::vector<SITE> WITH(std::vector<SITE> sites, std::size_t at, const SITE& site) {
  sites[at] = site;
  return sites;
}

std::vector<SITE> WITHOUT(std::vector<SITE> sites, std::ptrdiff_t at) {
  sites.erase(sites.begin() + at);
  return sites;
}

}  // namespace

// ---- what is right ----

// Other labels, another order, atoms moved by up to 0.4 angstroms.
TEST_F(MATCHED_SITES, PERMUTED_LABELS_AND_SHIFTED_ATOMS_ARE_SILENT) {
  ADD_P1("first", group_of_atoms);
  ADD_P1("second", {{"F9", {0.9f, 0.71f, 0.69f}},
                    {"O3", {0.2f, 0.38f, 0.21f}},
                    {"O1", {0.21f, 0.2f, 0.38f}},
                    {"Si7", {0.2f, 0.22f, 0.2f}},
                    {"Mg3", {0.72f, 0.72f, 0.72f}},
                    {"O2", {0.39f, 0.2f, 0.22f}}});
  EXPECT_EQ(WARNINGS(), LINES{});
  EXPECT_EQ(PHASE(2).BONDS.LIGAND(1, 1), 6) << "the atom at the place of the first oxygen";
  EXPECT_EQ(PHASE(2).NBONDS(1), 3);
}

// Silicon and aluminium on one site, each listed at another of its two images, against a block that
// lists the silicon alone.
TEST_F(MATCHED_SITES, ATOMS_THAT_SHARE_A_SITE_BY_SYMMETRY_ARE_SILENT) {
  const std::vector<SITE> one_listed{
      {"Si1", {0.6f, 0.6f, 0.5f}}, {"O1", {0.75f, 0.55f, 0.5f}}, {"Al2", {0.9f, 0.5f, 0.5f}}};
  std::vector<SITE> both_listed = one_listed;
  both_listed[0].LABEL = "Al1";
  both_listed.push_back({"Si1", {0.4f, 0.4f, 0.5f}});
  const auto add = [](const std::string& title, const std::vector<SITE>& sites) {
    ADD(title, MADE({10, 10, 10}, {90, 90, 90}, "P -1", sites));
  };
  add("one", one_listed);
  add("both", both_listed);
  EXPECT_EQ(WARNINGS(), LINES{});
  EXPECT_EQ(PHASE(2).BONDS.LIGAND(2, 1), 1) << "Al1 in the place of Si1";
  IREFERENCE = 2;
  EXPECT_EQ(WARNINGS(), LINES{});
}

// Magnesium gives way to iron, hydrogen to deuterium; a mixed site has one element in common; an
// unknown element may be anything.
TEST_F(MATCHED_SITES, A_SOLID_SOLUTION_IS_SILENT) {
  const SITE iron{"Fe1", {0.7f, 0.7f, 0.7f}};
  ADD_P1("first", group_of_atoms);
  ADD_P1("second", WITH(group_of_atoms, 4, iron));
  std::vector<SITE> mixed = group_of_atoms;
  mixed.push_back(iron);
  ADD_P1("third", mixed);
  ADD_P1("fourth", WITH(group_of_atoms, 3, {"?", {0.2f, 0.2f, 0.36f}}));
  EXPECT_EQ(WARNINGS(), LINES{});
  INIT_PHASE_LIST();
  ADD_P1("first", {{"O1", {0.2f, 0.2f, 0.2f}}, {"H1", {0.3f, 0.2f, 0.2f}}});
  ADD_P1("second", {{"O1", {0.2f, 0.2f, 0.2f}}, {"D1", {0.3f, 0.2f, 0.2f}}});
  EXPECT_EQ(WARNINGS(), LINES{});
  EXPECT_EQ(PHASE(2).NBONDS(1), 1);
}

// The nearest other oxygen is 2.26 angstroms away from the vacancy, the radius 1.44.
TEST_F(MATCHED_SITES, A_VACANCY_THAT_NOTHING_FILLS_IS_SILENT) {
  ADD_P1("first", group_of_atoms);
  ADD_P1("second", WITHOUT(group_of_atoms, 2));
  EXPECT_EQ(WARNINGS(), LINES{});
  EXPECT_EQ(PHASE(2).NBONDS(1), 2);
  EXPECT_FALSE(PHASE(2).BONDS.HAS_BOND(1, 2));
}

// The operators of P 21/c, listed in another order.
TEST_F(MATCHED_SITES, OPERATORS_IN_ANOTHER_ORDER_ARE_THE_SAME_GROUP) {
  const CRYSTAL_STRUCTURE_TYPE phase =
      MADE({9, 10, 11}, {90, 100, 90}, "P 21/c",
           {{"Si1", {0.1f, 0.1f, 0.1f}}, {"O1", {0.25f, 0.1f, 0.1f}}});
  CRYSTAL_STRUCTURE_TYPE other = phase;
  std::vector<XTAL::SYM_OP> operators = other.SPG.SYMOP.ITEMS();
  std::swap(operators[1], operators[3]);
  other.SPG.SYMOP = operators;
  ADD("first", phase);
  ADD("second", other);
  EXPECT_EQ(WARNINGS(), LINES{});
}

// ---- what is doubtful ----

// Oxygen and fluorine have changed places, and so have silicon and magnesium: four sites and the
// element of each stands on another site of the block.
TEST_F(MATCHED_SITES, ANOTHER_ELEMENT_WHOSE_OWN_STANDS_ELSEWHERE) {
  ADD_P1("first", group_of_atoms);
  ADD_P1("b", WITH(WITH(group_of_atoms, 3, {"F3", {0.2f, 0.2f, 0.36f}}), 5,
                   {"O9", {0.88f, 0.7f, 0.7f}}));
  ADD_P1("c", WITH(WITH(group_of_atoms, 0, {"Mg2", {0.2f, 0.2f, 0.2f}}), 4,
                   {"Si2", {0.7f, 0.7f, 0.7f}}));
  EXPECT_EQ(WARNINGS(),
            (LINES{"In block #  2 b: 2 sites are matched with another element, first O3 with F3",
                   "In block #  3 c: 2 sites are matched with another element, first Si1 with "
                   "Mg2"}));
}

// Fluorine for hydroxyl oxygen is warned of only where oxygen stands elsewhere in the block; a
// cation in the place of an anion always.
TEST_F(MATCHED_SITES, A_CATION_IN_THE_PLACE_OF_AN_ANION) {
  const std::vector<SITE> pair{{"Mg1", {0.2f, 0.2f, 0.2f}}, {"F1", {0.38f, 0.2f, 0.2f}}};
  ADD_P1("first", pair);
  ADD_P1("second", WITH(pair, 1, {"Cl1", {0.38f, 0.2f, 0.2f}}));
  ADD_P1("third", WITH(pair, 1, {"Na1", {0.38f, 0.2f, 0.2f}}));
  EXPECT_EQ(
      WARNINGS(),
      LINES{"In block #  3 third: 1 sites are matched with another element, first F1 with Na1"});
}

// Two places of an oxygen, 1.1 angstroms apart, of which the second block has one: both are found
// there. Where both are there, or they are only one in all blocks, nothing is said.
TEST_F(MATCHED_SITES, A_SPLIT_SITE_THAT_CLOSES) {
  const std::vector<SITE> split{
      {"Si1", {0.2f, 0.2f, 0.2f}}, {"O1", {0.36f, 0.2f, 0.2f}}, {"O1a", {0.34f, 0.3f, 0.2f}}};
  ADD_P1("first", split);
  ADD_P1("second", split);
  ADD_P1("third", WITHOUT(split, 2));
  EXPECT_EQ(WARNINGS(),
            LINES{"In block #  3 third: 2 sites share their place with another site, first O1"});
}

// The same where the atom that fills the vacancy is an image under a two-fold axis of the atom that
// is listed far away: O1 at x, y, z and O2 at 1/2 - x, 1/2 - y, z + 0.09.
TEST_F(MATCHED_SITES, A_VACANCY_FILLED_BY_AN_IMAGE_OF_ANOTHER_SITE) {
  const std::vector<SITE> sites{
      {"Si1", {0.25f, 0.25f, 0.3f}}, {"O1", {0.41f, 0.25f, 0.3f}}, {"O2", {0.59f, 0.75f, 0.42f}}};
  for (const auto& listed : {sites, WITHOUT(sites, 1)})
    ADD(listed.size() == 3 ? "first" : "second", MADE({10, 10, 10}, {90, 90, 90}, "P 2", listed));
  // Along z lies the two-fold axis of another setting; P 2 has it along y.
  for (int block = 1; block <= 2; ++block) XTAL::SET_SPACEGROUP("P 1 1 2", PHASE(block).SPG);
  EXPECT_EQ(WARNINGS(2.3f),
            LINES{"In block #  2 second: 2 sites share their place with another site, first O1"});
}

// The second block has one atom, between the two places: at 0.9 angstroms from one, 0.7 from the
// other. It is the centre, and no ligand of its own.
TEST_F(MATCHED_SITES, A_LIGAND_AT_THE_PLACE_OF_ITS_CENTRE_IS_NONE) {
  ADD_P1("first", {{"Si1", {0.2f, 0.2f, 0.2f}}, {"O1", {0.36f, 0.2f, 0.2f}}});
  ADD_P1("second", {{"Si1", {0.29f, 0.2f, 0.2f}}});
  const LINES shared{
      "In block #  2 second: 1 sites are matched with another element, first O1 with Si1",
      "In block #  2 second: 2 sites share their place with another site, first Si1"};
  EXPECT_EQ(WARNINGS(), shared);
  EXPECT_EQ(PHASE(2).NBONDS(1), 0);
  EXPECT_EQ(PHASE(2).POLYHEDRON(1, POLY_MEAN_LENGTH), 0.0f);
  EXPECT_EQ(ROWS(SAID("", [] { FACETOR_LIST_BONDS(1); }), start_2),
            start_2 + " No value    0  0.0000\n");
}

// ---- groups ----

TEST_F(MATCHED_SITES, ANOTHER_GROUP_AND_ANOTHER_SETTING) {
  const std::vector<SITE> sites{{"Si1", {0.1f, 0.25f, 0.1f}}, {"O1", {0.26f, 0.25f, 0.1f}}};
  const auto add = [&](const std::string& title, const std::string& symbol) {
    ADD(title, MADE({10, 10, 10}, {90, 90, 90}, symbol, sites));
  };
  add("first", "P n m a");
  add("second", "P n m a");
  add("third", "P b n m");
  add("fourth", "P 1");
  add("fifth", "P n m a");
  std::vector<XTAL::SYM_OP> operators = PHASE(5).SPG.SYMOP.ITEMS();
  operators[1].TR[0] = operators[1].TR[0] > 0.4f ? 0.0f : 0.5f;
  PHASE(5).SPG.SYMOP = operators;
  const LINES warnings = WARNINGS();
  const LINES of_groups{
      "Block #  3 third has the space group P b n m, the reference block has P n m a",
      "Block #  4 fourth has the space group P 1, the reference block has P n m a",
      "Block #  5 fifth has the space group P n m a, the reference block has P n m a, with other "
      "operators"};
  LINES found;
  for (const std::string& warning : warnings)
    if (warning.starts_with("Block")) found.push_back(warning);
  EXPECT_EQ(found, of_groups);
}

// A perovskite on the hexagonal axes of R -3 c, and above the transition on its cubic axes: La1 at
// 0, 0, 1/4 lies as far from the aluminium at 0, 0, 0 as from the oxygen at 0, 0, 1/2.
TEST_F(MATCHED_SITES, A_SERIES_THROUGH_A_TRANSITION) {
  ADD("cold", MADE({5.37f, 5.37f, 13.1f}, {90, 90, 120}, "R -3 c",
                   {{"La1", {0, 0, 0.25f}}, {"Al1", {0, 0, 0}}, {"O1", {0.525f, 0, 0.25f}}}));
  ADD("warm", MADE({5.37f, 5.37f, 13.12f}, {90, 90, 120}, "R -3 c",
                   {{"La1", {0, 0, 0.25f}}, {"Al1", {0, 0, 0}}, {"O1", {0.51f, 0, 0.25f}}}));
  ADD("hot", MADE({3.8f, 3.8f, 3.8f}, {90, 90, 90}, "P m -3 m",
                  {{"La1", {0.5f, 0.5f, 0.5f}}, {"Al1", {0, 0, 0}}, {"O1", {0, 0, 0.5f}}}));
  const LINES warnings = WARNINGS(2.8f);
  ASSERT_GE(warnings.size(), 2u);
  EXPECT_TRUE(warnings.front().starts_with("In block #  3 hot: "));
  EXPECT_TRUE(
      warnings.front().ends_with(" sites are matched with another element, first La1 with Al1"));
  EXPECT_EQ(warnings.back(),
            "Block #  3 hot has the space group P m -3 m, the reference block has R -3 c");
}

// ---- results and their limits ----

TEST_F(MATCHED_SITES, TABLES_SHOW_THE_LIMITS_OF_THE_CALCULATION) {
  ADD_P1("first", group_of_atoms);
  WARNINGS(2.0f);
  RUN.DMIN = 1.0f;
  RUN.DMAX = 3.0f;
  EXPECT_NE(
      SAID("", [] { FACETOR_LIST_BONDS(1); }).find("\n     BETWEEN  0.01 AND  2.00 ANGSTROM\n"),
      std::string::npos);
}

// The second block's 37 images of 20 bytes find no room, when the first has been measured.
TEST_F(MATCHED_SITES, WITHOUT_MEMORY_THERE_ARE_NO_RESULTS) {
  std::vector<SITE> many = group_of_atoms;
  while (many.size() < 37)
    many.push_back({"O1", {0.01f * static_cast<float>(many.size()), 0.9f, 0.1f}});
  ADD_P1("first", group_of_atoms);
  ADD_P1("second", many);
  WARNINGS();
  ASSERT_EQ(PHASE(1).NBONDS(1), 3);
  REFUSED_MEMORY::refused = 37 * sizeof(ATOM_IMAGE);
  SAID("\n", [] { EXPECT_THROW(FACETOR_CALC::RUN_FACETOR_CALC_BONDS(), std::bad_alloc); });
  REFUSED_MEMORY::refused = 0;
  EXPECT_EQ(SUM_NBONDS(PHASE(1)), 0);
  EXPECT_EQ(PHASE(1).BONDS.ROWS_OF(1), 0);
}
