// Angles and their esds, as the program writes them, against random draws by another program.
#include <gtest/gtest.h>

#include "said_by.h"

// The script holds the structures, what it compares and how near the esds must be.
TEST(ANGLE_ESDS, ARE_THE_SPREADS_OF_RANDOM_DRAWS) {
  if (std::system("/usr/bin/python3 -c 'import gemmi, numpy' 2>/dev/null") != 0)
    GTEST_SKIP() << "python3-gemmi and python3-numpy are not installed";
  int status = -1;
  const std::string said = PROGRAM_TESTS::JUDGED_BY("angle_esds.py", status);
  EXPECT_EQ(status, 0) << said;
  EXPECT_NE(said.find("rutile: 12 fixed, "), std::string::npos) << said;
}
