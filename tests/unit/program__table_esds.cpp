// The esds of all tables, of Ueq as it is written and of fits, against random draws by another
// program.
#include <gtest/gtest.h>

#include "said_by.h"

// The script holds what it compares and how near the esds must be; here is how much of it there
// was.
TEST(TABLE_ESDS, ARE_THE_SPREADS_OF_RANDOM_DRAWS) {
  if (std::system("/usr/bin/python3 -c 'import gemmi, numpy' 2>/dev/null") != 0)
    GTEST_SKIP() << "python3-gemmi and python3-numpy are not installed";
  ::setenv("DRAWS", "4000", 1);
  int status = -1;
  const std::string said = PROGRAM_TESTS::JUDGED_BY("table_esds.py", status);
  ::unsetenv("DRAWS");
  EXPECT_EQ(status, 0) << said;
  for (const char* kind :
       {"xyz: 450, ", "adps: 900, ", "Ueq as written: 150, ", "bond: 586, ", "volumes: 94, ",
        "angles: 1050, ", "edges: 950, ", "valences: 586, ",
        "sums of valences by the manual: 150, ", "measures: 322, ", "lines: 7, "})
    EXPECT_NE(said.find(kind), std::string::npos) << kind << said;
}
