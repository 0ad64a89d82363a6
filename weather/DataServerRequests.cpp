// SPDX-License-Identifier: MIT
#include "weather/DataServerRequests.h"

#include "platform/text/Text.h"
#include "product/Addresses.h"
#include "slib/slibUtility.h"
#include "weather/Query.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

namespace weather {
namespace {

/// The keys are in the order in which clients of this server have always sent them.
platform::URL request(platform::Host& host, std::string_view scheme, std::string_view source,
                      std::string_view station, std::string_view latest) {
    return {fmt::format("{}://{}{}?dataSource={}&requestType=retrieve&format=xml&stationString={}"
                        "&hoursBeforeNow=1&{}=true",
                        scheme, dataServer(host), product::addresses::dataServerPath, source,
                        station, latest)};
}

/// Escapes everything but the characters that RFC 3986 calls unreserved.
std::string queryValue(std::string_view text) {
    return platform::percentEscaped(text, "-._~");
}

/// The parts between commas, without those that are empty.
std::vector<std::string> identifiersIn(std::string_view list) {
    std::vector<std::string> identifiers;
    while (!list.empty()) {
        const std::string_view part = list.substr(0, list.find(','));
        list.remove_prefix(std::min(part.size() + 1, list.size()));
        if (!part.empty()) {
            identifiers.emplace_back(part);
        }
    }
    return identifiers;
}

} // namespace

std::string dataServer(platform::Host& host) {
    const auto setting = slibUtility::slibUserDefaultForKey_ofType(host, "dataserverhost", 0);
    const auto* text = std::get_if<std::string>(&setting);
    const std::string_view named = text ? platform::trimmed(*text) : std::string_view();
    return std::string(named.empty() ? product::addresses::dataServerHost : named);
}

platform::URL metarRequest(platform::Host& host, std::string_view identifier) {
    return request(host, "https", "metars", queryValue(identifier), "mostRecentForEachStation");
}

platform::URL tafRequest(platform::Host& host, std::string_view identifier) {
    return request(host, "https", "TAFs", queryValue(identifier), "mostRecent");
}

platform::URL historyRequest(platform::Host& host, std::string_view identifier) {
    return {fmt::format("https://{}{}?ids={}&hours=24&format=xml", dataServer(host),
                        product::addresses::metarPath, queryValue(identifier))};
}

platform::URL listRequest(platform::Host& host, reports::Kind kind,
                          const std::vector<std::string>& identifiers) {
    std::vector<std::string> escaped;
    std::ranges::transform(identifiers, std::back_inserter(escaped), queryValue);
    return {fmt::format("https://{}{}?ids={}&format=xml", dataServer(host),
                        kind == reports::Kind::metar ? product::addresses::metarPath
                                                     : product::addresses::tafPath,
                        fmt::join(escaped, ","))};
}

platform::URL worldRequest(platform::Host& host, reports::Kind kind) {
    return {fmt::format("https://{}{}", dataServer(host),
                        kind == reports::Kind::metar ? product::addresses::worldMetarsPath
                                                     : product::addresses::worldTafsPath)};
}

platform::URL fixedTafRequest(platform::Host& host, std::string_view latest) {
    return request(host, "http", "TAFs", "KSFO", latest);
}

platform::URL stationTableRequest(platform::Host& host) {
    return {fmt::format("https://{}{}", dataServer(host), product::addresses::stationTablePath)};
}

std::optional<reports::Question> questionIn(const platform::URL& address) {
    const std::string_view text = address.text;
    const std::size_t start = text.find('?');
    const std::string_view place = text.substr(0, start);
    const std::string_view query = start == text.npos ? std::string_view() : text.substr(start + 1);
    const bool isClassic = place.ends_with(product::addresses::dataServerPath);
    const std::string_view source = valueOf(query, "dataSource");
    const std::string_view named = valueOf(query, isClassic ? "stationString" : "ids");
    const bool isMetar = isClassic ? platform::equalIgnoringCase(source, "metars")
                                   : place.ends_with(product::addresses::metarPath);
    const bool isTaf = isClassic ? platform::equalIgnoringCase(source, "tafs")
                                 : place.ends_with(product::addresses::tafPath);
    // What is escaped is no identifier of the service.
    if (isMetar == isTaf || named.find('%') != named.npos) {
        return {};
    }
    auto stations = identifiersIn(named);
    if (stations.empty()) {
        return {};
    }
    return reports::Question{isMetar ? reports::Kind::metar : reports::Kind::taf,
                             std::move(stations)};
}

} // namespace weather
