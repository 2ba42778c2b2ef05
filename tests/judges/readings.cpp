// What both readers of CIF make of files, for the scripts that judge them: names of files on
// standard input, readings on standard output, one item a line. Lines of a reading begin with
// "full" or "plain" and are divided by tabs; all others are what the program says to the user.
#include <charconv>
#include <iostream>
#include <string>

#include "cifcode/cif_full/structure.h"
#include "src/facetor6_readfiles/readfiles.h"

namespace {

using namespace KVA_CRYSTAL_STRUCTURES;

std::string TEXT(float value) {
  std::array<char, 32> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  return {digits.data(), end.ptr};
}

template <class VECTOR>
std::string TEXTS(const VECTOR& values) {
  std::string text;
  for (float value : values) text += "\t" + TEXT(value);
  return text;
}

void SHOW_ATOM(const std::string& reader, const ATOM_TYPE& atom) {
  const bool aniso = atom.THTYPE == "Aniso";
  std::cout << reader << "\tsite\t" << atom.LAB << '\t' << atom.CHEMSYMB << '\t'
            << TEXT(atom.CHARGE) << TEXTS(atom.X) << TEXTS(atom.X_STD) << '\t' << TEXT(atom.OCC)
            << '\t' << TEXT(atom.UEQ) << '\t' << TEXT(atom.BISO) << '\t'
            << (aniso ? atom.UTYPE : "isotr") << TEXTS(atom.U) << '\n';
}

void SHOW_BLOCK(const std::string& reader, const std::string& title, const XTAL::CRYSTAL_CELL& cell,
                const XTAL::SPACE_GROUP& group, float t, float p) {
  std::cout << reader << "\tblock\t" << title << '\n';
  std::cout << reader << "\tcell" << TEXTS(cell.CELL) << TEXTS(cell.ANG) << TEXTS(cell.CELL_STD)
            << TEXTS(cell.ANG_STD) << '\n';
  std::cout << reader << "\tgroup\t" << group.SPG_SYMB;
  for (const std::string& op : group.SYMOPSYMB) std::cout << '\t' << op;
  std::cout << '\n' << reader << "\tconditions\t" << TEXT(t) << '\t' << TEXT(p) << '\n';
}

void SHOW_FULL(const std::string& bytes) {
  KVA_CIFFULL::STRUCTURE_READER reader = KVA_CIFFULL::STRUCTURES_OF(bytes);
  KVA_CIFFULL::STRUCTURE structure;
  while (NEXT_STRUCTURE(reader, structure)) {
    const bool read = structure.STATUS == KVA_CIFFULL::BLOCK_STATUS::READ;
    const std::string title(structure.TITLE);
    if (read)
      SHOW_BLOCK("full", title, structure.CELL, structure.SPG->GROUP, structure.T.VALUE,
                 structure.P.VALUE);
    else
      std::cout << "full\tunread\t" << title << '\t' << static_cast<int>(structure.STATUS) << '\n';
    for (const std::string& telling : structure.TELLINGS)
      std::cout << "full\ttold\t" << telling << '\n';
    if (read)
      for (const ATOM_TYPE& atom : structure.ATOMS) SHOW_ATOM("full", atom);
  }
}

void SHOW_PLAIN(const std::string& bytes) {
  STRUCTURE_LIST blocks;
  int count = 0;
  FACETOR_READFILES::READ_CIF_TO_LIST(bytes, blocks, count);
  for (const CRYSTAL_STRUCTURE_TYPE& phase : blocks) {
    SHOW_BLOCK("plain", phase.BLOCK_TITLE, phase.CELL, phase.SPG, phase.PT(TEMPERATURE, PT_VALUE),
               phase.PT(PRESSURE, PT_VALUE));
    for (int i = 1; i <= phase.NATOMS; ++i) SHOW_ATOM("plain", phase.ATOM(i));
  }
  FACETOR_READFILES::CHECK_PLAIN_READING(bytes, blocks);
}

}  // namespace

int main() {
  std::string name;
  while (std::getline(std::cin, name)) {
    std::string bytes;
    const bool read = KVA_UTILITIES::READ_FILE_BYTES(name, bytes);
    std::cout << "file\t" << name << '\t' << (read ? "read" : "not read") << '\n';
    SHOW_FULL(bytes);
    SHOW_PLAIN(bytes);
  }
}
