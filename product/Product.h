// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace product {

inline constexpr std::string_view version = NOSIG_VERSION;
/// The program's User-Agent (RFC 9110, section 10.1.5).
inline constexpr const char* userAgent = "Nosig/" NOSIG_VERSION;

} // namespace product
