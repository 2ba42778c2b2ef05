// Runs the program on every dialogue in tests/transcripts and compares what it says, line for line.
// NAME.mcr is given as a macro, behind the arguments in NAME.args if there are any; NAME.in is
// given as standard input; NAME.txt is what must be said. A folder NAME holds the files that the
// dialogue must write, no more and no fewer.
#include <gtest/gtest.h>
#include <unistd.h>  // for getpid

#include <algorithm>  // for find, max, search, sort
#include <array>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "places.h"

namespace {

namespace fs = std::filesystem;

const fs::path source = PLACES::SOURCE();
const fs::path dialogues = source / "tests/transcripts";
// What stands behind these words is another day or hour in every run, and is left out.
constexpr std::array<std::string_view, 3> time_words{
    "Current date and time:", "_audit_creation_date", "Datafile created by Gemmara on"};

std::vector<std::string> LINES_OF(const fs::path& path) {
  std::vector<std::string> lines;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    for (const std::string_view words : time_words) {
      const std::size_t at = line.find(words);
      if (at != std::string::npos) line.resize(at + words.size());
    }
    lines.push_back(line);
  }
  return lines;
}

bool WRITE_ANEW() {
  return std::getenv("GEMMARA_WRITE_TRANSCRIPTS") != nullptr;
}

void EXPECT_LINES(const fs::path& found_file, const fs::path& expected_file) {
  if (WRITE_ANEW()) {
    std::ofstream written(expected_file);
    for (const std::string& line : LINES_OF(found_file)) written << line << '\n';
  }
  const std::vector<std::string> expected = LINES_OF(expected_file);
  const std::vector<std::string> found = LINES_OF(found_file);
  for (std::size_t i = 0; i < std::max(expected.size(), found.size()); ++i) {
    ASSERT_LT(i, found.size()) << "missing from line " << i + 1 << ": " << expected[i];
    ASSERT_LT(i, expected.size()) << "not expected from line " << i + 1 << ": " << found[i];
    ASSERT_EQ(found[i], expected[i]) << "line " << i + 1 << " of " << expected_file.filename();
  }
}

// Names of the files in a folder, links left out.
std::set<std::string> FILES_IN(const fs::path& folder) {
  std::set<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder))
    if (!entry.is_symlink()) names.insert(entry.path().filename());
  return names;
}

// The files that the dialogue wrote in its folder against those in the folder of its name.
void EXPECT_FILES(const fs::path& input, const fs::path& folder) {
  const fs::path expected_folder = fs::path(input).replace_extension("");
  if (!fs::is_directory(expected_folder)) return;
  std::set<std::string> written = FILES_IN(folder);
  for (const std::string& ours :
       {input.filename().string(), std::string("said.txt"), std::string("error.txt")})
    written.erase(ours);
  if (!WRITE_ANEW()) {
    EXPECT_EQ(written, FILES_IN(expected_folder));
  }
  for (const std::string& name : written) EXPECT_LINES(folder / name, expected_folder / name);
}

// A folder of its own for each run, with the data of the dialogues and the examples in it.
fs::path RUN_FOLDER(const std::string& name) {
  const fs::path folder =
      fs::temp_directory_path() / ("gemmara_" + name + "_" + std::to_string(::getpid()));
  fs::remove_all(folder);
  fs::create_directory(folder);
  fs::create_directory_symlink(source / "examples", folder / "examples");
  fs::create_directory_symlink(dialogues / "data", folder / "data");
  return folder;
}

// The arguments that stand before the macro, as a shell takes them apart.
std::string ARGUMENTS(const fs::path& input) {
  std::string line;
  std::ifstream file(fs::path(input).replace_extension(".args"));
  std::getline(file, line);
  return line;
}

class TRANSCRIPT : public testing::TestWithParam<fs::path> {};

TEST_P(TRANSCRIPT, EVERY_LINE_AS_WRITTEN_DOWN) {
  const fs::path input = GetParam();
  const fs::path folder = RUN_FOLDER(input.stem());
  const bool macro = input.extension() == ".mcr";
  fs::copy_file(input, folder / input.filename());
  // A program of our own is found in place of gnuplot.
  const std::string path = "PATH='" + (dialogues / "stand_in").string() + "':\"$PATH\" ";
  const std::string command = "cd '" + folder.string() + "' && " + path + "LOCALAPPDATA= '" +
                              PLACES::PROGRAM() + "' " + ARGUMENTS(input) + (macro ? " ./" : "< ") +
                              input.filename().string() + (macro ? " < /dev/null" : "") +
                              " > said.txt 2> error.txt";
  const int status = std::system(command.c_str());
  EXPECT_EQ(status, 0) << command;

  EXPECT_LINES(folder / "said.txt", fs::path(input).replace_extension(".txt"));
  EXPECT_FILES(input, folder);
  fs::remove_all(folder);
}

std::vector<fs::path> ALL_DIALOGUES() {
  std::vector<fs::path> inputs;
  for (const fs::directory_entry& entry : fs::directory_iterator(dialogues))
    if (entry.path().extension() == ".mcr" || entry.path().extension() == ".in")
      inputs.push_back(entry.path());
  std::sort(inputs.begin(), inputs.end());
  return inputs;
}

INSTANTIATE_TEST_SUITE_P(DIALOGUES, TRANSCRIPT, testing::ValuesIn(ALL_DIALOGUES()),
                         [](const testing::TestParamInfo<fs::path>& dialogue) {
                           std::string name = dialogue.param.stem();
                           for (char& c : name)
                             if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
                           return name;
                         });

// Lines between "```text" and "```".
std::vector<std::vector<std::string>> TEXT_BLOCKS(const fs::path& path) {
  std::vector<std::vector<std::string>> blocks;
  bool inside = false;
  for (const std::string& line : LINES_OF(path)) {
    if (line == "```text") blocks.emplace_back();
    if (inside && line != "```") blocks.back().push_back(line);
    inside = line == "```text" || (inside && line != "```");
  }
  return blocks;
}

TEST(README, SHOWS_WHAT_THE_PROGRAM_SAYS) {
  const std::vector<std::string> said = LINES_OF(dialogues / "readme.txt");
  const auto blocks = TEXT_BLOCKS(source / "README.md");
  EXPECT_EQ(blocks.size(), 4u);
  for (const auto& block : blocks)
    EXPECT_NE(std::search(said.begin(), said.end(), block.begin(), block.end()), said.end())
        << "the session that begins " << block.front();
}

// The session is started as the README says, and is the one that demo.sh runs.
TEST(README, SHOWS_THE_DEMONSTRATION) {
  const fs::path session = dialogues / "readme.mcr";
  const std::vector<std::string> lines = LINES_OF(source / "README.md");
  EXPECT_NE(std::find(lines.begin(), lines.end(), "build/gemmara " + ARGUMENTS(session)),
            lines.end());
  EXPECT_EQ(LINES_OF(session), LINES_OF(source / "examples/hematite-pressure/demo.mcr"));
}

}  // namespace
