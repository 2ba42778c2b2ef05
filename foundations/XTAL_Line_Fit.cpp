// Weighted least squares by orthogonal columns. The curve is found about the mean abscissa, in
// units of the widest distance from it, and moved to where it is asked for with its covariances.
#include "foundations/XTAL_Line_Fit.h"

#include <algorithm>  // for count_if, max, sort, unique
#include <array>
#include <cmath>    // for abs, isfinite, sqrt
#include <cstddef>  // for size_t
#include <limits>
#include <vector>

namespace XTAL {

namespace {

constexpr std::size_t most_terms = 3;
using TERMS = std::array<double, most_terms>;  // by powers of the abscissa
using POINTS = std::vector<FIT_POINT>;

constexpr double none = std::numeric_limits<double>::quiet_NaN();

std::size_t TERMS_OF(FIT_CURVE curve) {
  return curve == FIT_CURVE::LINE ? 2 : 3;
}

double ESD_OR_NONE(double esd) {
  return std::isfinite(esd) && esd > 0.0 ? esd : 0.0;
}

POINTS FINITE_POINTS(std::span<const FIT_POINT> points) {
  POINTS finite;
  for (const FIT_POINT& point : points)
    if (std::isfinite(point.X) && std::isfinite(point.Y))
      finite.push_back({point.X, ESD_OR_NONE(point.X_ESD), point.Y, ESD_OR_NONE(point.Y_ESD)});
  return finite;
}

int DIFFERENT_ABSCISSAE(const POINTS& points) {
  std::vector<double> x;
  for (const FIT_POINT& point : points) x.push_back(point.X);
  std::sort(x.begin(), x.end());
  return static_cast<int>(std::unique(x.begin(), x.end()) - x.begin());
}

// ---- the abscissa that is fitted by ----

struct SCALE {
  double MEAN = 0.0;
  double UNIT = 1.0;
};

SCALE SCALE_OF(const POINTS& points) {
  SCALE scale;
  for (const FIT_POINT& point : points) scale.MEAN += point.X / static_cast<double>(points.size());
  double widest = 0.0;
  for (const FIT_POINT& point : points) widest = std::max(widest, std::abs(point.X - scale.MEAN));
  scale.UNIT = widest;
  return scale;
}

double SCALED_X(const SCALE& scale, double x) {
  return (x - scale.MEAN) / scale.UNIT;
}

// Value, slope, and factor of the square, of a curve with coefficients c at x, each as what c is
// multiplied by.
TERMS VALUE_AT(const SCALE& scale, double x) {
  const double u = SCALED_X(scale, x);
  return {1.0, u, u * u};
}
TERMS SLOPE_AT(const SCALE& scale, double x) {
  return {0.0, 1.0 / scale.UNIT, 2.0 * SCALED_X(scale, x) / scale.UNIT};
}
TERMS SQUARE_OF(const SCALE& scale) {
  return {0.0, 0.0, 1.0 / (scale.UNIT * scale.UNIT)};
}

double DOT_OF(const TERMS& a, const TERMS& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

// ---- one least-squares curve ----

// Coefficients, and the triangular R of which the inverse of R'R is their covariance.
struct CURVE {
  std::size_t TERMS_USED = 0;
  TERMS C{};
  std::array<TERMS, most_terms> R{};  // row first
};

using COLUMN = std::vector<double>;

double PRODUCT(const COLUMN& a, const COLUMN& b) {
  double sum = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) sum += a[i] * b[i];
  return sum;
}

void TAKE_OFF(COLUMN& a, double factor, const COLUMN& b) {
  for (std::size_t i = 0; i < a.size(); ++i) a[i] -= factor * b[i];
}

// The powers of the abscissa, or the ordinates, each over the root of its point's variance.
COLUMN WEIGHTED_POWERS(const POINTS& points, const COLUMN& variances, const SCALE& scale,
                       std::size_t power) {
  COLUMN column;
  for (std::size_t i = 0; i < points.size(); ++i)
    column.push_back(VALUE_AT(scale, points[i].X)[power] / std::sqrt(variances[i]));
  return column;
}
COLUMN WEIGHTED_ORDINATES(const POINTS& points, const COLUMN& variances) {
  COLUMN column;
  for (std::size_t i = 0; i < points.size(); ++i)
    column.push_back(points[i].Y / std::sqrt(variances[i]));
  return column;
}

// C out of R C = along.
TERMS SOLVED(const CURVE& curve, const TERMS& along) {
  TERMS c{};
  for (std::size_t k = curve.TERMS_USED; k-- > 0;) {
    c[k] = along[k];
    for (std::size_t l = k + 1; l < curve.TERMS_USED; ++l) c[k] -= curve.R[k][l] * c[l];
    c[k] /= curve.R[k][k];
  }
  return c;
}

// variances: of the ordinates.
CURVE LEAST_SQUARES(const POINTS& points, const COLUMN& variances, const SCALE& scale,
                    std::size_t terms) {
  CURVE curve;
  curve.TERMS_USED = terms;
  std::array<COLUMN, most_terms> columns;
  for (std::size_t k = 0; k < terms; ++k) columns[k] = WEIGHTED_POWERS(points, variances, scale, k);
  COLUMN rest = WEIGHTED_ORDINATES(points, variances);
  TERMS along{};
  for (std::size_t k = 0; k < terms; ++k) {
    curve.R[k][k] = std::sqrt(PRODUCT(columns[k], columns[k]));
    for (double& element : columns[k]) element /= curve.R[k][k];
    for (std::size_t l = k + 1; l < terms; ++l) {
      curve.R[k][l] = PRODUCT(columns[k], columns[l]);
      TAKE_OFF(columns[l], curve.R[k][l], columns[k]);
    }
    along[k] = PRODUCT(columns[k], rest);
    TAKE_OFF(rest, along[k], columns[k]);
  }
  curve.C = SOLVED(curve, along);
  return curve;
}

// What a linear function of the coefficients is of independent parameters with esd 1: its variance
// is its square, the covariance of two of them their product.
TERMS INDEPENDENT_PARTS(const CURVE& curve, const TERMS& function) {
  TERMS parts{};
  for (std::size_t k = 0; k < curve.TERMS_USED; ++k) {
    parts[k] = function[k];
    for (std::size_t l = 0; l < k; ++l) parts[k] -= curve.R[l][k] * parts[l];
    parts[k] /= curve.R[k][k];
  }
  return parts;
}

// Sum of the squares of the deviations over their variances.
double SUM_OF_SQUARES(const POINTS& points, const COLUMN& variances, const SCALE& scale,
                      const CURVE& curve) {
  double sum = 0.0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const double deviation = points[i].Y - DOT_OF(curve.C, VALUE_AT(scale, points[i].X));
    sum += deviation * deviation / variances[i];
  }
  return sum;
}

// ---- effective variances ----

COLUMN EFFECTIVE_VARIANCES(const POINTS& points, const SCALE& scale, const CURVE& curve) {
  COLUMN variances;
  for (const FIT_POINT& point : points) {
    const double carried = DOT_OF(curve.C, SLOPE_AT(scale, point.X)) * point.X_ESD;
    variances.push_back(point.Y_ESD * point.Y_ESD + carried * carried);
  }
  return variances;
}

double LARGEST_CHANGE(const COLUMN& before, const COLUMN& after) {
  double largest = 0.0;
  for (std::size_t i = 0; i < before.size(); ++i)
    largest = std::max(largest, std::abs(after[i] - before[i]) / before[i]);
  return largest;
}

// Leaves the variances at which the curve that they give has them again.
CURVE WEIGHTED_CURVE(const POINTS& points, COLUMN& variances, const SCALE& scale,
                     std::size_t terms) {
  constexpr double settled = 1e-13;
  constexpr int most_rounds = 200;
  constexpr int plain_rounds = 20;  // behind them half steps, for variances that go to and fro
  for (std::size_t i = 0; i < points.size(); ++i) variances[i] = points[i].Y_ESD * points[i].Y_ESD;
  CURVE curve = LEAST_SQUARES(points, variances, scale, terms);
  for (int round = 1; round <= most_rounds; ++round) {
    COLUMN next = EFFECTIVE_VARIANCES(points, scale, curve);
    if (round > plain_rounds)
      for (std::size_t i = 0; i < next.size(); ++i) next[i] = 0.5 * (next[i] + variances[i]);
    const double change = LARGEST_CHANGE(variances, next);
    variances = std::move(next);
    curve = LEAST_SQUARES(points, variances, scale, terms);
    if (!(change > settled)) break;
  }
  return curve;
}

// ---- the result ----

double LARGEST_ORDINATE(const POINTS& points) {
  double largest = 0.0;
  for (const FIT_POINT& point : points) largest = std::max(largest, std::abs(point.Y));
  return largest;
}

// Of the points about the curve; what is left by rounding alone is none.
double SCATTER(const POINTS& points, double reduced) {
  constexpr double rounding = 1e-12;
  const double scatter = std::sqrt(reduced);
  return scatter < rounding * LARGEST_ORDINATE(points) ? 0.0 : scatter;
}

// Points on a level line, or on a straight one for a parabola, have no slope or square but what
// rounding leaves.
void TAKE_ROUNDING_OFF(const POINTS& points, CURVE& curve) {
  constexpr double rounding = 1e-14;
  for (std::size_t k = 1; k < curve.TERMS_USED; ++k)
    if (std::abs(curve.C[k]) < rounding * LARGEST_ORDINATE(points)) curve.C[k] = 0.0;
}

FIT_FAILURE FAILURE_OF(const POINTS& points, FIT_CURVE curve) {
  if (static_cast<int>(points.size()) < LEAST_POINTS(curve)) return FIT_FAILURE::FEW_POINTS;
  if (DIFFERENT_ABSCISSAE(points) < LEAST_ABSCISSAE(curve)) return FIT_FAILURE::FEW_ABSCISSAE;
  return FIT_FAILURE::NONE;
}

// Value of a linear function of the coefficients; parts: its independent parts.
FITTED_VALUE FITTED(const CURVE& curve, const TERMS& function, const TERMS& parts) {
  return {DOT_OF(curve.C, function), std::sqrt(DOT_OF(parts, parts))};
}

FITTED_VALUE RATIO(const FITTED_VALUE& a, const TERMS& a_parts, const FITTED_VALUE& b,
                   const TERMS& b_parts) {
  if (b.VALUE == 0.0) return {none, 0.0};
  const double ratio = a.VALUE / b.VALUE;
  TERMS parts{};
  for (std::size_t k = 0; k < most_terms; ++k)
    parts[k] = (a_parts[k] - ratio * b_parts[k]) / b.VALUE;
  return {ratio, std::sqrt(DOT_OF(parts, parts))};
}

// esd: of unit weight.
void SET_RESULT(const CURVE& curve, const SCALE& scale, double at, double esd, LINE_FIT& fit) {
  const auto parts_of = [&](const TERMS& function) {
    TERMS parts = INDEPENDENT_PARTS(curve, function);
    for (double& part : parts) part *= esd;
    return parts;
  };
  const TERMS value_parts = parts_of(VALUE_AT(scale, at));
  const TERMS slope_parts = parts_of(SLOPE_AT(scale, at));
  fit.AT = FITTED(curve, VALUE_AT(scale, at), value_parts);
  fit.SLOPE = FITTED(curve, SLOPE_AT(scale, at), slope_parts);
  fit.RELATIVE = RATIO(fit.SLOPE, slope_parts, fit.AT, value_parts);
  fit.SECOND = FITTED(curve, SQUARE_OF(scale), parts_of(SQUARE_OF(scale)));
}

bool IS_FINITE(const LINE_FIT& fit) {
  for (const FITTED_VALUE& value : {fit.AT, fit.SLOPE, fit.SECOND})
    if (!std::isfinite(value.VALUE) || !std::isfinite(value.ESD)) return false;
  return !fit.WEIGHTED || std::isfinite(fit.CHI_SQUARE);
}

}  // namespace

int LEAST_POINTS(FIT_CURVE curve) {
  return static_cast<int>(TERMS_OF(curve)) + 1;
}

int LEAST_ABSCISSAE(FIT_CURVE curve) {
  return static_cast<int>(TERMS_OF(curve));
}

LINE_FIT FIT_POINTS(std::span<const FIT_POINT> given, double at, FIT_CURVE curve) {
  const POINTS points = FINITE_POINTS(given);
  LINE_FIT fit;
  fit.N = static_cast<int>(points.size());
  fit.FAILURE = FAILURE_OF(points, curve);
  if (fit.FAILURE != FIT_FAILURE::NONE) return fit;
  const auto with_esd = std::count_if(points.begin(), points.end(),
                                      [](const FIT_POINT& point) { return point.Y_ESD > 0.0; });
  fit.WEIGHTED = with_esd == fit.N;
  fit.SOME_ESDS = with_esd > 0 && !fit.WEIGHTED;

  const SCALE scale = SCALE_OF(points);
  const std::size_t terms = TERMS_OF(curve);
  COLUMN variances(points.size(), 1.0);
  CURVE found = fit.WEIGHTED ? WEIGHTED_CURVE(points, variances, scale, terms)
                             : LEAST_SQUARES(points, variances, scale, terms);
  TAKE_ROUNDING_OFF(points, found);
  const double reduced = SUM_OF_SQUARES(points, variances, scale, found) /
                         (static_cast<double>(fit.N) - static_cast<double>(terms));
  fit.CHI_SQUARE = fit.WEIGHTED ? reduced : none;
  SET_RESULT(found, scale, at, fit.WEIGHTED ? 1.0 : SCATTER(points, reduced), fit);
  if (!IS_FINITE(fit)) fit.FAILURE = FIT_FAILURE::NOT_FINITE;
  return fit;
}

}  // namespace XTAL
