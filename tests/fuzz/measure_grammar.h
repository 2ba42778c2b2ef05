// Definitions of MEASURE by its grammar, out of random bytes: most are right, some have a fault.
#pragma once

#include <string>
#include <string_view>

namespace FUZZ {

// "name = expression", "name =" or "name"; the same bytes give the same text.
std::string DEFINITION_OF(std::string_view bytes);

}  // namespace FUZZ
