// Sums, powers and functions, and their derivatives; angles in degrees.
#include "src/kva_crystal_structures/measures/arithmetic.h"

#include <cmath>

#include "src/kva_crystal_structures/wide_reals.h"

namespace KVA_CRYSTAL_STRUCTURES {

namespace {

OPERATED POWER_OF(double left, double right) {
  const double value = std::pow(left, right);
  // A power of a negative number has no derivative by its exponent, which must be whole.
  return {value, right == 0.0 ? 0.0 : right * std::pow(left, right - 1.0),
          left > 0.0 ? value * std::log(left) : 0.0};
}

double SIGN_OF(double x) {
  return static_cast<double>(x > 0.0) - static_cast<double>(x < 0.0);
}

// Sine and cosine of an angle in degrees, exact where they are 0 or 1.
struct SINE_AND_COSINE {
  double SINE = 0.0;
  double COSINE = 0.0;
};
SINE_AND_COSINE SINE_AND_COSINE_OF(double degrees) {
  constexpr double quarter = 90.0;
  int quarters = 0;
  const double rest = std::remquo(degrees, quarter, &quarters) * radians_per_degree;
  const double s = std::sin(rest);
  const double c = std::cos(rest);
  switch (static_cast<unsigned>(quarters) % 4) {
    case 1:
      return {c, -s};
    case 2:
      return {-s, -c};
    case 3:
      return {-c, s};
    default:
      return {s, c};
  }
}

OPERATED OPERATE_ON_ANGLE(OPERATION operation, double degrees) {
  const SINE_AND_COSINE turn = SINE_AND_COSINE_OF(degrees);
  if (operation == OPERATION::SIN) return {turn.SINE, turn.COSINE * radians_per_degree, 0.0};
  if (operation == OPERATION::COS) return {turn.COSINE, -turn.SINE * radians_per_degree, 0.0};
  const double tangent = turn.SINE / turn.COSINE;  // none at a right angle
  return {tangent, (1.0 + tangent * tangent) * radians_per_degree, 0.0};
}

// Arc sine of x in degrees per unit of x.
double ARC_SLOPE(double x) {
  return 1.0 / (std::sqrt(1.0 - x * x) * radians_per_degree);
}

}  // namespace

OPERATED OPERATE(OPERATION operation, double left, double right) {
  // Also where the rules of the machine would let it pass, as in the power 0.
  if (std::isnan(left) || std::isnan(right)) return {left + right, 0.0, 0.0};
  switch (operation) {
    case OPERATION::ADD:
      return {left + right, 1.0, 1.0};
    case OPERATION::SUBTRACT:
      return {left - right, 1.0, -1.0};
    case OPERATION::MULTIPLY:
      return {left * right, right, left};
    case OPERATION::DIVIDE:
      return {left / right, 1.0 / right, -left / (right * right)};
    case OPERATION::POWER:
      return POWER_OF(left, right);
    case OPERATION::NEGATE:
      return {-left, -1.0, 0.0};
    case OPERATION::SQRT:
      return {std::sqrt(left), 0.5 / std::sqrt(left), 0.0};
    case OPERATION::ABS:
      return {std::abs(left), SIGN_OF(left), 0.0};
    case OPERATION::EXP:
      return {std::exp(left), std::exp(left), 0.0};
    case OPERATION::LOG:
      return {std::log(left), 1.0 / left, 0.0};
    case OPERATION::MIN:
      return left <= right ? OPERATED{left, 1.0, 0.0} : OPERATED{right, 0.0, 1.0};
    case OPERATION::MAX:
      return left >= right ? OPERATED{left, 1.0, 0.0} : OPERATED{right, 0.0, 1.0};
    case OPERATION::SIN:
    case OPERATION::COS:
    case OPERATION::TAN:
      return OPERATE_ON_ANGLE(operation, left);
    case OPERATION::ASIN:
      return {std::asin(left) / radians_per_degree, ARC_SLOPE(left), 0.0};
    case OPERATION::ACOS:
      return {std::acos(left) / radians_per_degree, -ARC_SLOPE(left), 0.0};
    case OPERATION::ATAN:
      return {std::atan(left) / radians_per_degree,
              1.0 / ((1.0 + left * left) * radians_per_degree), 0.0};
    default:
      return {};
  }
}

}  // namespace KVA_CRYSTAL_STRUCTURES
