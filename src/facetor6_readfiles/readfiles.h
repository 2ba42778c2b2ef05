// The READ command: files to phase records.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "console_code/kva_utilities/files.h"
#include "src/kva_crystal_structures/records.h"

namespace FACETOR_READFILES {

using KVA_CRYSTAL_STRUCTURES::STRUCTURE_LIST;
using KVA_UTILITIES::FILE_LINES;
using KVA_UTILITIES::LIST;
using KVA_UTILITIES::VECTOR3;

using KVA_CRYSTAL_STRUCTURES::ONE_ATMOSPHERE;
using KVA_CRYSTAL_STRUCTURES::ROOM_TEMPERATURE;

// The command READ.
void READ_PHASE_FROM_FILE();
std::span<const std::string_view> READ_MENU();

// Whether a name is that of a file that READ reads, by its extension: .cif or .out, in any letters.
bool IS_STRUCTURE_FILE(std::string_view name);

// Reads the files that the program was started with: by READ full, those in .out as outputs of
// CRYSTAL. Nothing is asked.
void READ_GIVEN_FILES(const std::vector<std::string>& names);

// Whether each block of a CIF tells its temperature. bytes are those of the file, here and below.
std::vector<bool> TEMPERATURES_GIVEN(std::string_view bytes);

// Whether an output of CRYSTAL tells its space group, so that nothing need be asked.
bool TELLS_GROUP(const FILE_LINES& flines);

// Every block of a CIF into newx; nblocks receives their count.
void READ_CIF_TO_LIST(std::string_view bytes, STRUCTURE_LIST& newx, int& nblocks);

// Every structure of a CIF into newx, by the reader of the whole syntax; nblocks receives their
// count.
void READ_FULL_TO_LIST(std::string_view bytes, STRUCTURE_LIST& newx, int& nblocks);

// Warns of each block of newx that READ_CIF_TO_LIST read otherwise than the full reader does, and
// of structures that this one alone finds. newx is empty when the user stopped the work.
void CHECK_PLAIN_READING(std::string_view bytes, STRUCTURE_LIST& newx);

// Compares the volume that a file gives, with its esd, with that of the record's cell, and keeps
// the esd. Without an esd nothing is compared.
void CHECK_VOLUME(float volume, float std, KVA_CRYSTAL_STRUCTURES::CRYSTAL_STRUCTURE_TYPE& phase);

// The text output of a run of the CRYSTAL program as one record; nblocks becomes 1. Asks for the
// space group when the file does not tell it.
void READ_OUT_FILE(const FILE_LINES& flines, STRUCTURE_LIST& newx, int& nblocks);

// Names the blocks that have no title by the file, with _2, _3 ... behind it where blocks of newx
// have that title.
void NAME_UNTITLED(std::string_view file_name, STRUCTURE_LIST& newx);

// Puts the first natoms atoms into the record, all in use.
void STORE_ATOMS(const LIST<KVA_CRYSTAL_STRUCTURES::ATOM_TYPE>& atoms, int natoms,
                 KVA_CRYSTAL_STRUCTURES::CRYSTAL_STRUCTURE_TYPE& phase);

// Repairs a symbol of four one-character parts, "Pnma" to "P n m a"; flag is cleared then.
void FIX_SPACEGROUP(std::string& symbol, bool& flag);

// The readers of one block, lines start to end.
void READ_CIF_CELL(const FILE_LINES& flines, int start, int end, std::array<float, 6>& values,
                   std::array<float, 6>& stds);  // angstroms, degrees
// K; false where none is given
bool READ_CIF_TEMP(const FILE_LINES& flines, int start, int end, float& t, float& sigt);
void READ_CIF_PRESSURE(const FILE_LINES& flines, int start, int end, float& p, float& sigp);  // GPa
void READ_CIF_HM(const FILE_LINES& flines, int start, int end, std::string& symbol);
void READ_CIF_SYMM(const FILE_LINES& flines, int start, int end, std::vector<std::string>& symm);
// Operators that stand without quotes, each on a line, with or without a number before it. They
// are not what a block is read with.
void READ_BARE_OPERATORS(const FILE_LINES& flines, int start, int end,
                         std::vector<std::string>& symm);

}  // namespace FACETOR_READFILES
