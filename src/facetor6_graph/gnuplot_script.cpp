// Lines of a gnuplot script, and the looks of a graph in a journal's column.
#include "src/facetor6_graph/gnuplot_script.h"

#include <algorithm>  // for clamp, max
#include <array>
#include <cctype>  // for isalnum
#include <cmath>   // for lround

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"

namespace FACETOR_GRAPH {

using namespace KVA_CONSOLE;
using namespace KVA_UTILITIES;

namespace {

// ---- looks ----

// The palette of M. Okabe and K. Ito, which the colour-blind can tell apart, without its yellow.
// In grey the shapes tell.
constexpr std::array<std::string_view, 7> colours{"#000000", "#D55E00", "#0072B2", "#E69F00",
                                                  "#009E73", "#CC79A7", "#56B4E9"};
// Filled and open circle, square, triangle, inverted triangle, diamond.
constexpr std::array<int, 10> point_types{7, 4, 9, 12, 5, 6, 13, 8, 11, 10};
constexpr int ring = 6;

// One journal column, 8.5 cm. Lengths in pixels of 1/96 inch.
constexpr int width = 321;
constexpr int height_of_plot = 235;
constexpr int height_of_legend_row = 14;

int ROWS_OF_LEGEND(const GRAPH& graph) {
  constexpr int of_character = 6;
  constexpr int of_sample = 28;
  constexpr int margins = 40;
  int longest = graph.REFERENCE_BLOCK > 0 ? 15 : 1;
  for (const SERIES& item : graph.ITEMS) longest = std::max(longest, CHARACTERS(item.NAME));
  const int columns = std::max((width - margins) / (of_character * longest + of_sample), 1);
  const int entries = static_cast<int>(graph.ITEMS.size()) + (graph.REFERENCE_BLOCK > 0 ? 1 : 0);
  return (entries + columns - 1) / columns;
}

std::string TERMINAL_LINE(const GRAPH& graph) {
  constexpr double inch = 96.0;
  constexpr double cm = 2.54 / inch;
  constexpr int most = 2000;
  const int height = std::min(height_of_plot + height_of_legend_row * ROWS_OF_LEGEND(graph), most);
  const auto whole = [](double number) {
    return INTEGER_COLUMNS(static_cast<int>(std::lround(number)));
  };
  switch (graph.KIND) {
    case PICTURE::SVG:
      return "svg size " + whole(width) + "," + whole(height) +
             " font 'Helvetica,10.5' background 'white' noenhanced";
    case PICTURE::PDF:
      return "pdfcairo size 8.5cm," +
             LEFT_ADJUST(REAL_COLUMNS(static_cast<float>(height * cm), 8, 1)) +
             "cm font 'Helvetica,10' linewidth 1.5 pointscale 0.8 noenhanced";
    case PICTURE::PNG:  // 300 pixels an inch
      return "pngcairo size " + whole(width * 300.0 / inch) + "," + whole(height * 300.0 / inch) +
             " font 'Helvetica,8' fontscale 3.1 linewidth 3 pointscale 3.6 noenhanced";
    case PICTURE::TERMINAL:
      return "dumb size 79,30 noenhanced";
  }
  return "";
}

}  // namespace

// ---- texts ----

std::string GNUPLOT_TEXT(std::string_view text) {
  std::string quoted;
  // A doubled quote right behind the opening one would close the text.
  if (text.starts_with('\'')) {
    quoted = "’";
    text.remove_prefix(1);
  }
  for (const char c : text) {
    const bool control = static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
    quoted += control ? ' ' : c;
    if (c == '\'') quoted += c;
  }
  return "'" + quoted + "'";
}

std::string GNUPLOT_FILE(std::string_view name) {
  const bool plain = !name.empty() && std::isalnum(static_cast<unsigned char>(name.front())) != 0;
  return GNUPLOT_TEXT((plain ? "" : "./") + std::string(name));
}

// ---- the plot ----

namespace {

std::string NUMBER(int n) {
  return INTEGER_COLUMNS(n);
}

std::string AXES(bool on_right) {
  return on_right ? " axes x1y2" : "";
}

std::string SERIES_LINE(const GRAPH& graph, const SERIES& item, std::size_t k) {
  const std::string values = NUMBER(graph.X_COLUMN) + ":" + NUMBER(item.COLUMN);
  const std::string title = " title " + GNUPLOT_TEXT(item.NAME);
  const std::string point = " pt " + NUMBER(point_types[k % point_types.size()]);
  if (graph.KIND == PICTURE::TERMINAL)
    return "using " + values + AXES(item.ON_RIGHT) + " pt " + NUMBER(static_cast<int>(k % 26) + 1) +
           title;
  return "using " + values + ":(esd(" + NUMBER(graph.X_COLUMN + 1) + ")):(esd(" +
         NUMBER(item.COLUMN + 1) + "))" + AXES(item.ON_RIGHT) + " with xyerrorbars" + point +
         " ps 0.6 lc rgb '" + std::string(colours[k % colours.size()]) + "'" + title;
}

// Rings around the points of the reference block, of the series on one axis.
std::string REFERENCE_LINE(const GRAPH& graph, bool on_right, bool in_legend) {
  std::vector<int> columns;
  for (const SERIES& item : graph.ITEMS)
    if (item.ON_RIGHT == on_right) columns.push_back(item.COLUMN);
  if (columns.empty()) return "";
  const std::string title =
      in_legend ? "(n == " + NUMBER(columns.front()) + " ? 'reference' : '')" : "''";
  return "for [n = " + NUMBER(columns.front()) + ":" + NUMBER(columns.back()) + ":2] '' using " +
         NUMBER(graph.X_COLUMN) + ":($1 == " + NUMBER(graph.REFERENCE_BLOCK) +
         " ? column(n) : NaN)" + AXES(on_right) + " with points pt " + NUMBER(ring) +
         " ps 1.2 lw 0.7 lc rgb '#000000' title " + title;
}

// Adds the plot, unfinished where the user has stopped the work.
void ADD_PLOT_LINES(const GRAPH& graph, const std::string& data, WORK& work, std::string& script) {
  bool first = true;
  const auto add = [&](const std::string& part) {
    script.append(first ? "plot " : ", \\\n     ").append(part);
    first = false;
  };
  for (std::size_t k = 0; k < graph.ITEMS.size(); ++k) {
    if (!GO_ON(work, work.TOTAL)) return;
    add((k == 0 ? data : "''") + " " + SERIES_LINE(graph, graph.ITEMS[k], k));
  }
  if (graph.REFERENCE_BLOCK > 0 && graph.KIND != PICTURE::TERMINAL) {
    const bool on_left = !graph.ITEMS.empty() && !graph.ITEMS.front().ON_RIGHT;
    for (const bool on_right : {false, true})
      if (const std::string line = REFERENCE_LINE(graph, on_right, on_right != on_left);
          !line.empty())
        add(line);
  }
  script += '\n';
}

// ---- the script ----

std::string LINES_BEFORE(const GRAPH& graph) {
  std::string lines =
      "set encoding utf8\n"
      "set datafile separator ','\n"
      "set datafile commentschars ''\n"
      "set key below Left reverse samplen 1 height 0.5 autotitle columnheader\n"
      "set autoscale xfix\n"
      "set offsets graph 0.05, graph 0.05, graph 0.05, graph 0.05\n";
  lines += "set xlabel " + GNUPLOT_TEXT(graph.X_TITLE) +
           (graph.KIND == PICTURE::TERMINAL ? "\n" : " offset 0,0.6\n");
  lines += "set ylabel " + GNUPLOT_TEXT(graph.Y_TITLE) + " offset 1,0\n";
  if (!graph.RIGHT_TITLE.empty())
    lines += "set y2label " + GNUPLOT_TEXT(graph.RIGHT_TITLE) + " offset -1,0" +
             "\nset ytics nomirror\nset y2tics\n";
  if (graph.KIND != PICTURE::TERMINAL)
    lines +=
        "set errorbars 0\n"
        "esd(n) = valid(n) ? column(n) : 0\n";
  return lines;
}

std::string SCRIPT(const GRAPH& graph, WORK& work, std::string_view sheet_text,
                   bool names_picture) {
  std::string script;
  std::string data = GNUPLOT_FILE(graph.SHEET_NAME);
  if (graph.KIND == PICTURE::TERMINAL) {
    script = "$sheet << EOD\n" + std::string(sheet_text) + "EOD\n";
    data = "$sheet";
  }
  script += "set terminal " + TERMINAL_LINE(graph) + "\n";
  if (names_picture && graph.KIND != PICTURE::TERMINAL)
    script += "set output " + GNUPLOT_FILE(graph.PICTURE_NAME) + "\n";
  script += LINES_BEFORE(graph);
  ADD_PLOT_LINES(graph, data, work, script);
  return script;
}

}  // namespace

std::string SCRIPT_OF(const GRAPH& graph, WORK& work, std::string_view sheet_text) {
  return SCRIPT(graph, work, sheet_text, true);
}

std::string SCRIPT_TO_OUTPUT(const GRAPH& graph, WORK& work, std::string_view sheet_text) {
  return SCRIPT(graph, work, sheet_text, false);
}

}  // namespace FACETOR_GRAPH
