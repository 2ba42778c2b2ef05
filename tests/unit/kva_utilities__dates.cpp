// Date and time of day at moments that the test sets. The C library's time is replaced here, for
// all tests of this floor.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <ctime>
#include <string>

#include "console_code/kva_utilities/text.h"

namespace {

std::time_t moment = 0;  // seconds since 1970 in Greenwich; 0: now

}  // namespace

extern "C" std::time_t time(std::time_t* result) noexcept {
  timespec now{moment, 0};
  if (moment == 0) ::clock_gettime(CLOCK_REALTIME, &now);
  if (result != nullptr) *result = now.tv_sec;
  return now.tv_sec;
}

namespace {

using namespace KVA_UTILITIES;

constexpr std::time_t new_year_2025 = 1735689600;  // 2025-01-01 00:00:00 in Greenwich
constexpr std::time_t hour = 3600;
constexpr std::time_t day = 24 * hour;

class DATES : public testing::Test {
 protected:
  void TearDown() override {
    moment = 0;
    ::unsetenv("TZ");
    ::tzset();
  }
  static std::string SAID_IN(const char* zone) {
    ::setenv("TZ", zone, 1);
    ::tzset();
    return DATE_KVA() + " " + DATE_ISO() + " " + CLOCK_KVA();
  }
};

TEST_F(DATES, HAVE_THE_THREE_LETTERS_OF_THEIR_MONTH) {
  constexpr std::array<const char*, 12> months{"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                               "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
  constexpr std::array<int, 12> lengths{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  moment = new_year_2025 + 4 * day;
  for (std::size_t i = 0; i < months.size(); ++i) {
    EXPECT_EQ(SAID_IN("UTC0").substr(0, 11), "05-" + std::string(months[i]) + "-2025");
    moment += lengths[i] * day;
  }
}

// Half a day to the east it is the next year already, to the west still the last one.
TEST_F(DATES, ARE_THOSE_WHERE_THE_USER_IS) {
  moment = new_year_2025 - 12 * hour;
  EXPECT_EQ(SAID_IN("EAST-13:35"), "01-JAN-2025 2025-01-01 01:35:00");
  moment = new_year_2025 + 5 * hour + 7;
  EXPECT_EQ(SAID_IN("WEST+11:25"), "31-DEC-2024 2024-12-31 17:35:07");
}

}  // namespace
