// Lists of vibrational modes carried with a phase, and their reading from a CIF block.
// Prints nothing.
#pragma once

#include <string>

#include "cifcode/cif_code_new/scanner.h"
#include "console_code/kva_utilities/table.h"
#include "console_code/kva_utilities/vectors.h"

namespace RAMAN {

inline constexpr float MODE_UNSET = -3.40282347e+38f;  // a real that was never given

// One vibrational mode.
struct MODE_TYPE {
  int USE = 1;               // the mode is in use
  std::string NAME;          // 80 characters
  std::string SYMMETRY;      // symmetry label, 80 characters
  std::string IR_ACTIVE;     // infrared activity, upper case, 8 characters
  std::string RAMAN_ACTIVE;  // Raman activity, upper case, 8 characters
  float W0 = MODE_UNSET;     // frequency, 1/cm
  // Gruneisen tensor, order 11, 22, 33, 12, 13, 23; 0-based
  KVA_UTILITIES::VECTOR6 G{MODE_UNSET, MODE_UNSET, MODE_UNSET, MODE_UNSET, MODE_UNSET, MODE_UNSET};
};

struct MODE_LIST_TYPE {
  int NMODES = 0;                       // modes in use
  KVA_UTILITIES::LIST<MODE_TYPE> MODE;  // room for at least NMODES
  std::string SYSTEM;                   // crystal system in lower case
  std::string NAME;                     // name of the mineral
};

inline bool ERR_MODE = false;
inline std::string ERR_MODE_MESS;
inline bool WARN_MODE = false;
inline std::string WARN_MODE_MESS;
void INIT_ERR_MODE();

void INIT_MODE_TYPE(MODE_TYPE& mode);

// Room for n modes at their initial values, NMODES n, both texts blank. Without memory for them the
// list is empty and ERR_MODE is set.
void ALLOCATE_MODE_LIST(int n, MODE_LIST_TYPE& list);

// Modes of the block in lines start to end; an absent loop gives an empty list without a message.
void READ_MODE_LIST(const KVA_UTILITIES::FILE_LINES& flines, int start, int end,
                    MODE_LIST_TYPE& list);

// Imposes the crystal system on a mode's tensor (monoclinic: unique axis b).
void APPLY_SYMM_GRUN(const std::string& sys, MODE_TYPE& mode);

// Sets the warning when a component that the crystal system leaves free is zero.
void CHECK_SYMM_GRUN(const std::string& sys, const MODE_TYPE& mode);

}  // namespace RAMAN
