// What odd and random files showed of the foundations.
#include <gtest/gtest.h>

#include "foundations/XTAL_Unit_Cell.h"

using namespace XTAL;

namespace {

bool SENSIBLE(const VECTOR3& angles) {
  CRYSTAL_CELL cell;
  SET_CELL_RECORD({5, 6, 7}, angles, cell);
  return IS_SENSIBLE(cell);
}

}  // namespace

// An angle of 450 degrees was read as what it is worth in the formulae, 90 degrees, and listed as
// 450.
TEST(FOUND_BY_FUZZING, NO_ANGLE_OF_A_CELL_IS_HALF_A_TURN_OR_MORE) {
  EXPECT_TRUE(SENSIBLE({90, 179, 90}));
  for (const float angle : {180.0f, 270.0f, 359.0f, 360.0f, 450.0f, 1e30f}) {
    EXPECT_FALSE(SENSIBLE({angle, 90, 90})) << angle;
    EXPECT_FALSE(SENSIBLE({90, angle, 90})) << angle;
    EXPECT_FALSE(SENSIBLE({90, 90, angle})) << angle;
  }
}
