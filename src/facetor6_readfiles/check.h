// The CHECK command: which required items a CIF lacks.
#pragma once

namespace FACETOR_READFILES {

void RUN_CHECK_CIF();

}  // namespace FACETOR_READFILES
