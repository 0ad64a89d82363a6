// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Report.h"

#include <optional>
#include <span>

/// Reports as bytes for keeping (CBOR, RFC 8949). What was written is read back equal; bytes that
/// hold anything else give nothing.
namespace reports {

[[nodiscard]] platform::Data encoded(const Metar& metar);
[[nodiscard]] platform::Data encoded(const Taf& taf);
[[nodiscard]] std::optional<Metar> decodedMetar(std::span<const std::byte> bytes);
[[nodiscard]] std::optional<Taf> decodedTaf(std::span<const std::byte> bytes);

} // namespace reports
