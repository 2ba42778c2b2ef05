// The ATOMEDIT command: a shell of its own for the use of atoms and their elements.
#pragma once

namespace FACETOR_ATOMEDIT {

void RUN_ATOMEDIT();

}  // namespace FACETOR_ATOMEDIT
