// SPDX-License-Identifier: MIT
#include "tests/support/FakeHost.h"
#include "tests/support/Stations.h"
#include "tests/weather/Posts.h"
#include "weather/SCWeatherGrabber.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

std::string contentsOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// What a grabber posts for one station: for each kind an update and a seal. The METAR reply is
/// handled first.
std::vector<std::string> postsFor(const std::optional<std::string>& metarReply,
                                  const std::optional<std::string>& tafReply) {
    support::FakeHost host;
    Posts posts(host.notificationCenter);
    SCWeatherGrabber::init(host.host)->getNewMessages({makeStation({"EFHK"})});
    host.urlSessions.answer("metars", metarReply);
    host.urlSessions.answer("TAFs", tafReply);
    return posts.texts;
}

std::vector<std::string> metarPosts(const std::string& text) {
    return {"updateMetar: " + text, "sealMetar: " + text};
}

std::vector<std::string> tafPosts(const std::string& text) {
    return {"updateTaf: " + text, "sealTaf: " + text};
}

TEST(WeatherReplies, YieldTheTextOfEachLayout) {
    const std::string metar = "EFHK 010950Z 22008KT 9999 -SN BKN014 M03/M05 Q1009 NOSIG";
    const struct {
        const char* file;
        std::vector<std::string> expected;
    } cases[] = {
        {"classic-metar.xml", metarPosts(metar)},
        // Both texts, with the white space between the second METAR tag and its first element.
        {"classic-two-metars.xml",
         metarPosts(metar + "      EFHK 010920Z 21009KT 6000 -SN OVC012 M03/M04 Q1010 NOSIG")},
        {"classic-empty.xml", metarPosts("")},
        {"classic-error.xml", metarPosts("")},
        {"classic-error-and-metar.xml",
         metarPosts("One of two sources is late      EFHK 010950Z 22008KT 9999 Q1009")},
        {"present-metar.xml", metarPosts("METAR LOWI 011050Z VRB02KT CAVOK 12/01 Q1018 NOSIG")},
        {"classic-taf.xml",
         tafPosts("TAF EFHK 010830Z 0109/0209 22010KT 9999 OVC009 TEMPO 0109/0115 3000 SN")},
        {"present-taf.xml", tafPosts("TAF LOWI 010915Z 0110/0210 27006KT 9999 FEW070 BECMG "
                                     "0118/0120 <VRB02KT> & CAVOK")},
    };
    for (const auto& [file, expected] : cases) {
        SCOPED_TRACE(file);
        const std::string reply =
            contentsOf(std::filesystem::path(NOSIG_SOURCE_DIR) / "tests/data/weather" / file);
        ASSERT_FALSE(reply.empty());
        const bool isTaf = expected.front().starts_with("updateTaf");
        EXPECT_EQ(isTaf ? postsFor({}, reply) : postsFor(reply, {}), expected);
    }
}

TEST(WeatherReplies, YieldTheTextOfClosedElements) {
    const std::string raw = "<raw_text>KAAA 1</raw_text>";
    const struct {
        std::string reply;
        std::string expected;
    } cases[] = {
        {"", ""},
        {"<METAR>" + raw + "</METAR>", "KAAA 1"},
        {"<METAR> \n " + raw + "<x>later</x></METAR>", "KAAA 1"},
        {"<METAR><raw_text>\n\n A\nB \n\t</raw_text></METAR>", "A\nB"},
        {"<METAR>a<station_id>KAAA</station_id><x>b</x></METAR>", "a"},
        {"<r><metar>" + raw + "</metar><Metar>" + raw + "</Metar></r>", ""},
        {"<r><TAF>" + raw + "</TAF></r>", ""},
        {"<r><TAF>TAF</TAF><METAR>" + raw + "</METAR></r>", "TAFKAAA 1"},
        {"<m:METAR xmlns:m='urn:m'>" + raw + "</m:METAR>", "KAAA 1"},
        // At a fault, closed elements before it count; an open one does not.
        {"<r><METAR>" + raw + "</METAR><METAR>KBBB", "KAAA 1"},
        {"<r><METAR>" + raw + "</METAR>&nothing;", "KAAA 1"},
        {"<r><METAR>" + raw, ""},
        {"plain text", ""},
    };
    for (const auto& [reply, expected] : cases) {
        SCOPED_TRACE(reply);
        EXPECT_EQ(postsFor(reply, {}), metarPosts(expected));
    }
    EXPECT_EQ(postsFor({}, {}), std::vector<std::string>());
    std::string many = "<r>";
    for (int i = 0; i < 200'000; ++i) {
        many += "<METAR><r>KAAA</r></METAR>";
    }
    EXPECT_EQ(postsFor(many + "</r>", {}).front().size(), 13 + 4 * 200'000);
}

} // namespace
