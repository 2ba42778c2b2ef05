// What symmetry leaves free of sites and cells.
#include "src/kva_crystal_structures/measures/free_parameters.h"

#include <algorithm>  // for max
#include <cmath>      // for abs, cos, sin, sqrt

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::IMATRIX3;

// ---- directions ----

std::vector<WIDE6> INDEPENDENT_DIRECTIONS(std::vector<WIDE6> spanning) {
  constexpr double nothing = 1e-6;  // of components that are 1 or thereabouts
  std::size_t rank = 0;
  for (std::size_t column = 0; column < 6 && rank < spanning.size(); ++column) {
    std::size_t largest = rank;
    for (std::size_t row = rank; row < spanning.size(); ++row)
      if (std::abs(spanning[row][column]) > std::abs(spanning[largest][column])) largest = row;
    if (!(std::abs(spanning[largest][column]) > nothing)) continue;
    std::swap(spanning[rank], spanning[largest]);
    const double pivot = spanning[rank][column];
    for (double& component : spanning[rank]) component /= pivot;
    for (std::size_t row = 0; row < spanning.size(); ++row) {
      const double factor = spanning[row][column];
      if (row == rank) continue;
      for (std::size_t k = 0; k < 6; ++k) spanning[row][k] -= factor * spanning[rank][k];
    }
    ++rank;
  }
  spanning.resize(rank);
  return spanning;
}

namespace {

// The esd of the first component that has one; it moves by so much when the parameter grows by one.
FREE_PARAMETER WITH_ESD(const WIDE6& direction, const WIDE6& esds) {
  constexpr double unmoved = 1e-3;
  for (std::size_t k = 0; k < 6; ++k)
    if (esds[k] > 0.0 && std::abs(direction[k]) > unmoved)
      return {direction, esds[k] / std::abs(direction[k])};
  return {direction, 0.0};
}

}  // namespace

// ---- sites ----

namespace {

// Mean of the rotations of the operators that leave the position where it is.
WIDE33 MEAN_SITE_ROTATION(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x_frac) {
  int order = 0;
  LIST<int> numbers;
  LIST<VECTOR3> translations;
  XTAL::GET_STABILIZER(x_frac, phase.SPG, order, numbers, translations);
  WIDE33 mean{};
  for (int s = 1; s <= order; ++s) {
    const IMATRIX3& rot = phase.SPG.SYMOP(numbers(s)).ROT;
    for (std::size_t i = 0; i < 3; ++i)
      for (std::size_t j = 0; j < 3; ++j) mean[i][j] += static_cast<double>(rot[i][j]) / order;
  }
  return mean;
}

bool IS_GENERAL(const CRYSTAL_STRUCTURE_TYPE& phase, const ATOM_TYPE& atom) {
  return atom.MULT > 0 && atom.MULT * std::max(phase.SPG.NUMLAT, 1) == phase.SPG.MULTIP;
}

}  // namespace

std::vector<FREE_PARAMETER> SITE_PARAMETERS(const CRYSTAL_STRUCTURE_TYPE& phase, int atom) {
  const ATOM_TYPE& site = phase.ATOM(atom);
  WIDE33 mean{{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};
  if (!IS_GENERAL(phase, site)) mean = MEAN_SITE_ROTATION(phase, site.X);
  std::vector<WIDE6> spanning;
  for (std::size_t k = 0; k < 3; ++k)
    spanning.push_back({mean[0][k], mean[1][k], mean[2][k], 0.0, 0.0, 0.0});
  const WIDE3 esds = WIDE(site.X_STD);
  std::vector<FREE_PARAMETER> parameters;
  for (const WIDE6& direction : INDEPENDENT_DIRECTIONS(std::move(spanning)))
    parameters.push_back(WITH_ESD(direction, {esds[0], esds[1], esds[2], 0.0, 0.0, 0.0}));
  return parameters;
}

// ---- the cell ----

namespace {

// The axes of the angles alpha, beta, gamma.
constexpr std::array<std::array<std::size_t, 2>, 3> axes_of_angle{{{1, 2}, {0, 2}, {0, 1}}};

// R^T G R.
WIDE33 ROTATED_METRIC(const IMATRIX3& rot, const WIDE33& metric) {
  WIDE33 rotated{};
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j)
      for (std::size_t k = 0; k < 3; ++k)
        for (std::size_t l = 0; l < 3; ++l) rotated[i][j] += rot[k][i] * metric[k][l] * rot[l][j];
  return rotated;
}

// Mean over the rotations of the group of a change of one component of the metric.
WIDE33 MEAN_METRIC(const XTAL::SPACE_GROUP& group, std::size_t i, std::size_t j) {
  WIDE33 change{};
  change[i][j] = 1.0;
  change[j][i] = 1.0;
  WIDE33 mean{};
  for (int op = 1; op <= group.NUMOPS; ++op) {  // inversion and centring leave every metric
    const WIDE33 rotated = ROTATED_METRIC(group.SYMOP(op).ROT, change);
    for (std::size_t k = 0; k < 3; ++k)
      for (std::size_t l = 0; l < 3; ++l) mean[k][l] += rotated[k][l] / group.NUMOPS;
  }
  return mean;
}

// Changes of lengths (as parts of themselves) and angles (radians) that change the metric so.
WIDE6 CELL_CHANGE(const WIDE6& cell, const WIDE33& metric_change) {
  WIDE6 change{};
  for (std::size_t k = 0; k < 3; ++k) change[k] = metric_change[k][k] / (2.0 * cell[k] * cell[k]);
  for (std::size_t k = 0; k < 3; ++k) {
    const auto [i, j] = axes_of_angle[k];
    const double angle = cell[k + 3] * radians_per_degree;
    change[k + 3] =
        (std::cos(angle) * (change[i] + change[j]) - metric_change[i][j] / (cell[i] * cell[j])) /
        std::sin(angle);
  }
  return change;
}

// Of a change per relative change of a length or per radian, the change per angstrom or degree.
WIDE6 IN_OWN_UNITS(const WIDE6& cell, WIDE6 direction) {
  std::size_t first = 0;
  while (first < 5 && std::abs(direction[first]) < 0.5) ++first;
  for (std::size_t k = 0; k < 6; ++k) direction[k] *= k < 3 ? cell[k] : 1.0 / radians_per_degree;
  const double unit = direction[first];
  for (double& component : direction) component /= unit;
  return direction;
}

}  // namespace

WIDE6 WIDE_CELL(const XTAL::CRYSTAL_CELL& cell) {
  const WIDE3 lengths = WIDE(cell.CELL);
  const WIDE3 angles = WIDE(cell.ANG);
  return {lengths[0], lengths[1], lengths[2], angles[0], angles[1], angles[2]};
}

std::vector<FREE_PARAMETER> CELL_PARAMETERS(const CRYSTAL_STRUCTURE_TYPE& phase) {
  const WIDE6 cell = WIDE_CELL(phase.CELL);
  std::vector<WIDE6> spanning;
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = i; j < 3; ++j) {
      // As large as the metric itself, so that all changes are of one order.
      WIDE33 change = MEAN_METRIC(phase.SPG, i, j);
      for (WIDE3& row : change) row = SCALED(row, cell[i] * cell[j]);
      spanning.push_back(CELL_CHANGE(cell, change));
    }
  const WIDE3 lengths = WIDE(phase.CELL.CELL_STD);
  const WIDE3 angles = WIDE(phase.CELL.ANG_STD);
  const WIDE6 esds{lengths[0], lengths[1], lengths[2], angles[0], angles[1], angles[2]};
  std::vector<FREE_PARAMETER> parameters;
  for (const WIDE6& direction : INDEPENDENT_DIRECTIONS(std::move(spanning)))
    parameters.push_back(WITH_ESD(IN_OWN_UNITS(cell, direction), esds));
  return parameters;
}

WIDE33 WIDE_FRAME(const WIDE6& cell) {
  const double cos_alpha = std::cos(cell[3] * radians_per_degree);
  const double cos_beta = std::cos(cell[4] * radians_per_degree);
  const double cos_gamma = std::cos(cell[5] * radians_per_degree);
  const double sin_gamma = std::sin(cell[5] * radians_per_degree);
  const double c_y = (cos_alpha - cos_beta * cos_gamma) / sin_gamma;
  const double c_z = std::sqrt(1.0 - cos_beta * cos_beta - c_y * c_y);
  return {{{cell[0], cell[1] * cos_gamma, cell[2] * cos_beta},
           {0.0, cell[1] * sin_gamma, cell[2] * c_y},
           {0.0, 0.0, cell[2] * c_z}}};
}

}  // namespace KVA_CRYSTAL_STRUCTURES
