// What GRAPH and FIT ask for alike: which values, of which sites or measures, and against what.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace FACETOR_GRAPH {

enum class SUBJECT { NONE, CELLS, BONDS, ANGLES, VOLUMES, VALENCES, MEASURES };

// What the user has chosen; NONE: nothing.
struct SUBJECT_CHOICE {
  SUBJECT OF = SUBJECT::NONE;
  std::vector<int> SITES;             // atoms of the reference block
  std::vector<std::size_t> MEASURES;  // places in the list of measures
};

enum class AGAINST { NOTHING, PRESSURE, TEMPERATURE, MEASURE };

struct ABSCISSA_CHOICE {
  AGAINST WHAT = AGAINST::NOTHING;
  std::size_t MEASURE = 0;  // place in the list of measures
  bool PARABOLA = false;
};

// The menu as it is now.
std::span<const std::string_view> SUBJECT_MENU();

// Pending text is used first, a word an answer; of the names of measures as many as there are.
// command: its name, for the head of the menu. With valences or measures that are not there the
// user is told what to do.
SUBJECT_CHOICE ASK_SUBJECT(std::string_view command);

// Nothing when the command is dropped. with_curve: a 2 behind the answer asks for a parabola.
ABSCISSA_CHOICE ASK_ABSCISSA(bool with_curve);

}  // namespace FACETOR_GRAPH
