// What files.h needs of the operating system. Each system has a source of its own for it; nothing
// else on this floor may call the system.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "console_code/kva_utilities/files.h"

namespace KVA_UTILITIES {

// A name as the system's own calls take it; bytes that are no UTF-8 do no harm.
std::filesystem::path SYSTEM_PATH(const std::string& name);

// What tells one file from another, whatever it is called. Devices and pipes may be shared.
struct FILE_IDENTITY {
  bool REGULAR = false;
  bool SHARED = false;  // it has further names
  std::uint64_t DEVICE = 0;
  std::uint64_t NODE = 0;
  std::size_t SIZE = 0;  // bytes
};
FILE_IDENTITY IDENTITY_OF(const std::string& name);

struct CLOSE_STREAM {
  void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using STREAM = std::unique_ptr<std::FILE, CLOSE_STREAM>;

struct OPENED_FILE {
  STREAM FILE;
  bool READABLE = false;
  bool WRITABLE = false;
};

// Opens the file as far as the system lets; 0 or the error number. Lines end as they are written.
int OPEN_AS_ALLOWED(const std::string& name, UNIT_MODE mode, OPENED_FILE& opened);

// Reads the next bytes past the stream's buffer: how many, 0 at the end, less when it failed.
std::ptrdiff_t READ_BYTES(std::FILE* stream, std::span<char> bytes);

// Writes bytes past the stream's buffer: how many. error is 0 when that is all of them, else the
// error number. A pipe that nobody empties is waited for some seconds.
std::size_t WRITE_BYTES(std::FILE* stream, std::string_view bytes, int& error);

// Bytes before the place of the next one; less than 0 where that cannot be told, as of a pipe.
// CUT_AT takes away what stands behind the position and goes on there; false when it cannot.
long FILE_POSITION(std::FILE* stream);
bool CUT_AT(std::FILE* stream, long position);

// Whether the program has the file open already, also as one of its standard streams.
bool IS_OPEN_HERE(const FILE_IDENTITY& file);

// While it lives, a signal that would end the program waits. Where the system ends programs
// otherwise it does nothing.
struct SIGNALS_WAIT {
  SIGNALS_WAIT();
  ~SIGNALS_WAIT();
  SIGNALS_WAIT(const SIGNALS_WAIT&) = delete;
  SIGNALS_WAIT& operator=(const SIGNALS_WAIT&) = delete;
};

// ---- memory ----

// So many bytes are about to be asked for in small pieces. Where the system has large pages they
// come in such, which it gives and finds sooner. What is not used takes no memory.
void EXPECT_MEMORY(std::size_t bytes);

// ---- temporary files ----

// The name of a file that goes when its owner goes, unless it was put in the place of another.
struct REMOVE_TEMPORARY {
  void operator()(const std::string* name) const;
};
using TEMPORARY = std::unique_ptr<const std::string, REMOVE_TEMPORARY>;

// Makes an empty file whose name begins with start, with the target's owner and rights if that
// exists. Returns 0 or the error number.
int MAKE_TEMPORARY(const std::string& target, std::string_view start, TEMPORARY& temporary,
                   OPENED_FILE& opened);

// Makes what was written safe and closes it; then the temporary file takes the target's place in
// one step. Returns 0 or the error number, and the temporary file is still there.
int PUT_IN_PLACE(TEMPORARY& temporary, OPENED_FILE& opened, const std::string& target);

// From here on temporary files go, too, when a signal ends the program, and a file that grows
// beyond a limit fails to be written instead of ending it. Called once, at start.
void REMOVE_TEMPORARIES_AT_SIGNALS();

}  // namespace KVA_UTILITIES
