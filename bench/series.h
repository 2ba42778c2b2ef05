// Made-up series of crystal structures as CIF text, for measuring speed. The same series every
// time.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace BENCH {

// Kinds of series: "garnet" (I a -3 d, 4 sites), "pyroxene" (C 2/c, 6 sites with anisotropic Us),
// "triclinic" (P -1, 100 sites), "zeolite" (C 2/c, 300 sites), "twenty" (P -1, 20 sites).
std::vector<std::string_view> SERIES_KINDS();

// A CIF of that many blocks, under rising pressure; blank for an unknown kind.
std::string SERIES_TEXT(std::string_view kind, int blocks);

}  // namespace BENCH
