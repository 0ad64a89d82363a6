// SPDX-License-Identifier: MIT
#include "tests/support/FakeHost.h"
#include "tests/support/Stations.h"
#include "weather/AviationWeatherRecord.h"
#include "weather/SCWeatherGrabber.h"

#include <gtest/gtest.h>

namespace {

using Addresses = std::vector<std::string>;

TEST(WeatherRequests, AskTheServerInTheSettingsForOneStation) {
    const std::string keys = "/adds/dataserver_current/httpparam?dataSource=";
    const std::string middle = "&requestType=retrieve&format=xml&stationString=";
    const struct {
        platform::Value server;
        std::string identifier;
        std::string expectedServer;
        std::string expectedIdentifier;
    } cases[] = {
        {{}, "KJFK", "aviationweather.gov", "KJFK"},
        {std::string(" \t"), "KJFK", "aviationweather.gov", "KJFK"},
        {std::string("data.example.org:8443 "), "KJFK", "data.example.org:8443", "KJFK"},
        {{}, "k&=\u00E9% -._~", "aviationweather.gov", "k%26%3D%C3%A9%25%20-._~"},
    };
    for (const auto& [server, identifier, expectedServer, expectedIdentifier] : cases) {
        SCOPED_TRACE(identifier + " at " + expectedServer);
        support::FakeHost host;
        host.userDefaults.setObject(server, "dataserverhost");
        const auto grabber = SCWeatherGrabber::init(host.host);
        grabber->getNewMessages({makeStation({identifier})});
        const std::string start = "https://" + expectedServer + keys;
        EXPECT_EQ(host.urlSessions.addresses(),
                  (Addresses{start + "metars" + middle + expectedIdentifier +
                                 "&hoursBeforeNow=1&mostRecentForEachStation=true",
                             start + "TAFs" + middle + expectedIdentifier +
                                 "&hoursBeforeNow=1&mostRecent=true"}));
    }
}

TEST(WeatherRequests, OfOneGrabberAreSupersededAndRevalidatedTogether) {
    support::FakeHost host;
    const auto grabber = SCWeatherGrabber::init(host.host);
    const auto other = SCWeatherGrabber::init(host.host);
    grabber->revalidates = true;
    grabber->getNewMessages({makeStation({"KAAA"}), makeStation({"KBBB"})});
    other->getNewMessages({makeStation({"KCCC"})});
    const auto waiting = host.urlSessions.requests();
    EXPECT_FALSE(*waiting.front().superseded);
    grabber->supersede();
    host.urlSessions.answer("KAAA", "");
    const auto later = host.urlSessions.requests();
    for (const auto& request : {waiting[0], waiting[1], later.back()}) {
        EXPECT_TRUE(request.revalidates && *request.superseded) << request.address.text;
    }
    EXPECT_NE(later.back().address.text.find("KBBB"), std::string::npos);
    EXPECT_FALSE(waiting[2].revalidates || *waiting[2].superseded);
    // Both walks begin anew with another list.
    host.urlSessions.answer("KAAA", "");
    grabber->getNewMessages({makeStation({"KDDD"})});
    EXPECT_TRUE(host.urlSessions.answer("KDDD", "") && host.urlSessions.answer("KDDD", ""));
}

TEST(WeatherRequests, ARecordAsksForOneTafAndLivesUntilItHasCome) {
    support::FakeHost host;
    using Reply = std::optional<std::string_view>;
    for (const Reply reply : {Reply(), Reply("<TAF>"), Reply("<r><TAF>x</TAF></r>")}) {
        auto record = AviationWeatherRecord::initWithStation_options(host.host, nullptr, 5);
        EXPECT_EQ(record->requestedData, 5U);
        record->getNewMessages();
        EXPECT_EQ(host.urlSessions.addresses().size(), 1U);
        const std::weak_ptr<AviationWeatherRecord> alive = record;
        record.reset();
        EXPECT_FALSE(alive.expired());
        EXPECT_TRUE(host.urlSessions.answer(
            "stationString=KSFO&hoursBeforeNow=1&mostRecentForEachStation=true", reply));
        EXPECT_TRUE(alive.expired());
    }
}

} // namespace
