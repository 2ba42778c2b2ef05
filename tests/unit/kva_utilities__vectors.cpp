// Small tensors; order and tests of numbers.
#include <gtest/gtest.h>

#include <array>
#include <limits>

#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/vectors.h"

using namespace KVA_UTILITIES;

TEST(TENSORS, COMPONENTS_GO_11_22_33_12_13_23) {
  const MATRIX3 m = VECTOR_TO_MATRIX({1, 2, 3, 4, 5, 6});
  EXPECT_EQ(m, (MATRIX3{{{1, 4, 5}, {4, 2, 6}, {5, 6, 3}}}));
  EXPECT_EQ(MATRIX_TO_VECTOR(m), (VECTOR6{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(TRACE(m), 6.0f);
}

TEST(TENSORS, A_NEARLY_SYMMETRIC_MATRIX_IS_MADE_SYMMETRIC) {
  EXPECT_EQ(MATRIX_TO_VECTOR({{{1, 2, 10}, {4, 1, 30}, {20, 50, 1}}}),
            (VECTOR6{1, 1, 1, 3, 15, 40}))
      << "means of 2 and 4, 10 and 20, 30 and 50";
}

namespace {

std::vector<int> SORTED(std::vector<float> values, bool keep_zero = false) {
  return SET_SORT(values, keep_zero);
}

}  // namespace

TEST(SET_SORT, ASCENDING_AND_STABLE) {
  EXPECT_EQ(SORTED({3, 1, 2}), (std::vector<int>{2, 3, 1}));
  EXPECT_EQ(SORTED({1, 1}), (std::vector<int>{1, 2}));
  EXPECT_EQ(SORTED({}), (std::vector<int>{}));
}

TEST(SET_SORT, ZEROS_REPEAT_THE_LAST_CHOICE_UNLESS_KEPT) {
  EXPECT_EQ(SORTED({0, 2, 0, 1}), (std::vector<int>{4, 2, 2, 2}));
  EXPECT_EQ(SORTED({0, 2, 0, 1}, true), (std::vector<int>{1, 3, 4, 2}));
  EXPECT_EQ(SORTED({0, 0}), (std::vector<int>{1, 1})) << "no index below 1";
}

TEST(SET_SORT, MAGNITUDES_UP_TO_1E_8_COUNT_AS_ZERO) {
  EXPECT_EQ(SORTED({0.9e-8f, 3, -0.9e-8f, 2}), (std::vector<int>{4, 2, 2, 2}));
  EXPECT_EQ(SORTED({1e-8f, 3, 2}), (std::vector<int>{3, 2, 2})) << "the limit itself is a zero";
  EXPECT_EQ(SORTED({1.1e-8f, 3, -1.1e-8f, 2}), (std::vector<int>{3, 1, 4, 2}));
}

TEST(NUMBER_TESTS, FINITE_VALUES_OF_2_TO_THE_24_COUNT_AS_INFINITE) {
  EXPECT_TRUE(INVALID_NUMBER(1.0e30f));
  EXPECT_FALSE(INVALID_NUMBER(1.0e6f));
  EXPECT_TRUE(INFINITE_NUMBER(16777216.0f));
  EXPECT_FALSE(INFINITE_NUMBER(16777214.0f));
  EXPECT_TRUE(NOTNUM(std::numeric_limits<float>::quiet_NaN()));
  EXPECT_FALSE(NOTNUM(std::numeric_limits<float>::infinity()));
  EXPECT_TRUE(INVALID_NUMBER(std::numeric_limits<float>::quiet_NaN()));
}
