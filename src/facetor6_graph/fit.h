// The FIT command: lines and parabolas through the values of the used blocks.
#pragma once

namespace FACETOR_GRAPH {

void RUN_FIT();

}  // namespace FACETOR_GRAPH
