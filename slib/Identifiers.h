// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

/// The identifiers of this process's objects. Every one that was issued is remembered for the life
/// of the process, so that none is issued twice. Any thread; both answer in constant time.
namespace slib {

/// A number of 32 random bits that was not issued before, or `kept` unchanged where it is given.
/// Either counts as issued from then on.
std::uint64_t issueIdentifier(std::optional<std::uint64_t> kept = std::nullopt);

[[nodiscard]] bool wasIssued(std::uint64_t identifier);

} // namespace slib
