// Compares the neighbour search with the plain loops, row by row, bit by bit.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>  // for min
#include <bit>
#include <string>

#include "plain_loops.h"
#include "src/kva_crystal_structures/atom_search.h"

namespace PLAIN_LOOPS {

inline unsigned BITS(float x) {
  return std::bit_cast<unsigned>(x);
}

// Returns how many rows the search has.
inline int EXPECT_SAME(const ATOM_IMAGES& images, const VECTOR3& x, float dmin, float dmax,
                       const std::string& options) {
  const NEIGHBOURS judge =
      SEARCH(images.PHASE, x, dmin, dmax, options.find("OMIT") != std::string::npos,
             options.find("FINDOPS") != std::string::npos);
  INIT_ERR_KVASTRUCTURES();
  int count = -1;
  NEIGHBOUR_TABLE table;
  DISTANCE_ARRAY(images, x, dmin, dmax, count, table, options);
  EXPECT_EQ(count, judge.COUNT) << images.PHASE.SPG.SPG_SYMB << " dmax " << dmax;
  EXPECT_EQ(WARN_KVASTRUCTURES_MESS.starts_with("Too many distances"), judge.FULL);
  EXPECT_EQ(table.COUNT(), 20);
  for (int r = 1; r <= std::min(count, judge.COUNT); ++r) {
    const auto& row = judge.ROWS[static_cast<std::size_t>(r - 1)];
    EXPECT_EQ(table(r, 1), 0.0f);
    EXPECT_EQ(BITS(table(r, NEIGHBOUR_DISTANCE)), BITS(row[0]));
    EXPECT_EQ(table(r, 3), 0.0f);
    for (int k = 0; k < 3; ++k)
      EXPECT_EQ(BITS(table(r, NEIGHBOUR_VECTOR_X + k)), BITS(row[static_cast<std::size_t>(k + 1)]));
    EXPECT_EQ(table(r, NEIGHBOUR_ATOM), row[4]);
    EXPECT_EQ(table(r, NEIGHBOUR_OPERATOR), row[5]);
  }
  return judge.COUNT;
}

inline int EXPECT_SAME(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x, float dmin,
                       float dmax, const std::string& options) {
  return EXPECT_SAME(IMAGES_OF(phase), x, dmin, dmax, options);
}

}  // namespace PLAIN_LOOPS
