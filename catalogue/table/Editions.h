// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace catalogue {

/// A day as the headers of a list's regions have it: "01-FEB-26".
[[nodiscard]] std::string textOfEdition(std::chrono::year_month_day day);

/// The day in the list's first region header, in this century; absent if there is none.
[[nodiscard]] std::optional<std::chrono::year_month_day> editionOf(std::string_view list);

} // namespace catalogue
