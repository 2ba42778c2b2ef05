// Files that are written whole: until what is written is kept, and where that fails, what was there
// before stays. Asks and prints nothing.
#pragma once

#include <string>
#include <string_view>

#include "console_code/kva_utilities/system_files.h"

namespace KVA_UTILITIES {

// A file that is written beside the one that it replaces, or in place where there is no other way:
// a device, a pipe, a file with several names or that the program has open, a folder that takes no
// further file. A file that is written in place is so in one go, when it is kept and while signals
// wait; the old content is put back when that fails. Devices and pipes take bytes as they come.
struct WHOLE_FILE {
  std::string TARGET;       // the file itself, where links lead to
  bool BEHIND = false;      // the old content stays, in front of the new
  bool IN_PLACE = false;    // no file stands beside it
  bool AT_ONCE = false;     // in place: nothing goes out before it is kept
  bool RESTORABLE = false;  // in place: OLD, or START, brings back what was there
  std::string OLD;          // in place: what is written over
  long START = 0;           // bytes of the old content
  TEMPORARY BESIDE;         // none before the first bytes go out
  OPENED_FILE OPENED;       // where they go
  std::string WAITING;      // bytes that the system has not got yet
  std::size_t PASSED = 0;   // number of those that it has
  int ERROR = 0;            // of the first that it refused
};

// Whether the file can be written, before anything in it is changed. mode: APPEND or REPLACE.
// Returns 0 or the error number.
int PREPARE_WHOLE(WHOLE_FILE& file, const std::string& name, UNIT_MODE mode);

// Writes bytes, as they gather; FLUSH_WHOLE hands all of them to the system. False from the first
// one on that it refused.
bool WRITE_WHOLE(WHOLE_FILE& file, std::string_view bytes);
bool FLUSH_WHOLE(WHOLE_FILE& file);

// Puts what was written in its place, and closes the file. ERROR tells why it is not WHOLE.
KEPT KEEP_WHOLE(WHOLE_FILE& file);

// Closes the file; nothing was written. False when not all of it could be taken back.
bool DROP_WHOLE(WHOLE_FILE& file);

}  // namespace KVA_UTILITIES
