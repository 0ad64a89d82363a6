// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Report.h"

#include <optional>
#include <span>

/// Reports as bytes to be stored (CBOR, RFC 8949). Decoding gives a report equal to the one that
/// was encoded, or nothing if the bytes are not those of such a report, with values that one can
/// have.
namespace reports {

[[nodiscard]] platform::Data encoded(const Metar& metar);
[[nodiscard]] platform::Data encoded(const Taf& taf);
[[nodiscard]] std::optional<Metar> decodedMetar(std::span<const std::byte> bytes);
[[nodiscard]] std::optional<Taf> decodedTaf(std::span<const std::byte> bytes);

} // namespace reports
