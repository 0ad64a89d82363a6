// SPDX-License-Identifier: MIT
#include "platform/RetiredAddresses.h"

#include "platform/Addresses.h"
#include "platform/Text.h"

#include <fmt/format.h>

#include <optional>
#include <string_view>

namespace platform {
namespace {

/// What follows the retired path's question mark, or nothing when this is another address.
std::optional<std::string_view> retiredQuery(std::string_view address) {
    // Scheme and host are case-insensitive, the path is not (RFC 3986).
    const auto take = [&address](std::string_view start, bool isExact) {
        const std::string_view found = address.substr(0, start.size());
        const bool isThere = isExact ? found == start : equalIgnoringCase(found, start);
        if (isThere) {
            address.remove_prefix(start.size());
        }
        return isThere;
    };
    if (!(take("https://", false) || take("http://", false)) ||
        !take(addresses::dataServerHost, false) || !take(addresses::dataServerPath, true) ||
        !take("?", true)) {
        return std::nullopt;
    }
    return address.substr(0, address.find('#'));
}

/// The value of a query's first entry of that key, escaped as it is; empty without one.
std::string_view valueOf(std::string_view query, std::string_view key) {
    while (!query.empty()) {
        const std::string_view entry = query.substr(0, query.find('&'));
        query.remove_prefix(std::min(entry.size() + 1, query.size()));
        if (entry.starts_with(key) && entry.substr(key.size()).starts_with('=')) {
            return entry.substr(key.size() + 1);
        }
    }
    return {};
}

} // namespace

URL successorOf(const URL& address) {
    const auto query = retiredQuery(address.text);
    if (!query) {
        return address;
    }
    const std::string_view source = valueOf(*query, "dataSource");
    const std::string_view stations = valueOf(*query, "stationString");
    const bool isMetar = equalIgnoringCase(source, "metars");
    if (stations.empty() || (!isMetar && !equalIgnoringCase(source, "tafs"))) {
        return address;
    }
    return {fmt::format("https://{}{}?ids={}&format=xml", addresses::dataServerHost,
                        isMetar ? addresses::metarPath : addresses::tafPath, stations)};
}

} // namespace platform
