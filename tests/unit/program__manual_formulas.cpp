// The formulas that the manual states, worked out by another program for what the program writes.
#include <gtest/gtest.h>

#include "said_by.h"

// The script holds the structure and the formulas.
TEST(MANUAL_FORMULAS, GIVE_WHAT_THE_PROGRAM_GIVES) {
  if (std::system("/usr/bin/python3 -c 'import numpy' 2>/dev/null") != 0)
    GTEST_SKIP() << "python3-numpy is not installed";
  int status = -1;
  const std::string said = PROGRAM_TESTS::JUDGED_BY("manual_formulas.py", status);
  EXPECT_EQ(status, 0) << said;
  EXPECT_TRUE(said.starts_with("216 values by 27 formulas, 0 differ\n")) << said;
}
