// The sum of pyramids of a polyhedron of which one vertex after the other is moved a little, as its
// esd wants it: what the moved vertex cannot change is kept. Each volume is, to the bit, what
// PYRAMIDS_VOLUME gives for the same vertices.
#pragma once

#include <vector>

#include "src/kva_crystal_structures/face_plane.h"

namespace KVA_CRYSTAL_STRUCTURES {

// None, one or more vertices: how many, and the last that was met.
struct SOME_VERTICES {
  int COUNT = 0;
  std::size_t LAST = 0;

  void ADD(std::size_t vertex) {
    ++COUNT;
    LAST = vertex;
  }
  bool ANY_BUT(std::size_t vertex) const { return COUNT > 1 || (COUNT == 1 && LAST != vertex); }
};

// What is sure of a triangle when vertices are moved no further than MOVES tells: that it stays a
// face with no other vertex in its plane, or that it stays no face.
enum class SURE_OF { NOTHING, FACE, NO_FACE };

// A triangle of vertices, and where the others lie. Its plane and those in it are known as long as
// no more than one lies beyond it: with two beyond, no vertex that moves makes it a face.
struct TRIANGLE {
  CORNERS AT{};
  FACE_PLANE PLANE{};
  SOME_VERTICES BEYOND;
  SOME_VERTICES WITHIN;
  SURE_OF WHEN_MOVED = SURE_OF::NOTHING;
};

// All triangles of the vertices about a centre at 0; none of fewer than four.
std::vector<TRIANGLE> TRIANGLES_OF(std::span<const VECTOR3> v);

// Volume of the vertices that the triangles were made of.
float VOLUME_AS_MADE(const std::vector<TRIANGLE>& triangles);

// Whether the pyramids surely fill the convex hull of the vertices. Where they do not (a centre
// outside, five vertices in a plane, three on a line) the answer is no; a no may be wrong.
bool SURELY_FILL_THE_HULL(const std::vector<TRIANGLE>& triangles);

// How far vertices are moved at the most, angstroms: one at a time, and all at once.
struct MOVES {
  float OF_ONE = 0.0f;
  float OF_ALL = 0.0f;
};

// Tells which triangles surely stay faces when the vertices that they were made of are moved so,
// and leaves out those that are no faces and surely stay none: they add nothing to any volume. One
// is kept where there are any.
void TELL_SURE_ONES(std::span<const VECTOR3> v, const MOVES& moves,
                    std::vector<TRIANGLE>& triangles);

// Volume of v when only the vertex with the number moved (from 0) is another than it was.
float VOLUME_WITH_ONE_MOVED(std::span<const VECTOR3> v, const std::vector<TRIANGLE>& triangles,
                            std::size_t moved);

// The same when all vertices may be.
float VOLUME_WITH_ALL_MOVED(std::span<const VECTOR3> v, const std::vector<TRIANGLE>& triangles);

}  // namespace KVA_CRYSTAL_STRUCTURES
