// The TRANSFORM command: x(new) = T x(old) + offset for all atoms of chosen blocks.
#pragma once

namespace FACETOR_TRANSFORM {

void RUN_TRANSFORM();

}  // namespace FACETOR_TRANSFORM
