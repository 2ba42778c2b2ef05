// Quoting, escaping and the texts of values.
#include "src/facetor6_sheets/sheet_text.h"

#include <array>

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"

namespace FACETOR_SHEETS {

using namespace FACETOR_LIST;
using namespace KVA_UTILITIES;

SHEET_KIND KIND_OF_SHEET(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos) return SHEET_KIND::CSV;
  const std::string_view extension = name.substr(dot + 1);
  if (EQUAL_TEXT(extension, "tsv")) return SHEET_KIND::TSV;
  return EQUAL_TEXT(extension, "tex") ? SHEET_KIND::TEX : SHEET_KIND::CSV;
}

// ---- fields ----

namespace {

std::string QUOTED(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + "\"";
}

// A tab or a line end would begin another field.
std::string ON_ONE_LINE(std::string text) {
  for (char& c : text)
    if (c == '\t' || c == '\r' || c == '\n') c = ' ';
  return text;
}

struct LATEX_ROW {
  std::string_view TEXT;
  std::string_view LATEX;
};

// What is not itself in LaTeX. A star or a bracket behind the end of a line would belong to that.
constexpr std::array<LATEX_ROW, 16> latex_table{{{"\\", "\\textbackslash{}"},
                                                 {"{", "\\{"},
                                                 {"}", "\\}"},
                                                 {"&", "\\&"},
                                                 {"%", "\\%"},
                                                 {"$", "\\$"},
                                                 {"#", "\\#"},
                                                 {"_", "\\_"},
                                                 {"~", "\\textasciitilde{}"},
                                                 {"^", "\\textasciicircum{}"},
                                                 {"<", "\\textless{}"},
                                                 {">", "\\textgreater{}"},
                                                 {"\"", "\\textquotedbl{}"},
                                                 {"*", "{*}"},
                                                 {"[", "{[}"},
                                                 {"×", "$\\times$"}}};

std::string IN_LATEX(std::string_view text) {
  std::string latex;
  while (!text.empty()) {
    std::string_view taken = text.substr(0, 1);
    std::string_view put = taken;
    for (const LATEX_ROW& row : latex_table)
      if (text.starts_with(row.TEXT)) {
        taken = row.TEXT;
        put = row.LATEX;
      }
    latex += put;
    text.remove_prefix(taken.size());
  }
  return latex;
}

std::string FIELD_TEXT(const std::string& field, SHEET_KIND kind) {
  const std::string text = AS_UTF8(field);
  if (kind == SHEET_KIND::CSV) return QUOTED(text);
  const std::string line = ON_ONE_LINE(text);
  return kind == SHEET_KIND::TSV ? line : IN_LATEX(line);
}

}  // namespace

std::string SHEET_LINE(const std::vector<std::string>& fields, SHEET_KIND kind) {
  constexpr std::array<std::string_view, 3> between{",", "\t", " & "};  // ORDER SHEET_KIND
  constexpr std::array<std::string_view, 3> behind{"\n", "\n", " \\\\\n"};
  std::string line;
  for (std::size_t k = 0; k < fields.size(); ++k) {
    if (k > 0) line += between[static_cast<std::size_t>(kind)];
    line += FIELD_TEXT(fields[k], kind);
  }
  return line.append(behind[static_cast<std::size_t>(kind)]);
}

// ---- values ----

bool HAS_VALUE(const REPORT_CELL& cell) {
  return cell.KIND == CELL_KIND::REAL || cell.KIND == CELL_KIND::WHOLE ||
         cell.KIND == CELL_KIND::TEXT;
}

std::string VALUE_FIELD(const REPORT_CELL& cell) {
  switch (cell.KIND) {
    case CELL_KIND::REAL:
      return SHORTEST_REAL(cell.VALUE);
    case CELL_KIND::WHOLE:
      return INTEGER_COLUMNS(cell.COUNT);
    case CELL_KIND::TEXT:
      return LEFT_ADJUST(cell.TEXT);
    case CELL_KIND::NOTHING:
    case CELL_KIND::NO_VALUE:
    case CELL_KIND::NOT_GIVEN:
      return "";
  }
  return "";
}

std::string ESD_FIELD(const REPORT_CELL& cell) {
  return cell.KIND == CELL_KIND::REAL && cell.STD > 0.0f ? SHORTEST_REAL(cell.STD) : "";
}

std::string PAPER_FIELD(const REPORT_CELL& cell, const REPORT_COLUMN& column, bool with_esds) {
  if (!HAS_VALUE(cell)) return "-";
  return LEFT_ADJUST(CELL_TEXT(cell, column, with_esds));
}

}  // namespace FACETOR_SHEETS
