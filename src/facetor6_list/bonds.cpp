// The bond table in its forms: plain, with esds, rigid-bond corrected, displacements along bonds.
#include "console_code/console/output.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/bond_tables.h"
#include "src/facetor6_list/list_parts.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

// ---- pieces shared with the valence table ----

std::string LIMITS_LINE() {
  return "     BETWEEN " + REAL_COLUMNS(RUN.DMIN, 5, 2) + " AND " + REAL_COLUMNS(RUN.DMAX, 5, 2) +
         " ANGSTROM";
}

bool WRITE_BOND_TITLE(int i, std::string_view words) {
  if (REFERENCE().NBONDS(i) <= 0) {
    WRITE_OUT("||     NO BONDS FOUND FROM CENTRAL ATOM " + REFERENCE().ATOM(i).LAB + LIMITS_LINE());
    return false;
  }
  WRITE_OUT(TABLE_TITLE(words, i));
  WRITE_OUT(LIMITS_LINE());
  return true;
}

void WRITE_BOND_HEAD(int i, bool esd, int end_offset, std::string_view end_words) {
  constexpr int label_length = 6;
  const int n = REFERENCE().NBONDS(i);
  std::vector<std::string> labels;
  std::vector<std::string> codes;
  for (int m = 1; m <= n; ++m) {
    labels.push_back(FIRST_CHARACTERS(LIGAND_LABEL(i, m), label_length));
    codes.push_back(LIGAND_CODE(i, m));
  }
  std::string head = TABLE_HEAD(labels, esd);
  PUT_AT(head, LABEL_COLUMN(n + 1, esd) + end_offset, end_words);
  WRITE_OUT(head);
  if (RUN.LIST_SYMCODES) WRITE_OUT("|" + CODE_LINE(codes, esd, true));
}

// ---- forms of the table ----

namespace {

enum class FORM { PLAIN, ESD, SRB, DISPLACEMENT };

FORM FORM_OF(std::string_view option) {
  if (WANTS_ESDS(option)) return FORM::ESD;
  if (INDEXALL(option, "srb") > 0) return FORM::SRB;
  return INDEXALL(option, "disp") > 0 ? FORM::DISPLACEMENT : FORM::PLAIN;
}

std::string_view TITLE_WORDS(FORM form) {
  switch (form) {
    case FORM::SRB:
      return "||     SRB-CORRECTED BOND LENGTHS FROM CENTRAL ATOM ";
    case FORM::DISPLACEMENT:
      return "||     THERMAL DISPLACEMENTS ALONG BONDS OF CENTRAL ATOM ";
    default:
      return "||     BONDS FROM CENTRAL ATOM ";
  }
}

// Coordinations with elongation and angle variance.
bool HAS_DISTORTION(int n) {
  return n == 3 || n == 4 || n == 6;
}

void WRITE_HEAD(int i, FORM form) {
  // Offsets count from two columns behind the last label's field.
  constexpr int plain_offset = 1;
  constexpr int other_offset = 2;
  switch (form) {
    case FORM::SRB:
      return WRITE_BOND_HEAD(i, false, other_offset, "N SRB AVE RAW AVE  SRBVOL  RAWVOL");
    case FORM::DISPLACEMENT:
      return WRITE_BOND_HEAD(i, false, other_offset, "N AVERAGE");
    default:
      return WRITE_BOND_HEAD(i, form == FORM::ESD, plain_offset,
                             HAS_DISTORTION(REFERENCE().NBONDS(i))
                                 ? "N AVERAGE  QE       AV     VOLUME"
                                 : "N AVERAGE  VOLUME");
  }
}

// ---- values of a row ----

// Values that were shown, for their mean.
struct SHOWN {
  int COUNT = 0;
  float SUM = 0.0f;

  void ADD(float value) {
    ++COUNT;
    SUM += value;
  }
  float MEAN() const { return COUNT > 0 ? SUM / static_cast<float>(COUNT) : 0.0f; }
};

// Puts the value of bond m into the row, or says that there is none.
void PUT_BOND(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int m, FORM form, std::string& line,
              SHOWN& shown) {
  const bool esd = form == FORM::ESD;
  const float length = phase.BONDS(i, m, BOND_LENGTH);
  const float corrected = phase.BONDS(i, m, BOND_LENGTH_SRB);
  const float displacement = phase.BONDS(i, m, BOND_DISPL_CENTRE);
  if (form == FORM::DISPLACEMENT) {
    PUT_VALUE(line, m, false, displacement, 0.0f, value_decimals);
    shown.ADD(displacement);
  } else if (form == FORM::SRB && corrected > 0.0f) {
    PUT_VALUE(line, m, false, corrected, 0.0f, value_decimals);
    shown.ADD(corrected);
  } else if (form != FORM::SRB && length > shortest_shown) {
    PUT_VALUE(line, m, esd, length, phase.BONDS(i, m, BOND_LENGTH_STD), value_decimals);
  } else {
    PUT_NO_VALUE(line, m, esd);
  }
}

// ---- end of a row ----

std::string VALUE_TEXT(float value) {
  return REAL_COLUMNS(value, 8, value_decimals);
}

std::string SRB_END(const CRYSTAL_STRUCTURE_TYPE& phase, int i, const SHOWN& shown) {
  if (shown.COUNT == 0) return "";
  return INTEGER_COLUMNS(shown.COUNT, 3) + VALUE_TEXT(shown.MEAN()) +
         VALUE_TEXT(phase.POLYHEDRON(i, POLY_MEAN_LENGTH)) +
         VALUE_TEXT(phase.POLYHEDRON(i, POLY_VOLUME_SRB)) +
         VALUE_TEXT(phase.POLYHEDRON(i, POLY_VOLUME));
}

std::string DISPLACEMENT_END(const CRYSTAL_STRUCTURE_TYPE& phase, int i, const SHOWN& shown) {
  return INTEGER_COLUMNS(shown.COUNT, 3) + VALUE_TEXT(shown.MEAN()) +
         VALUE_TEXT(phase.POLYHEDRON(i, POLY_MEAN_LENGTH));
}

std::string VOLUME_TEXT(const CRYSTAL_STRUCTURE_TYPE& phase, int i, bool esd) {
  const float volume = phase.POLYHEDRON(i, POLY_VOLUME);
  return esd ? SETNUM_STD(volume, phase.POLYHEDRON(i, POLY_VOLUME_STD))
             : REAL_COLUMNS(volume, 8, 3);
}

// Coordination, mean, distortion and volume; the volume only where the coordination is the
// reference's.
std::string POLYHEDRON_END(const CRYSTAL_STRUCTURE_TYPE& phase, int i, bool esd) {
  const int n = phase.NBONDS(i);
  std::string text = INTEGER_COLUMNS(n, 3) + VALUE_TEXT(phase.POLYHEDRON(i, POLY_MEAN_LENGTH));
  if (n != REFERENCE().NBONDS(i)) return text;
  if (HAS_DISTORTION(n))
    text += VALUE_TEXT(phase.POLYHEDRON(i, POLY_ELONGATION)) +
            REAL_COLUMNS(phase.POLYHEDRON(i, POLY_VARIANCE), 8, 3);
  return text + VOLUME_TEXT(phase, i, esd);
}

std::string END_GROUP(const CRYSTAL_STRUCTURE_TYPE& phase, int i, FORM form, const SHOWN& shown) {
  switch (form) {
    case FORM::SRB:
      return SRB_END(phase, i, shown);
    case FORM::DISPLACEMENT:
      return DISPLACEMENT_END(phase, i, shown);
    default:
      return POLYHEDRON_END(phase, i, form == FORM::ESD);
  }
}

std::string BOND_ROW(int place, int i, FORM form) {
  const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(ISORT(place));
  const bool esd = form == FORM::ESD;
  std::string line;
  if (!START_CENTRE_ROW(place, i, esd, line)) return line;
  const int n = REFERENCE().NBONDS(i);
  SHOWN shown;
  for (int m = 1; m <= n; ++m) PUT_BOND(phase, i, m, form, line, shown);
  PUT_AT(line, END_COLUMN(n, esd), END_GROUP(phase, i, form, shown));
  return line;
}

}  // namespace

void FACETOR_LIST_BONDS(int i, std::string_view option) {
  const FORM form = FORM_OF(option);
  if (!WRITE_BOND_TITLE(i, TITLE_WORDS(form))) return;
  WRITE_HEAD(i, form);
  for (int place : LISTED_PLACES()) WRITE_OUT(BOND_ROW(place, i, form));
}

void FACETOR_LIST_ALL_BONDS(std::string_view option) {
  FOR_EACH_USED_ATOM(FACETOR_LIST_BONDS, option);
}

}  // namespace FACETOR_LIST
