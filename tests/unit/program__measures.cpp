// Measures of published structures: against numpy, which chooses the images itself, and against
// what real CIFs print of their distances, angles, torsions and hydrogen bonds. The judges are
// tests/judges/measure_published.py and measure_loops.py.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "places.h"

namespace {

constexpr int not_installed = 77;

struct JUDGEMENT {
  int STATUS = -1;
  std::string SAID;
  std::vector<int> COUNTS;  // the numbers of its last line
};

JUDGEMENT JUDGED_BY(const std::string& script) {
  const std::string command = "/usr/bin/python3 -B '" + PLACES::SOURCE() + "/tests/judges/" +
                              script + "' '" + PLACES::PROGRAM() + "' '" + PLACES::SAMPLES() +
                              "' 2>&1";
  JUDGEMENT judgement;
  FILE* stream = ::popen(command.c_str(), "r");
  if (stream == nullptr) return judgement;
  std::array<char, 4096> buffer{};
  while (std::fgets(buffer.data(), static_cast<int>(buffer.size()), stream) != nullptr)
    judgement.SAID += buffer.data();
  const int status = ::pclose(stream);
  judgement.STATUS = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  const std::size_t last = judgement.SAID.rfind('\n', judgement.SAID.size() - 2);
  std::istringstream counts(judgement.SAID.substr(last == std::string::npos ? 0 : last + 1));
  for (int count = 0; counts >> count;) judgement.COUNTS.push_back(count);
  return judgement;
}

}  // namespace

TEST(MEASURES, PUBLISHED_STRUCTURES_ARE_MEASURED_AS_BY_NUMPY) {
  if (PLACES::SAMPLES().empty()) GTEST_SKIP() << "no GEMMARA_SAMPLES";
  const JUDGEMENT judgement = JUDGED_BY("measure_published.py");
  if (judgement.STATUS == not_installed) GTEST_SKIP() << "numpy or gemmi is not installed";
  EXPECT_EQ(judgement.STATUS, 0) << judgement.SAID;
  ASSERT_EQ(judgement.COUNTS.size(), 3u) << judgement.SAID;
  EXPECT_EQ(judgement.COUNTS[2], 0) << judgement.SAID;
  EXPECT_GE(judgement.COUNTS[1], 4 * judgement.COUNTS[0]);
}

TEST(MEASURES, PRINTED_GEOMETRY_IS_WHAT_IS_MEASURED) {
  if (PLACES::SAMPLES().empty()) GTEST_SKIP() << "no GEMMARA_SAMPLES";
  const JUDGEMENT judgement = JUDGED_BY("measure_loops.py");
  if (judgement.STATUS == not_installed) GTEST_SKIP() << "numpy or gemmi is not installed";
  EXPECT_EQ(judgement.STATUS, 0) << judgement.SAID;
  ASSERT_EQ(judgement.COUNTS.size(), 10u) << judgement.SAID;
  const int files = judgement.COUNTS[0];
  const int values = judgement.COUNTS[1];
  EXPECT_GT(values, 10 * files);
  EXPECT_LT(judgement.COUNTS[5], values / 10) << "too many printed values are not measured";
  // Four of five printed esds, though the covariances behind them are not printed.
  EXPECT_GT(judgement.COUNTS[9], judgement.COUNTS[8] * 4 / 5);
}
