// Whether the tests are built with AddressSanitizer, which is slow, ends a program that gets no
// memory and needs more room than any limit leaves.
#pragma once

#ifdef __SANITIZE_ADDRESS__
inline constexpr bool sanitized = true;
#elif defined(__clang__)
inline constexpr bool sanitized = __has_feature(address_sanitizer);
#else
inline constexpr bool sanitized = false;
#endif
