// Runs the program on every dialogue in tests/transcripts and compares what it says, line for line.
// NAME.mcr is given as a macro, NAME.in as standard input; NAME.txt is what must be said.
#include <gtest/gtest.h>
#include <unistd.h>  // for getpid

#include <algorithm>  // for search, sort
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

const fs::path source = GEMMARA_SOURCE;
const fs::path dialogues = source / "tests/transcripts";
constexpr std::string_view time_words = "Current date and time:";

std::vector<std::string> LINES_OF(const fs::path& path) {
  std::vector<std::string> lines;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    const std::size_t at = line.find(time_words);
    if (at != std::string::npos) line.resize(at + time_words.size());
    lines.push_back(line);
  }
  return lines;
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

class TRANSCRIPT : public testing::TestWithParam<fs::path> {};

TEST_P(TRANSCRIPT, EVERY_LINE_AS_WRITTEN_DOWN) {
  const fs::path input = GetParam();
  const fs::path folder = RUN_FOLDER(input.stem());
  const bool macro = input.extension() == ".mcr";
  fs::copy_file(input, folder / input.filename());
  const std::string command = "cd '" + folder.string() +
                              "' && LOCALAPPDATA= '" GEMMARA_PROGRAM "' " + (macro ? "./" : "< ") +
                              input.filename().string() + (macro ? " < /dev/null" : "") +
                              " > said.txt 2> error.txt";
  const int status = std::system(command.c_str());
  EXPECT_EQ(status, 0) << command;

  fs::path expected_file = input;
  expected_file.replace_extension(".txt");
  if (std::getenv("GEMMARA_WRITE_TRANSCRIPTS")) {
    std::ofstream written(expected_file);
    for (const std::string& line : LINES_OF(folder / "said.txt")) written << line << '\n';
  }
  const std::vector<std::string> expected = LINES_OF(expected_file);
  const std::vector<std::string> said = LINES_OF(folder / "said.txt");
  for (std::size_t i = 0; i < std::max(expected.size(), said.size()); ++i) {
    ASSERT_LT(i, said.size()) << "missing from line " << i + 1 << ": " << expected[i];
    ASSERT_LT(i, expected.size()) << "not expected from line " << i + 1 << ": " << said[i];
    ASSERT_EQ(said[i], expected[i]) << "line " << i + 1;
  }
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
  EXPECT_EQ(blocks.size(), 2u);
  for (const auto& block : blocks)
    EXPECT_NE(std::search(said.begin(), said.end(), block.begin(), block.end()), said.end())
        << "the session that begins " << block.front();
}

}  // namespace
