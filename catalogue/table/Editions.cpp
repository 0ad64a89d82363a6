// SPDX-License-Identifier: MIT
#include "catalogue/table/Editions.h"

#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace catalogue {

namespace {

constexpr std::array<std::string_view, 12> months{"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                                  "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};

std::optional<unsigned> twoDigits(std::string_view text) {
    if (!platform::isDigit(text[0]) || !platform::isDigit(text[1])) {
        return std::nullopt;
    }
    return static_cast<unsigned>((text[0] - '0') * 10 + (text[1] - '0'));
}

} // namespace

std::string textOfEdition(std::chrono::year_month_day day) {
    return fmt::format("{:02}-{}-{:02}", static_cast<unsigned>(day.day()),
                       months[(static_cast<unsigned>(day.month()) - 1) % months.size()],
                       static_cast<int>(day.year()) % 100);
}

std::optional<std::chrono::year_month_day> editionOf(std::string_view list) {
    const std::size_t blankLine = list.find("\n\n");
    if (blankLine == std::string_view::npos) {
        return std::nullopt;
    }
    std::string_view header = list.substr(blankLine + 2);
    header = platform::trimmed(header.substr(0, header.find('\n')));
    constexpr std::size_t width = 9; // "01-FEB-26"
    if (header.size() < width) {
        return std::nullopt;
    }
    header = header.substr(header.size() - width);
    const auto day = twoDigits(header);
    const auto month = std::ranges::find(months, header.substr(3, 3));
    const auto year = twoDigits(header.substr(7));
    if (!day || month == months.end() || !year || header[2] != '-' || header[6] != '-') {
        return std::nullopt;
    }
    const std::chrono::year_month_day date(
        std::chrono::year(2000 + static_cast<int>(*year)),
        std::chrono::month(static_cast<unsigned>(month - months.begin()) + 1),
        std::chrono::day(*day));
    return date.ok() ? std::optional(date) : std::nullopt;
}

} // namespace catalogue
