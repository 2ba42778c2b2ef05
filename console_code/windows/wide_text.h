// Texts between UTF-8, which the program speaks, and UTF-16, which Windows does. Bytes that are
// neither become the replacement character.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace KVA_UTILITIES {

inline std::wstring WIDE_TEXT(std::string_view text) {
  const int bytes = static_cast<int>(text.size());
  const int length = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  ::MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, wide.data(), length);
  return wide;
}

inline std::string NARROW_TEXT(std::wstring_view wide) {
  const int units = static_cast<int>(wide.size());
  const int length =
      ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(length), '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, text.data(), length, nullptr, nullptr);
  return text;
}

}  // namespace KVA_UTILITIES
