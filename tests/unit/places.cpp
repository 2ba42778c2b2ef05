#include "places.h"

#include <algorithm>  // for sort

std::string PLACES::SOURCE() {
  return GEMMARA_SOURCE;
}

std::string PLACES::PROGRAM() {
  return GEMMARA_PROGRAM;
}

std::string PLACES::FAULTS() {
  return GEMMARA_FAULTS;
}

std::string PLACES::SAMPLES() {
  return GEMMARA_SAMPLES;
}

std::vector<std::filesystem::path> PLACES::SAMPLE_FILES() {
  std::vector<std::filesystem::path> files;
  for (const char* folder : {"cif", "cif-series"}) {
    const std::filesystem::path path = std::filesystem::path(SAMPLES()) / folder;
    if (!std::filesystem::exists(path)) continue;
    for (const std::filesystem::directory_entry& entry :
         std::filesystem::recursive_directory_iterator(path))
      if (entry.path().extension() == ".cif") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

bool PLACES::LINE_EDITING() {
  return GEMMARA_LINE_EDITING;
}
