// The dialogue of GRAPH: from followed features to files, and to gnuplot.
#include "src/facetor6_graph/graph.h"

#include <algorithm>  // for find, min, stable_partition
#include <array>
#include <system_error>

#include "console_code/console/input.h"
#include "console_code/console/open_file.h"
#include "console_code/console/output.h"
#include "console_code/console/state.h"
#include "console_code/console/work.h"
#include "console_code/console_programs.h"
#include "console_code/console_win.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_graph/features.h"
#include "src/facetor6_graph/gnuplot_script.h"
#include "src/facetor6_sheets/sheet.h"

namespace FACETOR_GRAPH {

using namespace FACETOR_LIST;
using namespace FACETOR_SHEETS;
using namespace KVA_CONSOLE;
using namespace KVA_UTILITIES;

namespace {

// ---- the sheet ----

// The text as UTF-8, its control characters as blanks: nothing breaks a line that gnuplot reads.
std::string ON_ONE_LINE(std::string text) {
  for (char& c : text)
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
  return AS_UTF8(text);
}

bool IS_MEASURE(const FEATURE_VALUES& abscissa) {
  return abscissa.NAME != "P" && abscissa.NAME != "T";
}

void ADD_NAMES(const FEATURE_VALUES& feature, NAMES_TAKEN& taken, std::string& line) {
  const std::string name = ON_ONE_LINE(feature.NAME);
  const std::string of_value = UNIQUE_NAME(name, taken, LINE_LENGTH);
  ADD_FIELDS({of_value, UNIQUE_NAME(name + "_esd", taken, LINE_LENGTH)}, line);
}

void ADD_CELL(const REPORT_CELL& cell, std::string& line) {
  ADD_FIELDS({VALUE_FIELD(cell), ESD_FIELD(cell)}, line);
}

// False when the user has stopped it, here and below.
bool ADD_SHEET_HEAD(const FOLLOWED& followed, WORK& work, std::string& text) {
  NAMES_TAKEN taken;
  ADD_FIELDS(START_NAMES(taken), text);
  if (IS_MEASURE(followed.ABSCISSA)) ADD_NAMES(followed.ABSCISSA, taken, text);
  for (const FEATURE_VALUES& feature : followed.FEATURES) {
    if (!GO_ON(work, work.TOTAL)) return false;
    ADD_NAMES(feature, taken, text);
  }
  text += '\n';
  return true;
}

bool ADD_SHEET_ROW(const FOLLOWED& followed, std::size_t k, WORK& work, std::string& text) {
  ROW_HEAD head = followed.BLOCKS[k];
  head.TITLE = ON_ONE_LINE(head.TITLE);
  std::string line;
  ADD_FIELDS(SHEET_START(head), line);
  if (IS_MEASURE(followed.ABSCISSA)) ADD_CELL(followed.ABSCISSA.CELLS[k], line);
  for (const FEATURE_VALUES& feature : followed.FEATURES) {
    if (!GO_ON(work, work.TOTAL)) return false;
    ADD_CELL(feature.CELLS[k], line);
  }
  text.append(line).append("\n");
  return true;
}

// A row a block. A measure as abscissa comes first.
bool ADD_SHEET(const FOLLOWED& followed, WORK& work, std::string& text) {
  if (!ADD_SHEET_HEAD(followed, work, text)) return false;
  for (std::size_t k = 0; k < followed.BLOCKS.size(); ++k)
    if (!ADD_SHEET_ROW(followed, k, work, text)) return false;
  return true;
}

// ---- axes ----

std::string PRINTED_UNIT(std::string_view unit) {
  constexpr std::array<std::array<std::string_view, 2>, 5> units{
      {{"A", "Å"}, {"A^2", "Å²"}, {"A^3", "Å³"}, {"deg", "°"}, {"deg^2", "deg²"}}};
  for (const auto& [plain, printed] : units)
    if (plain == unit) return std::string(printed);
  return std::string(unit);
}

std::string WITH_UNIT(const std::string& words, std::string_view unit) {
  return unit.empty() ? words : words + " (" + PRINTED_UNIT(unit) + ")";
}

// The units of the features, each once.
std::vector<std::string> UNITS_OF(const FOLLOWED& followed) {
  std::vector<std::string> units;
  for (const FEATURE_VALUES& feature : followed.FEATURES)
    if (std::find(units.begin(), units.end(), feature.UNIT) == units.end())
      units.push_back(feature.UNIT);
  return units;
}

// What an axis shows; of measures their names, as long as there is room for them.
std::string WORDS_OF(SUBJECT subject, const FOLLOWED& followed, std::string_view unit) {
  constexpr int most_characters = 30;
  switch (subject) {
    case SUBJECT::CELLS:
      return "Cell relative to the reference";
    case SUBJECT::BONDS:
      return "Bond length";
    case SUBJECT::ANGLES:
      return "Angle";
    case SUBJECT::VOLUMES:
      return "Polyhedral volume";
    case SUBJECT::VALENCES:
      return "Bond valence";
    default:
      break;
  }
  std::string names;
  for (const FEATURE_VALUES& feature : followed.FEATURES)
    if (feature.UNIT == unit) names += (names.empty() ? "" : ", ") + feature.LABEL;
  return CHARACTERS(names) <= most_characters ? names : "Measures";
}

// The block whose points are marked; 0 when it is not drawn.
int REFERENCE_IN(const FOLLOWED& followed) {
  for (const ROW_HEAD& head : followed.BLOCKS)
    if (head.BLOCK == FACETOR_CONSOLE::IREFERENCE) return head.BLOCK;
  return 0;
}

constexpr int first_value = 8;  // column of the sheet, behind those of the block

int COLUMN_OF_ABSCISSA(const std::string& name) {
  constexpr int of_temperature = 3;
  constexpr int of_pressure = 5;
  if (name == "T") return of_temperature;
  return name == "P" ? of_pressure : first_value;
}

// Without its items.
GRAPH GRAPH_OF(SUBJECT subject, const FOLLOWED& followed, const std::vector<std::string>& units) {
  GRAPH graph;
  graph.X_TITLE = WITH_UNIT(followed.ABSCISSA.LABEL, followed.ABSCISSA.UNIT);
  graph.X_COLUMN = COLUMN_OF_ABSCISSA(followed.ABSCISSA.NAME);
  graph.Y_TITLE = WITH_UNIT(WORDS_OF(subject, followed, units[0]), units[0]);
  if (units.size() > 1)
    graph.RIGHT_TITLE = WITH_UNIT(WORDS_OF(subject, followed, units[1]), units[1]);
  graph.REFERENCE_BLOCK = REFERENCE_IN(followed);
  return graph;
}

bool ADD_ITEMS(const FOLLOWED& followed, WORK& work, GRAPH& graph) {
  const std::string& unit_at_left = followed.FEATURES.front().UNIT;
  int column = IS_MEASURE(followed.ABSCISSA) ? first_value + 2 : first_value;
  for (const FEATURE_VALUES& feature : followed.FEATURES) {
    if (!GO_ON(work, work.TOTAL)) return false;
    graph.ITEMS.push_back({ON_ONE_LINE(feature.LABEL), column, feature.UNIT != unit_at_left});
    column += 2;
  }
  return true;
}

// ---- files ----

struct GRAPH_FILES {
  std::string PICTURE;  // blank: the terminal
  std::string SHEET;
  std::string SCRIPT;
};

struct PICTURE_KIND {
  std::string_view EXTENSION;
  PICTURE KIND;
};
constexpr std::array<PICTURE_KIND, 3> picture_kinds{
    {{"svg", PICTURE::SVG}, {"pdf", PICTURE::PDF}, {"png", PICTURE::PNG}}};

// TERMINAL when the name has another extension.
PICTURE KIND_OF(const std::string& name) {
  const std::string extension = name.substr(name.rfind('.') + 1);
  for (const PICTURE_KIND& row : picture_kinds)
    if (EQUAL_TEXT(extension, row.EXTENSION)) return row.KIND;
  return PICTURE::TERMINAL;
}

// No picture when none is wanted, or when the command is dropped.
GRAPH_FILES ASK_FILES() {
  FILE_RECORD file;
  file.DESCRIPTOR = "graph";
  file.EXT = "svg";
  while (true) {
    std::string name = NAME_OF_NEW_FILE(file);
    if (name.empty()) return {};
    if (FILENAME(name).find('.') == std::string::npos) name += "." + file.EXT;  // ../bonds
    const std::string stem = name.substr(0, name.rfind('.'));
    const GRAPH_FILES files{name, stem + ".csv", stem + ".gp"};
    if (KIND_OF(name) == PICTURE::TERMINAL) {
      WRITE_OUT("*****A graph is a svg, pdf or png: choose one of these extensions");
      REFUSE_ANSWER();
    } else if (MAY_REPLACE({files.SHEET, files.SCRIPT, files.PICTURE})) {
      return files;
    }
  }
}

// False, with a message, when it could not be written.
bool WRITE_FILE(const std::string& name, const std::string& content) {
  int error = 0;
  if (REPLACE_FILE(name, content, &error)) return true;
  WRITE_OUT("*****The file " + AS_IT_IS(name) +
            " could not be written: " + std::generic_category().message(error));
  return false;
}

// ---- gnuplot ----

constexpr std::string_view gnuplot = "gnuplot";

// The first error that gnuplot tells, without its place in the script; blank: it told none but
// warnings. It goes on behind an error, so that its status tells nothing.
std::string FIRST_ERROR(const std::string& errors) {
  constexpr std::string_view place = "line 0: ";
  for (std::size_t at = errors.find(place); at != std::string::npos;
       at = errors.find(place, at + 1)) {
    const std::size_t start = at + place.size();
    const std::string line = errors.substr(start, errors.find('\n', start) - start);
    if (!line.starts_with("warning")) return TRIM(ON_ONE_LINE(line));
  }
  return "";
}

// Why there is no picture; blank when there is one.
std::string REASON_AGAINST(const PROGRAM_ANSWER& answer, PICTURE kind) {
  switch (answer.END) {
    case PROGRAM_END::NOT_STARTED:
      return "gnuplot could not be started";
    case PROGRAM_END::INTERRUPTED:
      return "gnuplot was stopped";
    case PROGRAM_END::GIVEN_UP:
      return "gnuplot was given up, as it took too long";
    case PROGRAM_END::BY_ITSELF:
      break;
  }
  const std::string error = FIRST_ERROR(answer.ERRORS);
  if (error.empty() && answer.STATUS == 0 && !answer.OUTPUT.empty()) return "";
  if (answer.ERRORS.find("terminal type") != std::string::npos && kind != PICTURE::TERMINAL)
    return "This gnuplot draws no " + std::string(kind == PICTURE::PDF ? "pdf" : "such picture") +
           ": choose svg";
  return "gnuplot: " + (error.empty() ? "it drew nothing" : error);
}

// The picture; blank, with a message, when there is none. path: of gnuplot.
std::string DRAWN(const std::string& path, const GRAPH& graph, const std::string& sheet_text,
                  const std::string& folder) {
  WORK work("", 1);
  PROGRAM_CALL call;
  call.PATH = path;
  call.ARGUMENTS = {"-d"};  // settings of the user's own would change the picture
  call.INPUT = SCRIPT_TO_OUTPUT(graph, work, sheet_text);
  call.FOLDER = folder;
  PROGRAM_ANSWER answer;
  answer.END = PROGRAM_END::INTERRUPTED;
  if (!work.STOPPED) answer = RUN_PROGRAM(call);
  if (answer.END == PROGRAM_END::INTERRUPTED) GO_ON(work, 1);
  const std::string reason = REASON_AGAINST(answer, graph.KIND);
  if (reason.empty()) return std::move(answer.OUTPUT);
  WRITE_OUT("*****" + AS_IT_IS(reason));
  return "";
}

void DRAW_IN_TERMINAL(const GRAPH& graph, const std::string& sheet_text) {
  const std::string path = FIND_PROGRAM(std::string(gnuplot));
  if (path.empty())
    return WRITE_OUT("*****gnuplot is not installed: name a file, and it is drawn when it is");
  std::string picture = DRAWN(path, graph, sheet_text, "");
  while (!picture.empty()) {
    const std::size_t end = std::min(picture.find('\n'), picture.size() - 1);
    WRITE_OUT(AS_IT_IS(TRIM(ON_ONE_LINE(picture.substr(0, end)))));
    picture.erase(0, end + 1);
  }
}

void DRAW_PICTURE(const GRAPH& graph, const GRAPH_FILES& files) {
  const std::string path = FIND_PROGRAM(std::string(gnuplot));
  if (path.empty())
    return WRITE_OUT("*****gnuplot is not installed: " + AS_IT_IS(files.SCRIPT) + " draws " +
                     AS_IT_IS(files.SHEET) + " when it is");
  const std::string folder =
      files.PICTURE.substr(0, files.PICTURE.size() - FILENAME(files.PICTURE).size());
  const std::string picture = DRAWN(path, graph, "", folder);
  if (!picture.empty() && WRITE_FILE(files.PICTURE, picture))
    WRITE_OUT("     The graph is drawn in " + AS_IT_IS(files.PICTURE));
}

// False, with a message, when the user has stopped the work.
bool IS_DONE(const WORK& work) {
  if (work.STOPPED) WRITE_OUT("|*****The graph was stopped");
  return !work.STOPPED;
}

bool FOLLOWED_ALL(const SUBJECT_CHOICE& subject, const ABSCISSA_CHOICE& abscissa,
                  FOLLOWED& followed) {
  WORK work("Following the values: site", static_cast<int>(subject.SITES.size()));
  followed = FOLLOW(subject, abscissa, CELL_FORM::RELATIVE, work);
  return IS_DONE(work);
}

struct GRAPH_TEXTS {
  std::string SHEET;
  std::string SCRIPT;  // of one that gets files
};

// With the items of the graph. Uses up the features: many take a while to be let go, here between
// looks at the key.
bool TEXTS_MADE(FOLLOWED& followed, GRAPH& graph, GRAPH_TEXTS& texts) {
  WORK work("", 1);
  if (ADD_ITEMS(followed, work, graph) && ADD_SHEET(followed, work, texts.SHEET)) {
    followed.FEATURES = std::vector<FEATURE_VALUES>{};
    if (graph.KIND != PICTURE::TERMINAL) texts.SCRIPT = SCRIPT_OF(graph, work);
  }
  return IS_DONE(work);
}

// The picture is drawn when the other two are there.
void WRITE_GRAPH(FOLLOWED& followed, const GRAPH_FILES& files, GRAPH& graph) {
  graph.KIND = KIND_OF(files.PICTURE);
  graph.PICTURE_NAME = FILENAME(files.PICTURE);
  graph.SHEET_NAME = FILENAME(files.SHEET);
  GRAPH_TEXTS texts;
  if (!TEXTS_MADE(followed, graph, texts)) return;
  if (!WRITE_FILE(files.SHEET, texts.SHEET) || !WRITE_FILE(files.SCRIPT, texts.SCRIPT)) return;
  WRITE_OUT("     " + INTEGER_COLUMNS(static_cast<int>(followed.BLOCKS.size())) +
            " rows written to " + AS_IT_IS(files.SHEET) + ", the script to " +
            AS_IT_IS(files.SCRIPT));
  DRAW_PICTURE(graph, files);
}

}  // namespace

void RUN_GRAPH() {
  if (FACETOR_CONSOLE::CHECK_NOPHASES()) return;
  const SUBJECT_CHOICE subject = ASK_SUBJECT("Graph");
  if (subject.OF == SUBJECT::NONE) return;
  const ABSCISSA_CHOICE abscissa = ASK_ABSCISSA(false);
  if (abscissa.WHAT == AGAINST::NOTHING) return;
  FOLLOWED followed;
  if (!FOLLOWED_ALL(subject, abscissa, followed)) return;
  const std::vector<std::string> units = UNITS_OF(followed);
  if (units.empty())
    return WRITE_OUT("*****There is nothing to draw: no used block has such a value");
  if (units.size() > 2)
    return WRITE_OUT("*****There are more than two units: choose measures of one or two");
  std::stable_partition(followed.FEATURES.begin(), followed.FEATURES.end(),
                        [&](const FEATURE_VALUES& feature) { return feature.UNIT == units[0]; });
  GRAPH graph = GRAPH_OF(subject.OF, followed, units);
  const GRAPH_FILES files = ASK_FILES();
  if (CONSOLE.DROPPED) return;
  if (!files.PICTURE.empty()) return WRITE_GRAPH(followed, files, graph);
  graph.KIND = PICTURE::TERMINAL;
  GRAPH_TEXTS texts;
  if (TEXTS_MADE(followed, graph, texts)) DRAW_IN_TERMINAL(graph, texts.SHEET);
}

}  // namespace FACETOR_GRAPH
