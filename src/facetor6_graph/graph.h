// The GRAPH command: values of the used blocks as a sheet, a gnuplot script and a picture.
#pragma once

namespace FACETOR_GRAPH {

void RUN_GRAPH();

}  // namespace FACETOR_GRAPH
