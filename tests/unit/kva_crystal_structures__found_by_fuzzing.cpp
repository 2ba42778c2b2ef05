// What odd and random files showed of the model.
#include <gtest/gtest.h>

#include <ctime>  // for clock
#include <random>

#include "src/kva_crystal_structures/shared_sites.h"
#include "structures.h"

using namespace STRUCTURES;

namespace {

// Marks duplicates by looking at every pair of atoms: what the faster way must give.
void MARK_BY_ALL_PAIRS(CRYSTAL_STRUCTURE_TYPE& phase) {
  for (int i = 1; i <= phase.NATOMS; ++i) {
    phase.ATOM_USE(i) = ATOM_USED;
    for (int slot = 1; slot <= MAX_DUPLICATES; ++slot) phase.ATOM_DUP(i, slot) = 0;
  }
  for (int i = 1; i < phase.NATOMS; ++i) {
    if (phase.ATOM_USE(i) <= ATOM_OMITTED) continue;
    for (int j = i + 1; j <= phase.NATOMS; ++j) {
      if (!(XTAL::DISTANCE_FRAC(phase.ATOM(i).X, phase.ATOM(j).X, phase.CELL) < SAME_SITE))
        continue;
      phase.ATOM_USE(j) = -i;
      for (int slot = 1; slot <= MAX_DUPLICATES; ++slot)
        if (phase.ATOM_DUP(i, slot) == 0) {
          phase.ATOM_DUP(i, slot) = j;
          break;
        }
    }
  }
}

// Atoms in groups whose members lie up to two SAME_SITE apart along each axis, some of them on the
// borders of the cell.
std::vector<SITE> CROWDED_SITES(std::mt19937& random, const VECTOR3& lengths, int groups) {
  std::uniform_real_distribution<float> anywhere(0.0f, 1.0f);
  std::uniform_real_distribution<float> nearby(-2.0f * SAME_SITE, 2.0f * SAME_SITE);
  std::vector<SITE> sites;
  for (int group = 0; group < groups; ++group) {
    VECTOR3 centre{anywhere(random), anywhere(random), anywhere(random)};
    if (group % 3 == 0) centre = {0.0f, 0.5f, centre[2]};
    for (int member = 0; member < 6; ++member) {
      SITE site{"O" + std::to_string(sites.size()), centre};
      for (std::size_t k = 0; k < 3; ++k) site.X[k] += nearby(random) / lengths[k];
      sites.push_back(site);
    }
  }
  std::shuffle(sites.begin(), sites.end(), random);
  return sites;
}

}  // namespace

TEST(FOUND_BY_FUZZING, DUPLICATES_ARE_THOSE_OF_ALL_PAIRS) {
  std::mt19937 random(1);
  int duplicates = 0;
  for (const VECTOR3& lengths : {VECTOR3{5, 6, 7}, VECTOR3{100, 0.05f, 30}, VECTOR3{3, 3, 300}})
    for (const VECTOR3& angles : {VECTOR3{90, 90, 90}, VECTOR3{60, 70, 110}, VECTOR3{30, 30, 30}})
      for (int run = 0; run < 20; ++run) {
        CRYSTAL_STRUCTURE_TYPE phase =
            MADE(lengths, angles, "P 1", CROWDED_SITES(random, lengths, 2 + run));
        CRYSTAL_STRUCTURE_TYPE plain = phase;
        MARK_BY_ALL_PAIRS(plain);
        EXPECT_EQ(phase.ATOM_USE.ITEMS, plain.ATOM_USE.ITEMS);
        for (int i = 1; i <= phase.NATOMS; ++i)
          for (int slot = 1; slot <= MAX_DUPLICATES; ++slot)
            EXPECT_EQ(phase.ATOM_DUP(i, slot), plain.ATOM_DUP(i, slot));
        for (const int use : phase.ATOM_USE) duplicates += use < 0 ? 1 : 0;
      }
  EXPECT_GT(duplicates, 1000) << "there was something to find";
}

// Every atom was compared with every other, which took half a second in the fastest build.
TEST(FOUND_BY_FUZZING, TEN_THOUSAND_ATOMS_ON_ONE_SITE_ARE_CLEANED_WITHIN_A_SECOND) {
  CRYSTAL_STRUCTURE_TYPE phase =
      MADE({90, 90, 90}, {90, 90, 90}, "P 1", std::vector<SITE>(10000, {"O1", {0.5f, 0.5f, 0.5f}}));
  const std::clock_t begin = std::clock();
  CLEAN_CRYSTAL_STRUCTURE_TYPE(phase);
  EXPECT_LT(std::clock() - begin, CLOCKS_PER_SEC);
  EXPECT_EQ(std::count(phase.ATOM_USE.begin(), phase.ATOM_USE.end(), -1), 9999);
}

TEST(FOUND_BY_FUZZING, TEN_THOUSAND_ATOMS_ARE_CLEANED_WITHIN_A_SECOND) {
  std::vector<SITE> sites;
  for (int i = 0; i < 10000; ++i) {
    const auto place = [](int n) { return static_cast<float>(n) / 22.0f; };
    sites.push_back({"O1", {place(i % 22), place(i / 22 % 22), place(i / 484)}});
  }
  CRYSTAL_STRUCTURE_TYPE phase = MADE({90, 90, 90}, {90, 90, 90}, "P 1", sites);
  const std::clock_t begin = std::clock();
  CLEAN_CRYSTAL_STRUCTURE_TYPE(phase);
  EXPECT_LT(std::clock() - begin, CLOCKS_PER_SEC);
  EXPECT_EQ(std::count(phase.ATOM_USE.begin(), phase.ATOM_USE.end(), ATOM_USED), 10000);
}
