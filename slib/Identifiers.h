// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// The identifiers of this process's objects. Every one that was issued is remembered for the life
/// of the process, so that none is issued twice. Any thread; constant time.
namespace slib {

/// A number of 32 random bits that was not issued before.
[[nodiscard]] std::uint64_t issueIdentifier();

} // namespace slib
