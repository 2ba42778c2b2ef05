// Every table of every file at hand splits at blanks into the fields of its columns; the judge is
// tests/judges/table_fields.py.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "places.h"
#include "said_by.h"

TEST(TABLES, EVERY_ROW_SPLITS_AT_BLANKS_INTO_THE_FIELDS_OF_ITS_TABLE) {
  if (std::system("command -v python3 > /dev/null") != 0) GTEST_SKIP() << "no python3";
  std::string command =
      "python3 '" + PLACES::SOURCE() + "/tests/judges/table_fields.py' '" + PLACES::PROGRAM() + "'";
  for (const std::string folder : {"/tests/odd", "/examples", "/tests/transcripts/data"})
    command += " '" + PLACES::SOURCE() + folder + "'";
  if (!PLACES::SAMPLES().empty()) command += " '" + PLACES::SAMPLES() + "'";
  const std::string said = PROGRAM_TESTS::SAID_BY(command);
  const std::size_t last = said.rfind('\n', said.size() - 2);
  std::istringstream counts(said.substr(last == std::string::npos ? 0 : last + 1));
  int files = 0;
  int tables = 0;
  int rows = 0;
  int faults = -1;
  counts >> files >> tables >> rows >> faults;
  EXPECT_EQ(faults, 0) << said;
  EXPECT_GT(files, 100);
  EXPECT_GT(tables, 10 * files) << "the dialogue has not gone on to its end";
  EXPECT_GE(rows, tables / 2);
}
