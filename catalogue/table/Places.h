// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

namespace catalogue {

/// Where a station is, as the list has it.
struct Place {
    /// The ISO 3166 code; empty if unknown.
    std::string country;
    /// The two letters of a state of the USA or a province of Canada; empty elsewhere.
    std::string state;
    /// The region that the station is listed under.
    std::string region;
};

/// The regions of the list: the states of the USA, the provinces of Canada, and every other country
/// or territory with an ISO 3166 code of its own.
class Places {
public:
    /// Those of resources/catalogue/places.txt, which is built into the program.
    [[nodiscard]] static const Places& ours();
    /// Reads lines of a key, a blank and a value: a code of ISO 3166 and its name, or a station and
    /// the code of its place. Blank lines and those that begin with "#" are skipped.
    explicit Places(std::string_view text);

    /// A correction for this station counts more than the table's codes. A state that is unknown
    /// leaves its country, and an unknown country the region "COUNTRY UNKNOWN".
    [[nodiscard]] Place placeOf(const std::string& icao, const std::string& country,
                                const std::string& state) const;

private:
    std::unordered_map<std::string, std::string> values_;
};

} // namespace catalogue
