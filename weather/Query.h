// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <string_view>

namespace weather {

/// Returns the value of the first entry with this key, still escaped; empty if there is none.
[[nodiscard]] inline std::string_view valueOf(std::string_view query, std::string_view key) {
    while (!query.empty()) {
        const std::string_view entry = query.substr(0, query.find('&'));
        query.remove_prefix(std::min(entry.size() + 1, query.size()));
        if (entry.starts_with(key) && entry.substr(key.size()).starts_with('=')) {
            return entry.substr(key.size() + 1);
        }
    }
    return {};
}

} // namespace weather
