// Symmetry codes as they are written.
#include "cifcode/cif_code_new/writer.h"

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CIFNEW {

std::string WRITE_SYMCODE(float code) {
  using namespace KVA_UTILITIES;
  std::string text = LEFT_ADJUST(REAL_COLUMNS(code, 7, 3));
  if (text.starts_with('.')) text.insert(0, 1, '0');
  REPLACE_CHAR(text, '.', '_');
  return text;
}

}  // namespace KVA_CIFNEW
