// The formulas that the manual states, worked out by another program for what the program writes.
#include <gtest/gtest.h>
#include <sys/wait.h>  // for WEXITSTATUS
#include <unistd.h>    // for getpid

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "places.h"

namespace fs = std::filesystem;

// The script holds the structure and the formulas.
TEST(MANUAL_FORMULAS, GIVE_WHAT_THE_PROGRAM_GIVES) {
  if (std::system("/usr/bin/python3 -c 'import numpy' 2>/dev/null") != 0)
    GTEST_SKIP() << "python3-numpy is not installed";
  const fs::path folder =
      fs::temp_directory_path() / ("gemmara_manual_formulas_" + std::to_string(::getpid()));
  fs::create_directories(folder);
  ::setenv("LOCALAPPDATA", folder.c_str(), 1);
  const std::string command = "cd '" + folder.string() + "' && /usr/bin/python3 -B '" +
                              PLACES::SOURCE() + "/tests/judges/manual_formulas.py' '" +
                              PLACES::PROGRAM() + "' > said 2>&1";
  const int status = std::system(command.c_str());
  std::ifstream file(folder / "said");
  const std::string said{std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(WEXITSTATUS(status), 0) << said;
  EXPECT_TRUE(said.starts_with("216 values by 27 formulas, 0 differ\n")) << said;
  fs::remove_all(folder);
}
