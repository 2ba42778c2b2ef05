// Images of atoms, sorted into boxes where they are many, so that a search looks at those near its
// point alone.
#include "src/kva_crystal_structures/image_boxes.h"

#include <algorithm>  // for all_of, max, min, sort, unique
#include <cmath>      // for abs, cbrt
#include <span>
#include <utility>  // for move

namespace KVA_CRYSTAL_STRUCTURES {

namespace {

// ---- images in boxes ----

// Operators to try: the reduced ones and, in a centric group, their inverted copies. Centring is
// added by the search itself.
int OPERATORS_TO_TRY(const XTAL::SPACE_GROUP& group) {
  constexpr int acentric = 1;
  const int wanted = group.CENTRED == acentric ? group.NUMOPS : 2 * group.NUMOPS;
  return std::min(wanted, group.SYMOP.COUNT());
}

int BOXES_ALONG(float edge_reciprocal, float box_width, float most) {
  const float wanted = 1.0f / (edge_reciprocal * box_width);
  return wanted > 1.0f ? static_cast<int>(std::min(wanted, most)) : 1;
}

constexpr std::array<int, 3> one_box{1, 1, 1};

// Boxes of some 1.5 angstroms, along each axis no more than would leave most boxes empty. A few
// images are sooner looked at one by one, and those that are no numbers have no place: such go into
// one box.
std::array<int, 3> BOXES_FOR(const XTAL::CRYSTAL_CELL& cell,
                             const std::vector<ATOM_IMAGE>& images) {
  constexpr float box_width = 1.5f;
  constexpr std::size_t few = 100;
  const auto has_place = [](const ATOM_IMAGE& image) { return XTAL::IS_FINITE(image.X); };
  if (images.size() < few || !std::all_of(images.begin(), images.end(), has_place)) return one_box;
  const float most = 1.0f + std::cbrt(static_cast<float>(images.size()));
  std::array<int, 3> boxes{};
  for (std::size_t k = 0; k < 3; ++k) boxes[k] = BOXES_ALONG(cell.RCELL[k], box_width, most);
  return boxes;
}

int BOX_NUMBER(const ATOM_IMAGES& images, int b1, int b2, int b3) {
  return (b1 * images.BOXES[1] + b2) * images.BOXES[2] + b3;
}

int BOX_OF(const ATOM_IMAGES& images, const VECTOR3& x) {
  std::array<int, 3> b{};
  for (std::size_t k = 0; k < 3; ++k) {
    const int boxes = images.BOXES[k];
    if (boxes > 1) b[k] = std::min(static_cast<int>(x[k] * static_cast<float>(boxes)), boxes - 1);
  }
  return BOX_NUMBER(images, b[0], b[1], b[2]);
}

// Puts the images box by box, in each in the order that they stand in.
void SORT_INTO_BOXES(ATOM_IMAGES& images) {
  const int boxes = images.BOXES[0] * images.BOXES[1] * images.BOXES[2];
  images.BOX_START.assign(static_cast<std::size_t>(boxes) + 1, 0);
  std::vector<std::size_t> box_of;
  box_of.reserve(images.IMAGES.size());
  for (const ATOM_IMAGE& image : images.IMAGES) {
    box_of.push_back(static_cast<std::size_t>(BOX_OF(images, image.X)));
    ++images.BOX_START[box_of.back() + 1];
  }
  for (std::size_t box = 1; box < images.BOX_START.size(); ++box)
    images.BOX_START[box] += images.BOX_START[box - 1];
  std::vector<int> next = images.BOX_START;
  std::vector<ATOM_IMAGE> boxed(images.IMAGES.size());
  for (std::size_t i = 0; i < box_of.size(); ++i)
    boxed[static_cast<std::size_t>(next[box_of[i]]++)] = images.IMAGES[i];
  images.IMAGES = std::move(boxed);
}

}  // namespace

ATOM_IMAGES IMAGES_OF(const CRYSTAL_STRUCTURE_TYPE& phase) {
  ATOM_IMAGES images{phase, {}, {1, 1, 1}, {}};
  const int operators = OPERATORS_TO_TRY(phase.SPG);
  images.IMAGES.reserve(static_cast<std::size_t>(phase.NATOMS) *
                        static_cast<std::size_t>(operators));
  for (int atom = 1; atom <= phase.NATOMS; ++atom)
    for (int op = 1; op <= operators; ++op)
      images.IMAGES.push_back(
          {XTAL::MODULO_LAT(XTAL::APPLY_OP(phase.SPG.SYMOP(op), phase.ATOM(atom).X)), atom, op});
  images.BOXES = BOXES_FOR(phase.CELL, images.IMAGES);
  SORT_INTO_BOXES(images);
  return images;
}

// ---- images near a point ----

namespace {

// Boxes along one axis that hold all that lies within reach of x; they go on behind the last with
// the first.
struct BOX_RANGE {
  int FIRST = 0;
  int COUNT = 0;
};

BOX_RANGE BOXES_IN_REACH(float x, float reach, int boxes) {
  constexpr float margin = 1e-4f;  // more than the rounding of a coordinate
  const float half = std::max(reach, 0.0f) + margin;
  if (boxes == 1 || !(half < 0.5f)) return {0, boxes};
  const float n = static_cast<float>(boxes);
  // One cell further on, where cutting off the fraction rounds down.
  const int first = static_cast<int>((x - half + 1.0f) * n);
  const int last = static_cast<int>((x + half + 1.0f) * n);
  return {first < boxes ? first : first - boxes, std::min(last - first + 1, boxes)};
}

int WRAPPED(int box, int boxes) {
  return box < boxes ? box : box - boxes;
}

// Whether the image comes within reach of x along every axis, in whatever cell.
bool WITHIN_REACH(const VECTOR3& image, const VECTOR3& x, const VECTOR3& reach) {
  for (std::size_t k = 0; k < 3; ++k) {
    const float apart = std::abs(image[k] - x[k]);
    if (std::min(apart, 1.0f - apart) > reach[k]) return false;
  }
  return true;
}

bool IS_SOONER(const ATOM_IMAGE* a, const ATOM_IMAGE* b) {
  return a->ATOM != b->ATOM ? a->ATOM < b->ATOM : a->OPERATOR < b->OPERATOR;
}

// Appends those of the images that are within reach of x.
inline void ADD_NEAR(std::span<const ATOM_IMAGE> images, const VECTOR3& x, const VECTOR3& reach,
                     std::vector<const ATOM_IMAGE*>& near) {
  for (const ATOM_IMAGE& image : images)
    if (WITHIN_REACH(image.X, x, reach)) near.push_back(&image);
}

std::span<const ATOM_IMAGE> IN_BOX(const ATOM_IMAGES& images, int box) {
  const auto start = images.BOX_START.begin() + box;
  return {images.IMAGES.begin() + start[0], images.IMAGES.begin() + start[1]};
}

// Appends what the boxes near x hold within reach of it.
void ADD_FROM_BOXES(const ATOM_IMAGES& images, const VECTOR3& x, const VECTOR3& reach,
                    std::vector<const ATOM_IMAGE*>& near) {
  const std::array<int, 3>& n = images.BOXES;
  const bool not_divided = images.BOX_START.size() == 2;
  if (not_divided) return ADD_NEAR(images.IMAGES, x, reach, near);
  std::array<BOX_RANGE, 3> r;
  for (std::size_t k = 0; k < 3; ++k) r[k] = BOXES_IN_REACH(x[k], reach[k], n[k]);
  for (int i = 0; i < r[0].COUNT; ++i)
    for (int j = 0; j < r[1].COUNT; ++j)
      for (int k = 0; k < r[2].COUNT; ++k)
        ADD_NEAR(IN_BOX(images,
                        BOX_NUMBER(images, WRAPPED(r[0].FIRST + i, n[0]),
                                   WRAPPED(r[1].FIRST + j, n[1]), WRAPPED(r[2].FIRST + k, n[2]))),
                 x, reach, near);
}

}  // namespace

std::vector<const ATOM_IMAGE*> IMAGES_NEAR(const ATOM_IMAGES& images, const VECTOR3& x_frac,
                                           const VECTOR3& reach) {
  std::vector<const ATOM_IMAGE*> near;
  near.reserve(MAX_BONDS);
  for (const VECTOR3& centring : images.PHASE.SPG.LATT_TRANS)
    ADD_FROM_BOXES(images, XTAL::MODULO_LAT(XTAL::SUBTRACT(x_frac, centring)), reach, near);
  // Every centring vector can bring the same image into reach.
  std::sort(near.begin(), near.end(), IS_SOONER);
  near.erase(std::unique(near.begin(), near.end()), near.end());
  return near;
}

}  // namespace KVA_CRYSTAL_STRUCTURES
