// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace reports {

/// Present weather in words, from its codes in WMO table 4678 with blanks between them: "-SHRA BR"
/// is "light showers of rain, mist". A code that cannot be read stands as it is. Empty for no
/// codes.
[[nodiscard]] std::string weatherInWords(std::string_view codes);

} // namespace reports
