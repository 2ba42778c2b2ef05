// The memory that is announced to the system.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstring>
#include <fstream>
#include <memory>
#include <vector>

#include "console_code/kva_utilities/system_files.h"
#include "sanitized.h"

using namespace KVA_UTILITIES;

namespace {

constexpr std::size_t megabyte = std::size_t{1} << 20U;

long PAGE_FAULTS() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return usage.ru_minflt;
}

bool HAS_LARGE_PAGES() {
  std::string chosen;
  std::getline(std::ifstream("/sys/kernel/mm/transparent_hugepage/enabled"), chosen);
  return !chosen.empty() && chosen.find("[never]") == std::string::npos;
}

class EXPECTED_MEMORY : public testing::Test {
 protected:
  void SetUp() override {
    if (sanitized) GTEST_SKIP() << "memory is the sanitizer's";
  }
};

}  // namespace

TEST_F(EXPECTED_MEMORY, IS_TAKEN_WHEN_IT_IS_USED) {
  const long before = PAGE_FAULTS();
  for (const std::size_t bytes : {std::size_t{0}, megabyte, 100 * megabyte, ~std::size_t{0}})
    EXPECT_MEMORY(bytes);
  EXPECT_LT(PAGE_FAULTS() - before, 100) << "a page is touched by its first use";
}

// 24 MB are 6,144 small pages.
TEST_F(EXPECTED_MEMORY, COMES_IN_LARGE_PAGES) {
  if (!HAS_LARGE_PAGES()) GTEST_SKIP() << "no large pages here";
  EXPECT_MEMORY(64 * megabyte);
  const long before = PAGE_FAULTS();
  std::vector<std::unique_ptr<char[]>> pieces;
  for (std::size_t k = 0; k < 24 * megabyte / 1000; ++k) {
    pieces.push_back(std::make_unique<char[]>(1000));
    std::memset(pieces.back().get(), 1, 1000);
  }
  EXPECT_LT(PAGE_FAULTS() - before, 3000);
}
