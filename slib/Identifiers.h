// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// The identifiers of this process's objects. Every issued one is remembered for the life of the
/// process, so that none is issued twice. Any thread; constant time.
namespace slib {

/// A number of 32 random bits that has not been issued before.
[[nodiscard]] std::uint64_t issueIdentifier();

} // namespace slib
