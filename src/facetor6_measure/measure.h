// The MEASURE command: definitions, and the table of all measures.
#pragma once

namespace FACETOR_MEASURE {

void RUN_MEASURE();

}  // namespace FACETOR_MEASURE
