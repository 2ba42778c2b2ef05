// The words of a CIF, by the grammar of CIF 1.1 and as far as structures need it of CIF 2.0: names,
// values in all their forms, reserved words. (S. R. Hall, J. D. Westbrook, International Tables for
// Crystallography, volume G, 2.2; H. J. Bernstein et al., J. Appl. Cryst. 49 (2016) 277-284.)
// Texts are parts of the file's bytes, which must outlive them.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace KVA_CIFFULL {

enum class TOKEN : unsigned char {
  NAME,    // _name
  BARE,    // a value as it stands
  QUOTED,  // a value between ' or ", in CIF 2.0 also ''' or """
  FIELD,   // a value between lines that begin with ;
  LIST,    // a list or table of CIF 2.0, passed over; the text is what it begins with
  LOOP,    // loop_
  DATA,    // data_; the text is the name behind it
  SAVE,    // save_; the text is the name behind it, blank at the end of a frame
  GLOBAL,  // global_
  STOP,    // stop_, reserved
  END
};

constexpr bool IS_VALUE(TOKEN token) {
  return token >= TOKEN::BARE && token <= TOKEN::LIST;
}

// Ways in which a file breaks the grammar.
enum FAULT_KIND {
  NO_BLOCK,            // names before the first data_
  STRAY_WORD,          // a value that no name asks for
  NO_VALUE,            // a name without a value
  LOOP_WITHOUT_NAMES,  // loop_ and no name behind it
  LOOP_WITHOUT_VALUES,
  UNEVEN_LOOP,  // values that do not make whole rows
  OPEN_QUOTE,   // no closing quote on the line
  OPEN_FIELD,   // no line with ; ends the text
  OPEN_LIST,    // no bracket ends the list
  OPEN_FRAME,   // no save_ ends the frame
  NAME_TWICE,   // a name that the block has already
  RESERVED_WORD,
  FAULT_KINDS
};

// The faults of one kind in one block: how many, and the first.
struct FAULT {
  int COUNT = 0;
  const char* AT = nullptr;  // where in the file
  std::string_view TEXT;     // the word or name that it is about
};

struct FAULTS {
  std::array<FAULT, FAULT_KINDS> KINDS;

  void NOTE(FAULT_KIND kind, const char* at, std::string_view text);
};

// A file as it is gone through.
struct TOKENS {
  std::string_view BYTES;  // the whole file
  std::size_t AT = 0;      // position of the next byte
  std::size_t START = 0;   // position at which the last word began
  bool CIF2 = false;       // the file says that it is CIF 2.0
  bool LISTS = false;      // it may hold lists; not once one was never closed
  FAULTS FOUND;            // since they were cleared last
};

TOKENS TOKENS_OF(std::string_view bytes);

// The next word; text becomes what it says, without quotes.
TOKEN NEXT_TOKEN(TOKENS& tokens, std::string_view& text);

// Whether a line ends between two positions.
bool LINE_ENDS_BETWEEN(std::string_view bytes, std::size_t first, std::size_t last);

// Lines that begin up to a place in the bytes: its line number, from 1. Lines end with LF, CR LF
// or, where there is no LF in the file, CR.
int LINE_NUMBER(std::string_view bytes, const char* at);

}  // namespace KVA_CIFFULL
