// The main of every test program: FLOOR_tests [SOURCE] [options of GoogleTest] runs all tests of a
// floor, or those of one source, named without its ending: kva_utilities_tests kva_utilities__text.
#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <string>

namespace {

// A filter of GoogleTest for all tests of a source; blank if there are none.
std::string TESTS_OF(const std::string& source) {
  const testing::UnitTest& all = *testing::UnitTest::GetInstance();
  std::string filter;
  for (int i = 0; i < all.total_test_suite_count(); ++i) {
    const testing::TestSuite& suite = *all.GetTestSuite(i);
    for (int j = 0; j < suite.total_test_count(); ++j) {
      const testing::TestInfo& test = *suite.GetTestInfo(j);
      if (std::filesystem::path(test.file()).stem() == source)
        filter += std::string(suite.name()) + "." + test.name() + ":";
    }
  }
  return filter;
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (argc > 1) {
    const std::string filter = TESTS_OF(argv[1]);
    if (filter.empty()) {
      std::cerr << argv[1] << ": no tests of this program stand in a source of this name\n";
      return 1;
    }
    testing::GTEST_FLAG(filter) = filter;
  }
  return RUN_ALL_TESTS();
}
