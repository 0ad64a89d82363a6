// SPDX-License-Identifier: MIT
#include "catalogue/table/Places.h"

#include "catalogue/table/PlacesText.h"
#include "platform/text/Text.h"

#include <algorithm>

namespace catalogue {

const Places& Places::ours() {
    static const Places places(placesText);
    return places;
}

Places::Places(std::string_view text) {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        const std::size_t blank = line.find(' ');
        if (!line.starts_with('#') && blank != std::string_view::npos) {
            values_.emplace(line.substr(0, blank), platform::trimmed(line.substr(blank)));
        }
    }
}

Place Places::placeOf(const std::string& icao, const std::string& country,
                      const std::string& state) const {
    Place place{country, state, {}};
    if (const auto correction = values_.find(icao); correction != values_.end()) {
        const std::string& code = correction->second;
        place.country = code.substr(0, 2);
        place.state = code.size() > 3 ? code.substr(3) : "";
    }
    auto region = values_.find(place.country + "-" + place.state);
    if (region == values_.end()) {
        place.state.clear();
        region = place.country.size() == 2 ? values_.find(place.country) : values_.end();
    }
    if (region == values_.end()) {
        place.country.clear();
    }
    place.region = region == values_.end() ? "COUNTRY UNKNOWN" : region->second;
    return place;
}

} // namespace catalogue
