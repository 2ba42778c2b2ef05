// The PTEDIT command: pressures and temperatures of blocks set by the user.
#pragma once

namespace FACETOR_PTEDIT {

void RUN_PTEDIT();

}  // namespace FACETOR_PTEDIT
