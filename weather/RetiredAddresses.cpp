// SPDX-License-Identifier: MIT
#include "weather/RetiredAddresses.h"

#include "platform/text/Text.h"
#include "product/Addresses.h"
#include "weather/Query.h"

#include <fmt/format.h>

#include <optional>
#include <string_view>

namespace weather {
namespace {

/// Returns what follows the question mark of a retired address; absent for any other address.
std::optional<std::string_view> retiredQuery(std::string_view address) {
    // Scheme and host are case-insensitive, the path is not (RFC 3986).
    const auto take = [&address](std::string_view start, bool isExact) {
        const std::string_view found = address.substr(0, start.size());
        const bool isThere = isExact ? found == start : platform::equalIgnoringCase(found, start);
        if (isThere) {
            address.remove_prefix(start.size());
        }
        return isThere;
    };
    if (!(take("https://", false) || take("http://", false)) ||
        !take(product::addresses::dataServerHost, false) ||
        !take(product::addresses::dataServerPath, true) || !take("?", true)) {
        return std::nullopt;
    }
    return address.substr(0, address.find('#'));
}

} // namespace

platform::URL successorOf(const platform::URL& address) {
    const auto query = retiredQuery(address.text);
    if (!query) {
        return address;
    }
    const std::string_view source = valueOf(*query, "dataSource");
    const std::string_view stations = valueOf(*query, "stationString");
    const bool isMetar = platform::equalIgnoringCase(source, "metars");
    if (stations.empty() || (!isMetar && !platform::equalIgnoringCase(source, "tafs"))) {
        return address;
    }
    return {fmt::format("https://{}{}?ids={}&format=xml", product::addresses::dataServerHost,
                        isMetar ? product::addresses::metarPath : product::addresses::tafPath,
                        stations)};
}

} // namespace weather
