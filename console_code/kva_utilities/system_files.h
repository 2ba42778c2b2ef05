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

#include "console_code/kva_utilities/files.h"

namespace KVA_UTILITIES {

// A name as the system's own calls take it; bytes that are no UTF-8 do no harm.
std::filesystem::path SYSTEM_PATH(const std::string& name);

// What tells one file from another, whatever it is called. Devices and pipes may be shared.
struct FILE_IDENTITY {
  bool REGULAR = false;
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

// Takes away all bytes of the file behind the first size. False when the system refused.
bool SHORTEN(std::FILE* stream, long size);

}  // namespace KVA_UTILITIES
