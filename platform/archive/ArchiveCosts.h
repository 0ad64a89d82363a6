// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// Upper bounds of the memory, in bytes, that reading a keyed archive takes. The reader stops at
/// its limit, whatever a file says; the writer counts the same way, so as never to write a file
/// that the reader would refuse.
namespace platform::costs {

inline constexpr std::uint64_t slot = 4;
/// A class with its name.
inline constexpr std::uint64_t archivedClass = 256;
/// An array, set or dictionary, and each element or entry in it.
inline constexpr std::uint64_t container = 192;
inline constexpr std::uint64_t element = 64;
inline constexpr std::uint64_t entry = 160;
/// An object of a class that the caller supplied, without its long texts.
inline constexpr std::uint64_t object = 640;

/// A file's own contents seldom take five times its size; the rest is for short files that refer to
/// one thing many times.
[[nodiscard]] constexpr std::uint64_t limit(std::uint64_t fileSize) {
    return (std::uint64_t{128} << 20) + 8 * fileSize;
}

} // namespace platform::costs
