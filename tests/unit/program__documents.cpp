// Holds the documents against the program: what the manual shows must be said in a transcript,
// every command and menu entry must be described, and links must lead somewhere.
// (program__transcripts holds the transcripts against the program, and the README against its
// transcript.)
#include <gtest/gtest.h>

#include <algorithm>  // for any_of, count, search
#include <cctype>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

#include "places.h"

namespace {

namespace fs = std::filesystem;

const fs::path source = PLACES::SOURCE();
const fs::path dialogues = source / "tests/transcripts";

// ---- documents and their parts ----

using LINES = std::vector<std::string>;

LINES LINES_OF(const fs::path& path) {
  LINES lines;
  std::ifstream file(path);
  EXPECT_TRUE(file.is_open()) << path;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

constexpr std::string_view fence = "```";

// A fenced part of a document: its kind, such as "text", and its lines.
struct BLOCK {
  std::string KIND;
  LINES CONTENT;
};

std::vector<BLOCK> BLOCKS_OF(const fs::path& path) {
  std::vector<BLOCK> blocks;
  bool inside = false;
  for (const std::string& line : LINES_OF(path)) {
    const bool is_fence = line.starts_with(fence);
    if (is_fence && !inside) blocks.push_back({line.substr(fence.size()), {}});
    if (!is_fence && inside) blocks.back().CONTENT.push_back(line);
    if (is_fence) inside = !inside;
  }
  EXPECT_FALSE(inside) << path << " ends inside a fenced part";
  return blocks;
}

// The lines of a document outside its fenced parts.
LINES PROSE_OF(const fs::path& path) {
  LINES prose;
  bool inside = false;
  for (const std::string& line : LINES_OF(path)) {
    if (line.starts_with(fence)) inside = !inside;
    if (!inside) prose.push_back(line);
  }
  return prose;
}

// Whether a document shows a line as it was said. Transcripts leave out dates, which documents
// show.
bool SAME_LINE(const std::string& said, const std::string& shown) {
  static const std::regex date(" +([0-9]{4}-[0-9]{2}-[0-9]{2}|[0-9]{2}-[A-Z]{3}-[0-9]{4})");
  return shown == said ||
         (shown.starts_with(said) && std::regex_match(shown.substr(said.size()), date));
}

bool HOLDS(const LINES& said, const LINES& shown) {
  return std::search(said.begin(), said.end(), shown.begin(), shown.end(), SAME_LINE) != said.end();
}

// Whether a heading such as "### SYS, DIR, CD" or a row such as "| `USE` | ..." is for the command.
bool DESCRIBES(const std::string& line, const std::string& command) {
  if (line.starts_with("| `" + command + "` |")) return true;
  if (!line.starts_with("### ")) return false;
  return (", " + line.substr(4) + ", ").find(", " + command + ", ") != std::string::npos;
}

// Files of a folder with the start and the end of their names.
std::vector<fs::path> FILES(const fs::path& folder, std::string_view start, std::string_view end) {
  std::vector<fs::path> found;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    const std::string name = entry.path().filename();
    if (name.starts_with(start) && name.ends_with(end)) found.push_back(entry.path());
  }
  return found;
}

// The heading as the target of a link: lower case, blanks as "-", signs left out.
std::string ANCHOR(const std::string& heading) {
  std::string anchor;
  for (const char c : heading.substr(heading.find(' ') + 1)) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0)
      anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (c == ' ' || c == '-') anchor += '-';
  }
  return anchor;
}

LINES LINKS_OF(const fs::path& document) {
  constexpr std::string_view start = "](";
  LINES links;
  for (const std::string& line : PROSE_OF(document))
    for (std::size_t at = line.find(start); at != std::string::npos;
         at = line.find(start, at + 1)) {
      const std::size_t from = at + start.size();
      links.push_back(line.substr(from, line.find(')', from) - from));
    }
  return links;
}

const fs::path manual = source / "docs/manual.md";

// ---- what they must hold ----

TEST(MANUAL, SHOWS_WHAT_THE_PROGRAM_SAYS) {
  const std::vector<fs::path> files = FILES(dialogues, "manual_", ".txt");
  EXPECT_GE(files.size(), 4u);
  std::vector<LINES> said;
  for (const fs::path& file : files) said.push_back(LINES_OF(file));
  std::vector<bool> used(said.size(), false);
  for (const BLOCK& block : BLOCKS_OF(manual)) {
    if (block.KIND != "text") continue;
    ASSERT_FALSE(block.CONTENT.empty());
    bool found = false;
    for (std::size_t i = 0; i < said.size(); ++i) {
      if (!HOLDS(said[i], block.CONTENT)) continue;
      found = true;
      used[i] = true;
    }
    EXPECT_TRUE(found) << "the session that begins " << block.CONTENT.front();
  }
  for (std::size_t i = 0; i < used.size(); ++i)
    EXPECT_TRUE(used[i]) << files[i] << " is shown nowhere";
}

// Kinds of fenced parts: "text" is said by the program, "macro" is a macro, "help" is shown by
// --help (which program__options holds against it), "sh" is typed at a shell, "tex" stands in a
// paper.
TEST(MANUAL, SHOWS_MACROS_AS_THEY_LIE_IN_THE_EXAMPLES) {
  const std::vector<fs::path> macros = FILES(source / "examples", "", ".mcr");
  for (const BLOCK& block : BLOCKS_OF(manual)) {
    const bool known = block.KIND == "text" || block.KIND == "macro" || block.KIND == "help" ||
                       block.KIND == "sh" || block.KIND == "tex";
    EXPECT_TRUE(known) << "a part of kind " << block.KIND;
    if (block.KIND != "macro") continue;
    EXPECT_TRUE(
        std::any_of(macros.begin(), macros.end(),
                    [&block](const fs::path& macro) { return LINES_OF(macro) == block.CONTENT; }))
        << "the macro that begins " << block.CONTENT.front();
  }
}

TEST(MANUAL, DESCRIBES_EVERY_COMMAND_THAT_HELP_LISTS) {
  const LINES prose = PROSE_OF(manual);
  const std::string main_help = "           ";  // before a command word
  int commands = 0;
  for (const std::string& line : LINES_OF(dialogues / "manual_reference.txt")) {
    const std::size_t colon = line.find(":  ");
    if (!line.starts_with(main_help) || colon != main_help.size() + 10) continue;
    const std::string word =
        line.substr(main_help.size(), line.find(' ', main_help.size()) - main_help.size());
    ++commands;
    const auto describes = [&word](const std::string& text) { return DESCRIBES(text, word); };
    EXPECT_TRUE(std::any_of(prose.begin(), prose.end(), describes)) << word;
  }
  EXPECT_EQ(commands, 21 + 6);  // of the program and of the atom editor
}

TEST(MANUAL, DESCRIBES_EVERY_MENU_ENTRY) {
  std::string prose;
  for (const std::string& line : PROSE_OF(manual)) prose += line + "\n";
  const LINES said = LINES_OF(dialogues / "manual_reference.txt");
  int entries = 0;
  for (std::size_t i = 1; i < said.size(); ++i) {
    // "      1: block names", in a menu that shows what LIST, CALC and SET can do
    const bool is_entry = said[i].size() > 9 && said[i].starts_with("     ") &&
                          std::isdigit(static_cast<unsigned char>(said[i][6])) != 0 &&
                          said[i].substr(7, 2) == ": ";
    if (!is_entry || said[i] == "      0: Exit") continue;
    const std::string entry = said[i].substr(9);
    if (entry.starts_with("RFINE") || entry.starts_with("CCSL") || entry == "cif" ||
        entry == "Crystal17 out" || entry == "edges")
      continue;  // kinds of files, and a short form
    ++entries;
    EXPECT_NE(prose.find("`" + entry + "`"), std::string::npos) << entry;
  }
  EXPECT_GT(entries, 20);
}

TEST(DOCUMENTS, LINKS_LEAD_SOMEWHERE) {
  for (const fs::path& document : {source / "README.md", manual, source / "CONTRIBUTING.md",
                                   source / "docs/architecture.md"}) {
    LINES anchors;
    for (const std::string& line : PROSE_OF(document))
      if (line.starts_with('#')) anchors.push_back(ANCHOR(line));
    for (const std::string& link : LINKS_OF(document)) {
      const bool here = link.starts_with('#');
      const fs::path file =
          here ? document : document.parent_path() / link.substr(0, link.find('#'));
      EXPECT_TRUE(link.starts_with("http") || fs::exists(file)) << link << " in " << document;
      EXPECT_TRUE(!here || std::count(anchors.begin(), anchors.end(), link.substr(1)) == 1) << link;
    }
  }
}

}  // namespace
