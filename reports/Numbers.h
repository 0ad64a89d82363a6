// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// Numbers as people write them.
namespace reports {

/// Digits in groups of three: "12,500".
[[nodiscard]] std::string grouped(int number);
/// With as few decimals as it takes, two at most.
[[nodiscard]] std::string plain(double number);

} // namespace reports
