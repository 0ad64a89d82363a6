// SPDX-License-Identifier: MIT
#include "weather/RetiredAddresses.h"

#include <gtest/gtest.h>

namespace weather {
namespace {

TEST(RetiredAddresses, LeadMetarAndTafQuestionsOfTheDefaultServerToTheirSuccessors) {
    const std::string old = "https://aviationweather.gov/adds/dataserver_current/httpparam?";
    const std::string metar = "https://aviationweather.gov/api/data/metar?ids=KJFK&format=xml";
    const std::string taf = "https://aviationweather.gov/api/data/taf?ids=KJFK&format=xml";
    const std::string middle = "&requestType=retrieve&format=xml&stationString=KJFK"
                               "&hoursBeforeNow=1&";
    // Addresses and their successors, which are the same where none is given.
    const std::pair<std::string, std::string> cases[] = {
        {old + "dataSource=metars" + middle + "mostRecentForEachStation=true", metar},
        {old + "dataSource=TAFs" + middle + "mostRecent=true", taf},
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

} // namespace
} // namespace weather
