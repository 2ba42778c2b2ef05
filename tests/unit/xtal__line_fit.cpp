// Straight lines and parabolas against numpy: fixed cases, and many made up here.
#include "foundations/XTAL_Line_Fit.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <vector>

#include "places.h"

using namespace XTAL;

namespace {

using POINTS = std::vector<FIT_POINT>;

// A bond under pressure, with esds of both; the same without esds; a cell edge against temperature.
// The same cases stand in tests/judges/line_fit.py.
const POINTS BOND{{0.0001, 0.0, 2.1160, 0.0010}, {1.54, 0.05, 2.1112, 0.0030},
                  {3.10, 0.04, 2.1065, 0.0020},  {5.24, 0.10, 2.0989, 0.0040},
                  {7.63, 0.08, 2.0931, 0.0015},  {9.98, 0.20, 2.0877, 0.0025}};
const POINTS EDGE{{100.0, 2.0, 5.6301, 0.0002}, {200.0, 1.0, 5.6352, 0.0003},
                  {298.0, 0.0, 5.6415, 0.0001}, {400.0, 3.0, 5.6498, 0.0004},
                  {550.0, 4.0, 5.6642, 0.0003}, {700.0, 5.0, 5.6811, 0.0005}};

POINTS WITHOUT_ESDS(POINTS points) {
  for (FIT_POINT& point : points) point.Y_ESD = 0.0;
  return points;
}

void EXPECT_WITHIN(double value, double expected, const char* what) {
  EXPECT_NEAR(value, expected, 1e-5 * std::abs(expected) + 1e-14) << what;
}

// In the order in which the judge prints them.
using EXPECTED = std::array<double, 9>;
void EXPECT_FIT(const LINE_FIT& fit, const EXPECTED& expected) {
  ASSERT_EQ(fit.FAILURE, FIT_FAILURE::NONE);
  EXPECT_WITHIN(fit.AT.VALUE, expected[0], "value");
  EXPECT_WITHIN(fit.AT.ESD, expected[1], "its esd");
  EXPECT_WITHIN(fit.SLOPE.VALUE, expected[2], "slope");
  EXPECT_WITHIN(fit.SLOPE.ESD, expected[3], "its esd");
  EXPECT_WITHIN(fit.RELATIVE.VALUE, expected[4], "relative slope");
  EXPECT_WITHIN(fit.RELATIVE.ESD, expected[5], "its esd");
  EXPECT_WITHIN(fit.SECOND.VALUE, expected[6], "second");
  EXPECT_WITHIN(fit.SECOND.ESD, expected[7], "its esd");
  if (std::isnan(expected[8]))
    EXPECT_TRUE(std::isnan(fit.CHI_SQUARE));
  else
    EXPECT_WITHIN(fit.CHI_SQUARE, expected[8], "chi-square");
}

// ---- the numbers of `tests/judges/line_fit.py --stored`, made by numpy 1.24 ----

TEST(LINE_FIT, A_LINE_HAS_EFFECTIVE_VARIANCES) {
  EXPECT_FIT(FIT_POINTS(BOND, 0.0001, FIT_CURVE::LINE),
             {2.11586553, 0.000921461871, -0.00294116463, 0.000195244159, -0.00139005272,
              9.18882279e-05, 0, 0, 0.111247682});
  EXPECT_FIT(FIT_POINTS(EDGE, 298.0, FIT_CURVE::LINE),
             {5.6423316, 8.53132958e-05, 7.78321675e-05, 8.1941663e-07, 1.37943271e-05,
              1.45208262e-07, 0, 0, 99.166611});
}

TEST(LINE_FIT, A_PARABOLA_CARRIES_THE_ESD_BY_ITS_SLOPE_AT_THE_POINT) {
  EXPECT_FIT(FIT_POINTS(BOND, 0.0001, FIT_CURVE::PARABOLA),
             {2.11605138, 0.000977367414, -0.00337278669, 0.000779421367, -0.00159390586,
              0.000367988753, 5.04625282e-05, 8.80853291e-05, 0.0403653361});
  EXPECT_FIT(FIT_POINTS(EDGE, 298.0, FIT_CURVE::PARABOLA),
             {5.64152239, 9.4874283e-05, 7.15288066e-05, 8.5418219e-07, 1.26789901e-05,
              1.51360313e-07, 6.92949359e-08, 3.69844377e-09, 0.272212714});
}

TEST(LINE_FIT, WITHOUT_ESDS_THE_SCATTER_GIVES_THEM) {
  const LINE_FIT line = FIT_POINTS(WITHOUT_ESDS(BOND), 0.0001, FIT_CURVE::LINE);
  EXPECT_FIT(line, {2.11541544, 0.000643113524, -0.0028771941, 0.000112164044, -0.0013601083,
                    5.26924111e-05, 0, 0, std::nan("")});
  EXPECT_FALSE(line.WEIGHTED);
  EXPECT_FALSE(line.SOME_ESDS);
  EXPECT_FIT(FIT_POINTS(WITHOUT_ESDS(BOND), 5.24, FIT_CURVE::PARABOLA),
             {2.0995133, 0.000351901541, -0.00284287805, 6.49654391e-05, -0.00135406527,
              3.09404025e-05, 6.88864579e-05, 2.25977995e-05, std::nan("")});
}

// By hand: y = 3 + 2x through (0,3), (1,5), (2,7) with esd 1. The mean abscissa is 1, the sum of
// squares about it 2, so the slope has variance 1/2, the value at 0 1/3 + 1/2 = 5/6, and their
// covariance is -1/2. Relative slope 2/3, variance (1/9)(1/2) + (4/81)(5/6) + (4/27)(1/2).
TEST(LINE_FIT, AN_EXACT_LINE_BY_HAND) {
  const POINTS points{{0, 0, 3, 1}, {1, 0, 5, 1}, {2, 0, 7, 1}};
  const LINE_FIT fit = FIT_POINTS(points, 0.0, FIT_CURVE::LINE);
  const double relative = 1.0 / 18.0 + 20.0 / 486.0 + 2.0 / 27.0;
  EXPECT_EQ(fit.N, 3);
  EXPECT_TRUE(fit.WEIGHTED);
  EXPECT_FIT(fit,
             {3, std::sqrt(5.0 / 6.0), 2, std::sqrt(0.5), 2.0 / 3.0, std::sqrt(relative), 0, 0, 0});
}

// ---- when weights are equal ----

TEST(LINE_FIT, ROUNDING_IS_NO_SCATTER) {
  const POINTS points{{1, 0, 174.9997406, 0}, {2, 0, 180, 0}, {3, 0, 185.0002594, 0}};
  const LINE_FIT fit = FIT_POINTS(points, 1.0, FIT_CURVE::LINE);
  EXPECT_NEAR(fit.SLOPE.VALUE, 5.0002594, 1e-12);
  EXPECT_EQ(fit.SLOPE.ESD, 0.0);
  EXPECT_EQ(fit.AT.ESD, 0.0);
}

// An angle of 180 that symmetry fixes, at the pressures of eleven blocks.
TEST(LINE_FIT, ROUNDING_IS_NO_SLOPE) {
  POINTS points;
  for (const double x : {8.0, 13.0, 18.0, 23.0, 28.0, 33.0, 38.0, 43.0, 48.0, 53.0, 60.0})
    points.push_back({x, 0.0, 180.0, 0.0});
  for (const FIT_CURVE curve : {FIT_CURVE::LINE, FIT_CURVE::PARABOLA}) {
    const LINE_FIT fit = FIT_POINTS(points, 8.0, curve);
    EXPECT_WITHIN(fit.AT.VALUE, 180.0, "value");
    EXPECT_EQ(fit.SLOPE.VALUE, 0.0);
    EXPECT_EQ(fit.RELATIVE.VALUE, 0.0);
    EXPECT_EQ(fit.SECOND.VALUE, 0.0);
  }
}

TEST(LINE_FIT, ONE_POINT_WITHOUT_AN_ESD_MAKES_ALL_WEIGHTS_EQUAL) {
  POINTS points = BOND;
  points[2].Y_ESD = 0.0;
  const LINE_FIT fit = FIT_POINTS(points, 0.0001, FIT_CURVE::LINE);
  EXPECT_TRUE(fit.SOME_ESDS);
  EXPECT_FALSE(fit.WEIGHTED);
  const LINE_FIT equal = FIT_POINTS(WITHOUT_ESDS(BOND), 0.0001, FIT_CURVE::LINE);
  EXPECT_DOUBLE_EQ(fit.SLOPE.VALUE, equal.SLOPE.VALUE);
  EXPECT_DOUBLE_EQ(fit.SLOPE.ESD, equal.SLOPE.ESD);
}

TEST(LINE_FIT, AN_ESD_THAT_IS_NO_NUMBER_IS_NONE) {
  POINTS points = BOND;
  points[0].Y_ESD = std::nan("");
  points[1].X_ESD = -1.0;
  EXPECT_TRUE(FIT_POINTS(points, 0.0, FIT_CURVE::LINE).SOME_ESDS);
  EXPECT_TRUE(std::isfinite(FIT_POINTS(points, 0.0, FIT_CURVE::LINE).SLOPE.VALUE));
}

// ---- conditions ----

TEST(LINE_FIT, THREE_POINTS_MAKE_A_LINE_AND_FOUR_A_PARABOLA) {
  const POINTS two(BOND.begin(), BOND.begin() + 2);
  const POINTS three(BOND.begin(), BOND.begin() + 3);
  const POINTS four(BOND.begin(), BOND.begin() + 4);
  EXPECT_EQ(FIT_POINTS({}, 0.0, FIT_CURVE::LINE).FAILURE, FIT_FAILURE::FEW_POINTS);
  EXPECT_EQ(FIT_POINTS(two, 0.0, FIT_CURVE::LINE).FAILURE, FIT_FAILURE::FEW_POINTS);
  EXPECT_EQ(FIT_POINTS(two, 0.0, FIT_CURVE::LINE).N, 2);
  EXPECT_EQ(FIT_POINTS(three, 0.0, FIT_CURVE::LINE).FAILURE, FIT_FAILURE::NONE);
  EXPECT_EQ(FIT_POINTS(three, 0.0, FIT_CURVE::PARABOLA).FAILURE, FIT_FAILURE::FEW_POINTS);
  EXPECT_EQ(FIT_POINTS(four, 0.0, FIT_CURVE::PARABOLA).FAILURE, FIT_FAILURE::NONE);
}

TEST(LINE_FIT, ABSCISSAE_MUST_DIFFER) {
  POINTS points{{1, 0, 2, 0.1}, {1, 0, 3, 0.1}, {1, 0, 4, 0.1}, {1, 0, 5, 0.1}};
  EXPECT_EQ(FIT_POINTS(points, 1.0, FIT_CURVE::LINE).FAILURE, FIT_FAILURE::FEW_ABSCISSAE);
  points[3].X = 2.0;
  EXPECT_EQ(FIT_POINTS(points, 1.0, FIT_CURVE::LINE).FAILURE, FIT_FAILURE::NONE);
  EXPECT_EQ(FIT_POINTS(points, 1.0, FIT_CURVE::PARABOLA).FAILURE, FIT_FAILURE::FEW_ABSCISSAE);
  points[2].X = 3.0;
  EXPECT_EQ(FIT_POINTS(points, 1.0, FIT_CURVE::PARABOLA).FAILURE, FIT_FAILURE::NONE);
}

TEST(LINE_FIT, POINTS_THAT_ARE_NO_NUMBERS_DO_NOT_COUNT) {
  const double infinite = std::numeric_limits<double>::infinity();
  POINTS points = BOND;
  points.push_back({std::nan(""), 0.1, 2.0, 0.1});
  points.push_back({1.0, 0.1, std::nan(""), 0.1});
  points.push_back({infinite, 0.1, 2.0, 0.1});
  const LINE_FIT fit = FIT_POINTS(points, 0.0001, FIT_CURVE::LINE);
  EXPECT_EQ(fit.N, 6);
  EXPECT_DOUBLE_EQ(fit.SLOPE.VALUE, FIT_POINTS(BOND, 0.0001, FIT_CURVE::LINE).SLOPE.VALUE);
}

TEST(LINE_FIT, A_LINE_THROUGH_ZERO_HAS_NO_RELATIVE_SLOPE) {
  const POINTS points{{0, 0, 0, 0}, {1, 0, 0, 0}, {2, 0, 0, 0}};
  const LINE_FIT fit = FIT_POINTS(points, 0.0, FIT_CURVE::LINE);
  EXPECT_EQ(fit.FAILURE, FIT_FAILURE::NONE);
  EXPECT_DOUBLE_EQ(fit.SLOPE.VALUE, 0.0);
  EXPECT_TRUE(std::isnan(fit.RELATIVE.VALUE));
}

// ---- numbers at the edges ----

// A factor on all ordinates and their esds is one on the results.
TEST(LINE_FIT, HUGE_AND_TINY_NUMBERS_FIT_AS_WELL) {
  for (const double factor : {1e-30, 1e30}) {
    POINTS points = BOND;
    for (FIT_POINT& point : points) {
      point.Y *= factor;
      point.Y_ESD *= factor;
      point.X *= 1.0 / factor;
      point.X_ESD *= 1.0 / factor;
    }
    const LINE_FIT fit = FIT_POINTS(points, 0.0001 / factor, FIT_CURVE::PARABOLA);
    ASSERT_EQ(fit.FAILURE, FIT_FAILURE::NONE);
    EXPECT_WITHIN(fit.AT.VALUE / factor, 2.11605138, "value");
    EXPECT_WITHIN(fit.SLOPE.VALUE / factor / factor, -0.00337278669, "slope");
    EXPECT_WITHIN(fit.CHI_SQUARE, 0.0403653361, "chi-square");
  }
}

TEST(LINE_FIT, WHAT_NO_REAL_HOLDS_IS_NO_LINE) {
  const POINTS points{{0, 0, 1e300, 1e-300}, {1, 0, -1e300, 1e-300}, {2, 0, 1e308, 1e-300}};
  EXPECT_EQ(FIT_POINTS(points, 0.0, FIT_CURVE::LINE).FAILURE, FIT_FAILURE::NOT_FINITE);
  const POINTS far{{-1.7e308, 0, 1, 1}, {0, 0, 1, 1}, {1.7e308, 0, 1, 1}};
  const LINE_FIT fit = FIT_POINTS(far, 0.0, FIT_CURVE::LINE);
  EXPECT_TRUE(fit.FAILURE == FIT_FAILURE::NOT_FINITE || std::isfinite(fit.SLOPE.VALUE));
}

// Temperatures that lie close together, far from zero: about their mean nothing is lost.
TEST(LINE_FIT, A_NARROW_RANGE_FAR_FROM_ZERO) {
  for (const double start : {1e5, 1e7}) {
    POINTS points;
    for (int i = 0; i < 6; ++i) points.push_back({start + i, 0, 1.0 + 0.5 * i + 0.25 * i * i, 1});
    const LINE_FIT fit = FIT_POINTS(points, start, FIT_CURVE::PARABOLA);
    EXPECT_WITHIN(fit.AT.VALUE, 1.0, "value");
    EXPECT_WITHIN(fit.SLOPE.VALUE, 0.5, "slope");
    EXPECT_WITHIN(fit.SECOND.VALUE, 0.25, "second");
  }
}

// ---- many cases, judged by numpy ----

// Series of 3 to 14 blocks under pressure or temperature, with esds of both, of one or of none.
POINTS RANDOM_POINTS(std::mt19937& random, FIT_CURVE curve) {
  std::uniform_real_distribution<double> part(0.0, 1.0);
  const bool pressure = part(random) < 0.5;
  const double range = pressure ? 10.0 : 600.0;
  const double start = pressure ? 0.0001 : 100.0;
  const int n = LEAST_POINTS(curve) + static_cast<int>(part(random) * 10.0);
  const double value = 1.5 + 20.0 * part(random);
  const double slope = value * 0.02 * (part(random) - 0.5) * 10.0 / range;
  const double square = slope / range * (part(random) - 0.5);
  const bool y_esds = part(random) < 0.8;
  const bool x_esds = part(random) < 0.8;
  POINTS points;
  for (int i = 0; i < n; ++i) {
    FIT_POINT point;
    point.X = start + range * (i + 0.5 * part(random)) / n;
    point.X_ESD = x_esds && part(random) < 0.9 ? range * 0.01 * part(random) : 0.0;
    point.Y_ESD = y_esds ? value * (0.0001 + 0.002 * part(random)) : 0.0;
    point.Y =
        value + slope * point.X + square * point.X * point.X + value * 0.002 * (part(random) - 0.5);
    points.push_back(point);
  }
  return points;
}

TEST(LINE_FIT, NUMPY_FINDS_THE_SAME) {
  if (std::system("/usr/bin/python3 -c 'import numpy' 2>/dev/null") != 0)
    GTEST_SKIP() << "python3-numpy is not installed";
  const std::filesystem::path file = std::filesystem::temp_directory_path() /
                                     ("gemmara_fits_" + std::to_string(::getpid()) + ".txt");
  std::mt19937 random(19);
  {
    std::ofstream out(file);
    out.precision(17);
    for (int i = 0; i < 200; ++i) {
      const FIT_CURVE curve = i % 2 == 0 ? FIT_CURVE::LINE : FIT_CURVE::PARABOLA;
      const POINTS points = RANDOM_POINTS(random, curve);
      const double at = points[static_cast<std::size_t>(i) % points.size()].X;
      const LINE_FIT fit = FIT_POINTS(points, at, curve);
      ASSERT_EQ(fit.FAILURE, FIT_FAILURE::NONE);
      out << (curve == FIT_CURVE::LINE ? 1 : 2) << ' ' << at << ' ' << points.size();
      for (const FIT_POINT& point : points)
        out << ' ' << point.X << ' ' << point.X_ESD << ' ' << point.Y << ' ' << point.Y_ESD;
      for (const FITTED_VALUE& value : {fit.AT, fit.SLOPE, fit.RELATIVE, fit.SECOND})
        out << ' ' << value.VALUE << ' ' << value.ESD;
      out << ' ' << fit.CHI_SQUARE << '\n';
    }
  }
  const std::string command = "/usr/bin/python3 -B '" + PLACES::SOURCE() +
                              "/tests/judges/line_fit.py' '" + file.string() + "'";
  EXPECT_EQ(std::system(command.c_str()), 0);
  std::filesystem::remove(file);
}

}  // namespace
