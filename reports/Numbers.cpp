// SPDX-License-Identifier: MIT
#include "reports/Numbers.h"

#include <fmt/format.h>

#include <cstdlib>

namespace reports {

std::string grouped(int number) {
    std::string text = std::to_string(std::abs(number));
    for (std::size_t at = text.size(); at > 3; at -= 3) {
        text.insert(at - 3, 1, ',');
    }
    return (number < 0 ? "-" : "") + text;
}

std::string plain(double number) {
    std::string text = fmt::format("{:.2f}", number);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) {
        text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

} // namespace reports
