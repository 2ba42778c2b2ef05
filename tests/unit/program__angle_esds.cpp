// Angles and their esds, as the program writes them, against random draws by another program.
#include <gtest/gtest.h>
#include <unistd.h>  // for getpid

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "places.h"

namespace fs = std::filesystem;

// The script holds the structures, what it compares and how near the esds must be.
TEST(ANGLE_ESDS, ARE_THE_SPREADS_OF_RANDOM_DRAWS) {
  if (std::system("/usr/bin/python3 -c 'import gemmi, numpy' 2>/dev/null") != 0)
    GTEST_SKIP() << "python3-gemmi and python3-numpy are not installed";
  const fs::path folder =
      fs::temp_directory_path() / ("gemmara_angle_esds_" + std::to_string(::getpid()));
  fs::create_directories(folder);
  ::setenv("LOCALAPPDATA", folder.c_str(), 1);
  const std::string command = "cd '" + folder.string() + "' && /usr/bin/python3 '" +
                              PLACES::SOURCE() + "/tests/judges/angle_esds.py' '" +
                              PLACES::PROGRAM() + "' > said 2>&1";
  const int status = std::system(command.c_str());
  std::ifstream file(folder / "said");
  const std::string said{std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(status, 0) << said;
  EXPECT_NE(said.find("rutile: 12 fixed, "), std::string::npos) << said;
  fs::remove_all(folder);
}
