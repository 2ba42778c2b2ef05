// Straight lines and parabolas through points that have esds in both directions, by weighted least
// squares, in 64-bit reals.
#pragma once

#include <span>

namespace XTAL {

// Esds that are 0, or not finite, are none. A point without a finite X and Y is left out.
struct FIT_POINT {
  double X = 0.0;
  double X_ESD = 0.0;
  double Y = 0.0;
  double Y_ESD = 0.0;
};

enum class FIT_CURVE { LINE, PARABOLA };

enum class FIT_FAILURE {
  NONE,
  FEW_POINTS,     // fewer than three for a line, four for a parabola
  FEW_ABSCISSAE,  // fewer than two different ones for a line, three for a parabola
  NOT_FINITE      // the numbers are too large for 64-bit reals
};

struct FITTED_VALUE {
  double VALUE = 0.0;  // not a number: there is none
  double ESD = 0.0;
};

struct LINE_FIT {
  FIT_FAILURE FAILURE = FIT_FAILURE::NONE;
  int N = 0;                // points that have a finite X and Y
  bool WEIGHTED = false;    // by the esds; else all weights are equal
  bool SOME_ESDS = false;   // just some points have an esd in Y, which is why they are equal
  FITTED_VALUE AT;          // the curve where it was asked for
  FITTED_VALUE SLOPE;       // there
  FITTED_VALUE RELATIVE;    // slope over value
  FITTED_VALUE SECOND;      // of a parabola: the factor of the square
  double CHI_SQUARE = 0.0;  // reduced; not a number with equal weights
};

int LEAST_POINTS(FIT_CURVE curve);
int LEAST_ABSCISSAE(FIT_CURVE curve);

// Y = value + slope (X - at) + second (X - at)^2. Where every point has an esd in Y the weights are
// 1/(Y_ESD^2 + s^2 X_ESD^2), s being the slope of the curve at the point, iterated to their own
// fixed point (J. Orear, American Journal of Physics 50 (1982) 912-916), and the esds of the result
// are those of the points carried over. Otherwise the weights are equal and the esds come from the
// scatter.
LINE_FIT FIT_POINTS(std::span<const FIT_POINT> points, double at, FIT_CURVE curve);

}  // namespace XTAL
