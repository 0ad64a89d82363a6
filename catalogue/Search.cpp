// SPDX-License-Identifier: MIT
#include "catalogue/Search.h"

namespace catalogue {

std::vector<std::string> searchTerms(const std::string& text) {
    std::vector<std::string> terms(1);
    for (const char c : text) {
        if (c == ' ' || c == ',') {
            terms.emplace_back();
        } else {
            terms.back() += c;
        }
    }
    return terms;
}

StationArray stationsWith(const std::string& term, SearchField field,
                          const AviationWeatherStationCollection& collection) {
    switch (field) {
    case SearchField::identifiers:
        return collection.stationArrayWithPartialICAOID_orName_orState(term, {}, {});
    case SearchField::names:
        return collection.stationArrayWithPartialICAOID_orName_orState({}, term, {});
    case SearchField::regions:
        return collection.stationArrayWithPartialICAOID_orName_orState({}, {}, term);
    }
    return {};
}

} // namespace catalogue
