// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

namespace platform {

/// The runs of letters, their marks and digits, of any script, in their order; views of the text,
/// which is UTF-8. What is malformed stands between words.
[[nodiscard]] std::vector<std::string_view> wordsIn(std::string_view text);

} // namespace platform
