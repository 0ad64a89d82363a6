// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace reports {

/// Present weather in words, from the codes of WMO table 4678 separated by blanks: "-SHRA BR" is
/// "light showers of rain, mist". A code that cannot be read is left as it is. Empty if there are
/// no codes.
[[nodiscard]] std::string weatherInWords(std::string_view codes);

} // namespace reports
