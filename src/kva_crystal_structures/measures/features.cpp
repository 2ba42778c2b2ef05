// Lengths, angles, planes and distortions of points in space.
#include "src/kva_crystal_structures/measures/features.h"

#include <algorithm>  // for count_if, find, min_element, none_of, sort, stable_sort
#include <cmath>

#include "src/kva_crystal_structures/convex_hull.h"
#include "src/kva_crystal_structures/polyhedra.h"

namespace KVA_CRYSTAL_STRUCTURES {

// ---- angles ----

double WIDE_ANGLE(const WIDE3& leg1, const WIDE3& leg2) {
  if (!(DOT(leg1, leg1) > 0.0) || !(DOT(leg2, leg2) > 0.0)) return no_value;
  return std::atan2(LENGTH(CROSS(leg1, leg2)), DOT(leg1, leg2)) * degrees_per_radian;
}

double TORSION_OF(const WIDE3& a, const WIDE3& b, const WIDE3& c, const WIDE3& d) {
  constexpr double in_line = 1e-6;  // square angstroms
  const WIDE3 near = SUBTRACT(b, a);
  const WIDE3 middle = SUBTRACT(c, b);
  const WIDE3 far = SUBTRACT(d, c);
  const WIDE3 normal1 = CROSS(near, middle);
  const WIDE3 normal2 = CROSS(middle, far);
  if (!(LENGTH(normal1) > in_line) || !(LENGTH(normal2) > in_line)) return no_value;
  return std::atan2(LENGTH(middle) * DOT(near, normal2), DOT(normal1, normal2)) *
         degrees_per_radian;
}

// ---- planes ----

WIDE3 MEAN_OF(WIDE_POINTS points) {
  WIDE3 mean{};
  for (const WIDE3& point : points) mean = ADD(mean, point);
  return SCALED(mean, 1.0 / static_cast<double>(points.size()));
}

namespace {

// Moments of points about their mean along three axes at right angles: the axes as rows, the
// longest first.
struct PRINCIPAL_AXES {
  WIDE33 AXES{{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};
  WIDE3 MOMENTS{};  // square angstroms
};

// One rotation in the plane of axes p and q, after which the moment between them is zero.
void ROTATE_AXES(WIDE33& moments, WIDE33& axes, std::size_t p, std::size_t q) {
  if (!(std::abs(moments[p][q]) > 0.0)) return;
  const double angle = 0.5 * std::atan2(2.0 * moments[p][q], moments[p][p] - moments[q][q]);
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  const auto turn = [&](double& at_p, double& at_q) {
    const double old_p = at_p;
    at_p = c * old_p + s * at_q;
    at_q = c * at_q - s * old_p;
  };
  for (std::size_t k = 0; k < 3; ++k) turn(moments[p][k], moments[q][k]);
  for (std::size_t k = 0; k < 3; ++k) turn(moments[k][p], moments[k][q]);
  for (std::size_t k = 0; k < 3; ++k) turn(axes[p][k], axes[q][k]);
}

// The method of Jacobi: a few sweeps are enough for three axes.
PRINCIPAL_AXES AXES_OF(WIDE_POINTS points) {
  constexpr int sweeps = 12;
  const WIDE3 mean = MEAN_OF(points);
  WIDE33 moments{};
  for (const WIDE3& point : points) {
    const WIDE3 v = SUBTRACT(point, mean);
    for (std::size_t i = 0; i < 3; ++i)
      for (std::size_t j = 0; j < 3; ++j) moments[i][j] += v[i] * v[j];
  }
  PRINCIPAL_AXES found;
  for (int sweep = 0; sweep < sweeps; ++sweep)
    for (std::size_t p = 0; p < 2; ++p)
      for (std::size_t q = p + 1; q < 3; ++q) ROTATE_AXES(moments, found.AXES, p, q);
  found.MOMENTS = {moments[0][0], moments[1][1], moments[2][2]};
  for (std::size_t k = 0; k < 2; ++k)
    for (std::size_t l = k + 1; l < 3; ++l)
      if (found.MOMENTS[l] > found.MOMENTS[k]) {
        std::swap(found.MOMENTS[k], found.MOMENTS[l]);
        std::swap(found.AXES[k], found.AXES[l]);
      }
  return found;
}

bool MAKE_NO_PLANE(const PRINCIPAL_AXES& axes, std::size_t count) {
  constexpr double from_line = 0.01;  // angstroms, root mean square
  return !(axes.MOMENTS[1] > from_line * from_line * static_cast<double>(count));
}

// Twice the area that a polygon encloses, as a vector to the side from which it is anticlockwise.
WIDE3 AREA_VECTOR(WIDE_POINTS points) {
  WIDE3 sum{};
  for (std::size_t k = 1; k + 1 < points.size(); ++k)
    sum = ADD(sum, CROSS(SUBTRACT(points[k], points[0]), SUBTRACT(points[k + 1], points[0])));
  return sum;
}

}  // namespace

bool IN_ONE_LINE(WIDE_POINTS points) {
  return MAKE_NO_PLANE(AXES_OF(points), points.size());
}

WIDE_PLANE PLANE_THROUGH(WIDE_POINTS points) {
  const PRINCIPAL_AXES axes = AXES_OF(points);
  WIDE_PLANE plane{MEAN_OF(points), axes.AXES[2]};
  if (MAKE_NO_PLANE(axes, points.size())) plane.NORMAL = {no_value, no_value, no_value};
  const bool first_in_line = IN_ONE_LINE(points.first(3));
  const WIDE3 up = AREA_VECTOR(first_in_line ? points : points.first(3));
  if (DOT(up, plane.NORMAL) < 0.0) plane.NORMAL = SCALED(plane.NORMAL, -1.0);
  return plane;
}

double OFF_PLANE(const WIDE3& point, WIDE_POINTS plane) {
  const WIDE_PLANE through = PLANE_THROUGH(plane);
  return DOT(SUBTRACT(point, through.POINT), through.NORMAL);
}

double ANGLE_OF_PLANES(WIDE_POINTS plane1, WIDE_POINTS plane2) {
  const WIDE3 normal1 = PLANE_THROUGH(plane1).NORMAL;
  const WIDE3 normal2 = PLANE_THROUGH(plane2).NORMAL;
  return std::atan2(LENGTH(CROSS(normal1, normal2)), std::abs(DOT(normal1, normal2))) *
         degrees_per_radian;
}

// ---- hulls ----

namespace {

constexpr double in_face = 1e-3;  // angstroms

// The vertices in the plane of a triangle of the hull, in order around its outer side; none when
// others lie above it, or all in it.
HULL_FACE FACE_OF(WIDE_POINTS v, const HULL_TRIANGLE& corners) {
  const WIDE3& origin = corners[0];
  WIDE3 normal = CROSS(SUBTRACT(corners[1], origin), SUBTRACT(corners[2], origin));
  const double length = LENGTH(normal);
  if (!(length > in_face)) return {};
  normal = SCALED(normal, 1.0 / length);
  HULL_FACE face;
  for (std::size_t l = 0; l < v.size(); ++l) {
    const double height = DOT(SUBTRACT(v[l], origin), normal);
    if (height > in_face) return {};
    if (!(height < -in_face)) face.push_back(l);
  }
  if (face.size() == v.size()) return {};
  WIDE3 mean{};
  for (std::size_t l : face) mean = ADD(mean, SCALED(v[l], 1.0 / static_cast<double>(face.size())));
  const WIDE3 east = SUBTRACT(origin, mean);
  const WIDE3 north = CROSS(normal, east);
  const auto bearing = [&](std::size_t l) {
    const WIDE3 from_mean = SUBTRACT(v[l], mean);
    return std::atan2(DOT(from_mean, north), DOT(from_mean, east));
  };
  std::sort(face.begin(), face.end(),
            [&](std::size_t l, std::size_t m) { return bearing(l) < bearing(m); });
  return face;
}

// Whether two faces have three vertices in common: they are one then.
bool ARE_ONE(const HULL_FACE& a, const HULL_FACE& b) {
  return std::count_if(a.begin(), a.end(), [&](std::size_t l) {
           return std::find(b.begin(), b.end(), l) != b.end();
         }) > 2;
}

}  // namespace

std::vector<HULL_FACE> HULL_FACES(WIDE_POINTS vertices) {
  std::vector<HULL_FACE> candidates;
  for (const HULL_TRIANGLE& triangle : HULL_TRIANGLES(vertices)) {
    HULL_FACE face = FACE_OF(vertices, triangle);
    if (!face.empty()) candidates.push_back(std::move(face));
  }
  // Of faces that are nearly in one plane the one with the most vertices stands for all.
  std::stable_sort(candidates.begin(), candidates.end(),
                   [](const HULL_FACE& a, const HULL_FACE& b) { return a.size() > b.size(); });
  std::vector<HULL_FACE> faces;
  for (HULL_FACE& face : candidates)
    if (std::none_of(faces.begin(), faces.end(),
                     [&](const HULL_FACE& other) { return ARE_ONE(face, other); }))
      faces.push_back(std::move(face));
  return faces;
}

double VOLUME_WITHIN(const std::vector<HULL_FACE>& faces, WIDE_POINTS vertices) {
  double six_volumes = 0.0;
  for (const HULL_FACE& face : faces) {
    WIDE3 apex = vertices[face[0]];
    if (face.size() > 3) {
      apex = {};
      for (std::size_t l : face) apex = ADD(apex, vertices[l]);
      apex = SCALED(apex, 1.0 / static_cast<double>(face.size()));
    }
    for (std::size_t l = 0; l < face.size(); ++l)
      six_volumes += DOT(apex, CROSS(vertices[face[l]], vertices[face[(l + 1) % face.size()]]));
  }
  return six_volumes / 6.0;
}

// ---- distortions ----

double MEAN_LENGTH_OF(WIDE_POINTS ligands) {
  double sum = 0.0;
  for (const WIDE3& ligand : ligands) sum += LENGTH(ligand);
  return sum / static_cast<double>(ligands.size());
}

double QUADRATIC_ELONGATION(const std::vector<HULL_FACE>& faces, WIDE_POINTS ligands) {
  const double n = static_cast<double>(ligands.size());
  const double volume = VOLUME_WITHIN(faces, ligands);
  double r = no_value;
  if (ligands.size() == 4)
    r = static_cast<double>(TETRAHEDRON_RADIUS) *
        std::cbrt(12.0 * volume / static_cast<double>(ROOT_TWO));
  if (ligands.size() == 6) r = std::cbrt(0.75 * volume);
  double sum = 0.0;
  for (const WIDE3& ligand : ligands) sum += DOT(ligand, ligand);
  return sum / (n * r * r);
}

namespace {

// Calls visit with each angle between two ligands.
template <class VISIT>
void FOR_EACH_ANGLE(WIDE_POINTS ligands, VISIT visit) {
  for (std::size_t j = 0; j < ligands.size(); ++j)
    for (std::size_t k = j + 1; k < ligands.size(); ++k) visit(WIDE_ANGLE(ligands[j], ligands[k]));
}

constexpr int cis_pairs = 12;

bool IS_CIS(double angle) {
  return std::abs(angle - 180.0) > static_cast<double>(TRANS_LIMIT);
}

}  // namespace

double ANGLE_VARIANCE(WIDE_POINTS ligands) {
  const bool octahedron = ligands.size() == 6;
  if (!octahedron && ligands.size() != 4) return no_value;
  const double regular = static_cast<double>(octahedron ? OCTAHEDRON_ANGLE : TETRAHEDRON_ANGLE);
  double sum = 0.0;
  int count = 0;
  FOR_EACH_ANGLE(ligands, [&](double angle) {
    if (octahedron && !IS_CIS(angle)) return;
    sum += (angle - regular) * (angle - regular);
    ++count;
  });
  if (octahedron && count != cis_pairs) return no_value;
  return sum / (count - 1);
}

double BAUR_INDEX(WIDE_POINTS ligands) {
  const double mean = MEAN_LENGTH_OF(ligands);
  double sum = 0.0;
  for (const WIDE3& ligand : ligands) sum += std::abs(LENGTH(ligand) - mean);
  return sum / (static_cast<double>(ligands.size()) * mean);
}

double EFFECTIVE_COORDINATION(WIDE_POINTS ligands) {
  constexpr int most_steps = 1000;
  constexpr double settled = 1e-14;  // of the mean length
  std::vector<double> lengths;
  for (const WIDE3& ligand : ligands) lengths.push_back(LENGTH(ligand));
  double mean = *std::min_element(lengths.begin(), lengths.end());
  double weights = 0.0;
  for (int step = 0; step < most_steps; ++step) {
    double weighted = 0.0;
    weights = 0.0;
    for (double length : lengths) {
      const double ratio = length / mean;
      const double cube = ratio * ratio * ratio;
      const double weight = std::exp(1.0 - cube * cube);
      weights += weight;
      weighted += weight * length;
    }
    const double last = mean;
    mean = weighted / weights;
    if (!(std::abs(mean - last) > settled * mean)) break;
  }
  return weights;
}

double DISTANCE_TO_CENTROID(WIDE_POINTS ligands) {
  return LENGTH(MEAN_OF(ligands));
}

double CIS_DEVIATION(WIDE_POINTS ligands) {
  if (ligands.size() != 6) return no_value;
  double sum = 0.0;
  int count = 0;
  FOR_EACH_ANGLE(ligands, [&](double angle) {
    if (!IS_CIS(angle)) return;
    sum += std::abs(90.0 - angle);
    ++count;
  });
  return count == cis_pairs ? sum : no_value;
}

}  // namespace KVA_CRYSTAL_STRUCTURES
