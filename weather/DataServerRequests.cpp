// SPDX-License-Identifier: MIT
#include "weather/DataServerRequests.h"

#include "platform/text/Text.h"
#include "product/Addresses.h"
#include "slib/slibUtility.h"

#include <fmt/format.h>

#include <string>

namespace weather {
namespace {

std::string serverOf(platform::Host& host) {
    const auto setting = slibUtility::slibUserDefaultForKey_ofType(host, "dataserverhost", 0);
    const auto* text = std::get_if<std::string>(&setting);
    const std::string_view named = text ? platform::trimmed(*text) : std::string_view();
    return std::string(named.empty() ? product::addresses::dataServerHost : named);
}

/// The keys stand in the order in which the server's users always gave them.
platform::URL request(platform::Host& host, std::string_view scheme, std::string_view source,
                      std::string_view station, std::string_view latest) {
    return {fmt::format("{}://{}{}?dataSource={}&requestType=retrieve&format=xml&stationString={}"
                        "&hoursBeforeNow=1&{}=true",
                        scheme, serverOf(host), product::addresses::dataServerPath, source, station,
                        latest)};
}

/// What RFC 3986 does not reserve stays as it is.
std::string queryValue(std::string_view text) {
    return platform::percentEscaped(text, "-._~");
}

} // namespace

platform::URL metarRequest(platform::Host& host, std::string_view identifier) {
    return request(host, "https", "metars", queryValue(identifier), "mostRecentForEachStation");
}

platform::URL tafRequest(platform::Host& host, std::string_view identifier) {
    return request(host, "https", "TAFs", queryValue(identifier), "mostRecent");
}

platform::URL fixedTafRequest(platform::Host& host, std::string_view latest) {
    return request(host, "http", "TAFs", "KSFO", latest);
}

} // namespace weather
