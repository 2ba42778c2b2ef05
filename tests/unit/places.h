// Where the tests find the tree, the program and real files. These are the only things that differ
// from one checkout to another, so they are compiled once, in places.cpp.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace PLACES {

std::string SOURCE();                               // folder of the whole tree
std::string PROGRAM();                              // the program that was built beside the tests
std::string FAULTS();                               // the library of faults from outside
std::string SAMPLES();                              // folder of real CIFs; blank: none at hand
std::vector<std::filesystem::path> SAMPLE_FILES();  // the CIFs in it, in order
bool LINE_EDITING();                                // whether the program was built with it

}  // namespace PLACES
