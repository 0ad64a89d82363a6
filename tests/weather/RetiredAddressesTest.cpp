// SPDX-License-Identifier: MIT
#include "weather/RetiredAddresses.h"
#include "weather/DataServerRequests.h"

#include <gtest/gtest.h>

namespace weather {
namespace {

TEST(RetiredAddresses, OfMetarsAndTafsAtTheDefaultServerHaveSuccessors) {
    const std::string old = "https://aviationweather.gov/adds/dataserver_current/httpparam?";
    const std::string metar = "https://aviationweather.gov/api/data/metar?ids=KJFK&format=xml";
    const std::string taf = "https://aviationweather.gov/api/data/taf?ids=KJFK&format=xml";
    const std::string middle = "&requestType=retrieve&format=xml&stationString=KJFK"
                               "&hoursBeforeNow=1&";
    // Each address and its successor; an empty successor means that the address stays.
    const std::pair<std::string, std::string> cases[] = {
        {old + "dataSource=metars" + middle + "mostRecentForEachStation=true", metar},
        {"HTTPS" + old.substr(5) + "dataSource=TAFs" + middle + "mostRecent=true", taf},
        {"HTTP://AviationWeather.GOV" + old.substr(27) + "stationString=KJFK&dataSource=METARS#end",
         metar},
        {old + "dataSource=metars", {}},
        {old + "xdataSource=metars&stationString=KJFK", {}},
        {old + "dataSource=pireps&stationString=KJFK", {}},
        {"https://aviationweather.gov.example.org" + old.substr(27) + "dataSource=TAFs" + middle,
         {}},
        {"", {}},
    };
    for (const auto& [address, successor] : cases) {
        SCOPED_TRACE(address);
        EXPECT_EQ(successorOf({address}).text, successor.empty() ? address : successor);
    }
}

TEST(Questions, AreToldByTheirAddresses) {
    const std::string classic = "https://data.example:8443/adds/dataserver_current/httpparam";
    const struct {
        std::string address;
        std::optional<reports::Kind> kind;
        std::vector<std::string> stations = {"KJFK"};
    } cases[] = {
        {classic + "?dataSource=metars&requestType=retrieve&stationString=KJFK",
         reports::Kind::metar},
        {classic + "?dataSource=TAFs&stationString=KJFK", reports::Kind::taf},
        {"https://aviationweather.gov/api/data/metar?ids=KJFK&hours=24", reports::Kind::metar},
        {"https://aviationweather.gov/api/data/taf?ids=KJFK", reports::Kind::taf},
        {classic + "?dataSource=TAFs&stationString=KJFK,KLGA",
         reports::Kind::taf,
         {"KJFK", "KLGA"}},
        {"https://aviationweather.gov/api/data/metar?ids=,KLGA,,KJFK,&format=xml",
         reports::Kind::metar,
         {"KLGA", "KJFK"}},
        {"https://aviationweather.gov/api/data/metar?ids=,", {}},
        {classic + "?dataSource=TAFs&stationString=K%20K", {}},
        {classic + "?dataSource=TAFs&stationString=KJFK,K%2CK", {}},
        {classic + "?dataSource=TAFs", {}},
        {classic, {}},
        {"https://aviationweather.gov/other?ids=KJFK", {}},
        {"", {}},
    };
    for (const auto& [address, kind, stations] : cases) {
        SCOPED_TRACE(address);
        const auto question = questionIn({address});
        ASSERT_EQ(question.has_value(), kind.has_value());
        if (kind) {
            EXPECT_EQ(question->kind, *kind);
            EXPECT_EQ(question->stations, stations);
        }
    }
}

} // namespace
} // namespace weather
