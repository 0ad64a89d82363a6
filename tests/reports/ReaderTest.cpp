// SPDX-License-Identifier: MIT
#include "reports/Reader.h"
#include "reports/Category.h"
#include "reports/RawText.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

namespace reports {
namespace {

struct Found final : Receiver {
    void receive(Metar&& metar) override { metars.push_back(std::move(metar)); }
    void receive(Taf&& taf) override { tafs.push_back(std::move(taf)); }

    std::vector<Metar> metars;
    std::vector<Taf> tafs;
    Understanding understanding = Understanding::none;
    std::size_t passedOver = 0;
};

/// Reads a text in parts of `part` bytes.
Found read(std::string_view text, std::size_t part = std::string_view::npos) {
    Found found;
    Reader reader(found);
    while (!text.empty()) {
        const std::string_view next = text.substr(0, part);
        text.remove_prefix(next.size());
        reader.feed(std::as_bytes(std::span(next)));
    }
    found.understanding = reader.finish();
    found.passedOver = reader.passedOver();
    return found;
}

std::string metar(const std::string& elements, const std::string& raw = "KAAA 010000Z") {
    return "<response><data><METAR><raw_text>" + raw +
           "</raw_text><station_id>KAAA</station_id><observation_time>2026-11-21T12:51:00Z"
           "</observation_time>" +
           elements + "</METAR></data></response>";
}

Date at(int day, int hour, int minute = 0) {
    using namespace std::chrono;
    return Date(sys_days(year(2026) / 11 / day)) + hours(hour) + minutes(minute);
}

std::string timeText(int day, int hour) {
    char text[32];
    std::snprintf(text, sizeof text, "2026-11-%02dT%02d:00:00.000Z", day, hour);
    return text;
}

std::string forecast(const std::string& kind, int from, int to, const std::string& elements) {
    return "<forecast><fcst_time_from>" + timeText(21, from) + "</fcst_time_from><fcst_time_to>" +
           timeText(21, to) + "</fcst_time_to>" +
           (kind.empty() ? "" : "<change_indicator>" + kind + "</change_indicator>") + elements +
           "</forecast>";
}

std::string taf(const std::string& forecasts, const std::string& raw = "TAF KAAA 211120Z") {
    return "<response><data><TAF><raw_text><![CDATA[" + raw + "]]></raw_text>" +
           "<station_id>KAAA</station_id><issue_time>" + timeText(21, 11) +
           "</issue_time><valid_time_from>" + timeText(21, 12) + "</valid_time_from>" +
           "<valid_time_to>" + timeText(22, 12) + "</valid_time_to>" + forecasts +
           "</TAF></data></response>";
}

std::string sky(const std::string& cover, int base, const std::string& kind = "") {
    return "<sky_condition sky_cover=\"" + cover + "\" cloud_base_ft_agl=\"" +
           std::to_string(base) + "\" cloud_type=\"" + kind + "\"/>";
}

std::string visibility(const std::string& miles) {
    return "<visibility_statute_mi>" + miles + "</visibility_statute_mi>";
}

/// A reply with something else in the place of an element.
std::string with(std::string reply, const std::string& element, const std::string& other) {
    const std::string end = "</" + element + ">";
    const std::size_t from = reply.find("<" + element + ">");
    return reply.replace(from, reply.find(end) + end.size() - from, other);
}

TEST(Reader, TakesWhatAMetarSaysAndLeavesOutWhatCannotBeRead) {
    const Found found = read(metar(
        "<temp_c>-5.6</temp_c><dewpoint_c>x</dewpoint_c><wind_dir_degrees>230</wind_dir_degrees>"
        "<wind_speed_kt>12</wind_speed_kt><wind_gust_kt>22</wind_gust_kt>" +
            visibility("10+") +
            "<altim_in_hg>29.95</altim_in_hg><quality_control_flags><corrected>TRUE</corrected>"
            "<auto>TRUE</auto></quality_control_flags><wx_string>-RA BR</wx_string>" +
            sky("FEW", 2500, "TCU") + sky("BKN", 26000, "CB") + sky("SCT", 0, "CU") +
            sky("OVC", 1) + sky("OVX", 2) +
            "<flight_category>MVFR</flight_category><metar_type>SPECI</metar_type>"
            "<elevation_m sky_cover=\"OVC\">9999</elevation_m>",
        "SPECI KAAA 211251Z AUTO 23012G22KT 10SM"));
    const Metar expected{
        .station = "KAAA",
        .observed = at(21, 12, 51),
        .raw = "SPECI KAAA 211251Z AUTO 23012G22KT 10SM",
        .conditions = {.wind = Wind{230, false, 12, 22},
                       .visibility = Visibility{10, true},
                       .weather = "-RA BR",
                       .layers = {{Cover::few, 2500, "TCU"},
                                  {Cover::broken, 26000, "CB"},
                                  {Cover::scattered, 0, ""},
                                  {Cover::overcast, 1, ""},
                                  {Cover::obscured, 2, ""}},
                       .verticalVisibility = {}},
        .temperature = -5.6,
        .dewPoint = {},
        .altimeter = 29.95,
        .elevation = {},
        .category = Category::MVFR,
        .revision = Revision::corrected,
        .isSpecial = true,
        .isAutomatic = true,
    };
    ASSERT_EQ(found.metars.size(), 1U);
    EXPECT_EQ(found.metars.front(), expected);
    EXPECT_EQ(found.understanding, Understanding::whole);

    const struct {
        const char* elements;
        std::optional<Wind> wind;
    } winds[] = {
        {"", {}},
        {"<wind_dir_degrees>120</wind_dir_degrees>", {}},
        {"<wind_speed_kt>7</wind_speed_kt>", Wind{{}, false, 7, {}}},
        {"<wind_speed_kt>3</wind_speed_kt><wind_dir_degrees>VRB</wind_dir_degrees>",
         Wind{{}, true, 3, {}}},
        {"<wind_dir_degrees>0</wind_dir_degrees><wind_speed_kt>3</wind_speed_kt>",
         Wind{{}, true, 3, {}}},
        {"<wind_dir_degrees>0</wind_dir_degrees><wind_speed_kt>0</wind_speed_kt>",
         Wind{0, false, 0, {}}},
        {"<wind_dir_degrees>361</wind_dir_degrees><wind_speed_kt>10</wind_speed_kt>",
         Wind{{}, false, 10, {}}},
        {"<wind_dir_degrees>90</wind_dir_degrees><wind_speed_kt>-1</wind_speed_kt>", {}},
        {"<wind_dir_degrees>90</wind_dir_degrees><wind_speed_kt>inf</wind_speed_kt>", {}},
    };
    for (const auto& [elements, wind] : winds) {
        const Found one = read(metar(elements));
        ASSERT_EQ(one.metars.size(), 1U) << elements;
        EXPECT_EQ(one.metars.front().conditions.wind, wind) << elements;
    }
    // Nothing goes over to the next report.
    const std::string next = "</METAR><METAR><raw_text>r</raw_text><station_id>KBBB</station_id>";
    const Found all = read(metar(
        "<temp_c>1</temp_c><wind_speed_kt>7</wind_speed_kt>" + next +
        "<observation_time>2026-11-21T13:00:00Z</observation_time><dewpoint_c> -7 </dewpoint_c>"
        "<temp_c>1e999</temp_c><altim_in_hg>29.92 inHg</altim_in_hg><elevation_m>4</elevation_m>" +
        next));
    EXPECT_EQ(all.passedOver, 1U);
    const Metar& second = all.metars.at(1);
    EXPECT_FALSE(second.conditions.wind || second.temperature || second.altimeter);
    EXPECT_TRUE(second.dewPoint == -7 && second.elevation == 4);
}

TEST(Reader, TakesFromTheRawTextWhatTheElementsLeaveOut) {
    const std::string text = "KAAA 22003KT 9999 VV004";
    const auto said = [&text](const std::string& elements) {
        return read(metar(elements, text)).metars.at(0).conditions;
    };
    const Conditions raw = rawConditions(text);
    EXPECT_EQ(said(""), raw);
    EXPECT_EQ(said(visibility("2")), (Conditions{{}, Visibility{2, false}, "", raw.layers, 400}));
    EXPECT_EQ(said(sky("FEW", 9)), (Conditions{{}, raw.visibility, "", {{Cover::few, 9, ""}}, {}}));
    EXPECT_EQ(said("<vert_vis_ft>7</vert_vis_ft>"), (Conditions{{}, raw.visibility, "", {}, 7}));
    EXPECT_EQ(read(metar("", text)).metars.at(0).category, Category::LIFR);
}

TEST(Reader, PassesOverWhatIsNoReport) {
    const std::string whole = metar("");
    const auto station = [&whole](const std::string& element) {
        return with(whole, "station_id", element);
    };
    const struct {
        std::string reply;
        Understanding understanding;
        std::size_t passedOver;
    } cases[] = {
        {"", Understanding::nothing, 0},
        {"<response><data num_results=\"0\"/></response>", Understanding::nothing, 0},
        {station(""), Understanding::nothing, 1},
        {station("KAAA<station_id/>"), Understanding::nothing, 1},
        {station("<station_id><b>KAAA</b></station_id>"), Understanding::nothing, 1},
        {station("<station_id>KAAa</station_id>"), Understanding::nothing, 1},
        {station("<station_id>AZ09AZ09</station_id>"), Understanding::whole, 0},
        {station("<station_id>AZ09AZ09A</station_id>"), Understanding::nothing, 1},
        {with(whole, "observation_time", ""), Understanding::nothing, 1},
        {with(whole, "raw_text", ""), Understanding::nothing, 1},
        {metar("", "KAAA 010000Z AUTO NIL="), Understanding::nothing, 1},
        {taf("", "TAF KAAA NIL="), Understanding::nothing, 1},
        {metar("", std::string(16'384, 'A')), Understanding::whole, 0},
        {metar("", std::string(16'385, 'A')), Understanding::nothing, 1},
        {"<html><METAR></METAR></html>", Understanding::none, 1},
        {"<!DOCTYPE html><p>Too many requests", Understanding::none, 0},
        {"<response><errors><error>Invalid station string</error></errors></response>",
         Understanding::none, 0},
        {"no XML", Understanding::none, 0},
        // Reports and what only they can have, where none belongs.
        {"<TAF><forecast><TAF><a/></TAF></forecast></TAF>", Understanding::nothing, 1},
        {"<METAR><TAF/></METAR>", Understanding::nothing, 1},
        {"<TAF><METAR/></TAF>", Understanding::nothing, 1},
        {"<METAR><sky_condition><METAR sky_cover=\"OVC\"/></sky_condition></METAR>",
         Understanding::nothing, 1},
        {whole.substr(0, whole.size() - 1), Understanding::none, 0},
    };
    for (const auto& [reply, understanding, passedOver] : cases) {
        SCOPED_TRACE(reply.substr(0, 200));
        const Found found = read(reply);
        EXPECT_EQ(found.understanding, understanding);
        EXPECT_EQ(found.passedOver, passedOver);
    }
    const auto observed = [&whole](const std::string& time) {
        return read(
            with(whole, "observation_time", "<observation_time>" + time + "</observation_time>"));
    };
    for (const char* time : {"2026-13-21T12:51:00Z", "2026-02-30T12:51:00Z", "2026-11-21T24:00:00Z",
                             "2026-11-21T12:60:00Z", "2026-11-21T12:51:60Z", "2026-11-21 12:51:00Z",
                             "2026-11-21T12:51:00.000", "2026-11-21T12:51:00", "2026-11-21Z"}) {
        EXPECT_EQ(observed(time).passedOver, 1U) << time;
    }
    EXPECT_EQ(observed("2026-11-21T23:59:59Z").metars.at(0).observed,
              at(21, 23, 59) + std::chrono::seconds(59));
}

TEST(Reader, PutsATafInOrderAndLetsChangesInherit) {
    const Found found = read(taf(
        forecast("TEMPO", 14, 16, visibility("0.5") + "<wx_string>FG</wx_string>") +
        forecast("FM", 18, 23, visibility("6+") + sky("BKN", 2000)) +
        forecast("", 12, 18,
                 "<wind_dir_degrees>180</wind_dir_degrees><wind_speed_kt>10</wind_speed_kt>" +
                     visibility("4") + "<wx_string>RA</wx_string>" + sky("OVC", 2500)) +
        forecast("BECMG", 14, 18,
                 "<time_becoming>" + timeText(21, 15) + "</time_becoming>" +
                     "<wx_string>NSW</wx_string>" + visibility("6+")) +
        forecast("PROB", 20, 22, "<probability>40</probability>" + sky("BKN", 300)) +
        forecast("", 21, 22, "<probability>10</probability>") + forecast("PROB", 21, 22, "") +
        forecast("INTER", 22, 23, "<probability>30</probability>") + forecast("FM", 22, 20, "") +
        forecast("FM", 23, 23, "") + with(forecast("FM", 23, 23, ""), "fcst_time_from", "")));
    ASSERT_EQ(found.tafs.size(), 1U);
    EXPECT_EQ(found.understanding, Understanding::whole);
    const Taf& only = found.tafs.front();
    EXPECT_EQ(only.issued, at(21, 11));
    EXPECT_EQ(only.begins, at(21, 12));
    EXPECT_EQ(only.ends, at(22, 12));
    using Kind = Forecast::Kind;
    const struct {
        Kind kind;
        int from;
        const char* category;
        const char* weather;
        std::optional<Wind> wind;
        std::optional<int> probability;
    } expected[] = {
        {Kind::base, 12, "MVFR", "RA", Wind{180, false, 10, {}}, {}},
        {Kind::becoming, 14, "MVFR", "", Wind{180, false, 10, {}}, {}},
        {Kind::temporary, 14, "LIFR", "FG", Wind{180, false, 10, {}}, {}},
        {Kind::from, 18, "MVFR", "", {}, {}},
        {Kind::probable, 20, "LIFR", "", {}, 40},
        {Kind::probable, 21, "MVFR", "", {}, 10},
        {Kind::probable, 21, "MVFR", "", {}, {}},
        {Kind::temporary, 22, "MVFR", "", {}, 30},
        {Kind::from, 23, "", "", {}, {}},
    };
    ASSERT_EQ(only.forecasts.size(), std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        SCOPED_TRACE(i);
        const Forecast& part = only.forecasts[i];
        EXPECT_EQ(part.kind, expected[i].kind);
        EXPECT_EQ(part.begins, at(21, expected[i].from));
        EXPECT_EQ(nameOf(part.category), expected[i].category);
        EXPECT_EQ(part.expected.weather, expected[i].weather);
        EXPECT_EQ(part.expected.wind, expected[i].wind);
        EXPECT_EQ(part.probability, expected[i].probability);
    }
    EXPECT_EQ(only.forecasts[1].complete, at(21, 15));
    EXPECT_EQ(only.forecasts[1].ends, at(21, 18));

    // CAVOK holds until a change states visibility, weather or clouds. Unless it states clouds,
    // there are still none.
    const std::string fine = visibility("6+") + "<sky_condition sky_cover=\"CAVOK\"/>";
    const auto parts =
        read(taf(forecast("", 12, 14, fine) +
                 forecast("BECMG", 14, 16, "<wind_speed_kt>17</wind_speed_kt>") +
                 forecast("BECMG", 16, 18, "<wx_string>RA</wx_string>") +
                 forecast("BECMG", 18, 20, fine) + forecast("BECMG", 20, 21, visibility("2")) +
                 forecast("BECMG", 21, 22, "<vert_vis_ft>100</vert_vis_ft>") +
                 forecast("BECMG", 22, 23,
                          sky("SKC", 0) + sky("CLR", 0) + sky("NSC", 0) + sky("NCD", 0))))
            .tafs.at(0)
            .forecasts;
    EXPECT_EQ(parts[1].expected.layers, parts[0].expected.layers);
    const std::vector<Layer> none{{Cover::none, {}, ""}};
    EXPECT_TRUE(parts[2].expected.layers == none && parts[4].expected.layers == none);
    EXPECT_EQ(parts[2].expected.weather, "RA");
    EXPECT_EQ(parts[3].expected.weather, "");
    EXPECT_EQ(nameOf(parts[1].category), "VFR");
    EXPECT_EQ(nameOf(parts[4].category), "IFR");
    EXPECT_EQ(nameOf(parts[5].category), "LIFR");
    EXPECT_EQ(nameOf(parts[6].category), "IFR");

    EXPECT_EQ(read(taf("", "TAF AMD KAAA")).tafs.at(0).revision, Revision::amended);
    EXPECT_TRUE(read(taf("", "TAF VTBD 281000Z 2812/2912 CNL=")).tafs.at(0).isCancelled);
}

TEST(Reader, LaterAndRevisedReportsTakeTheOthersPlace) {
    const auto check = []<typename Report>(Date Report::*time) {
        Report early;
        early.*time = at(21, 11);
        Report late = early;
        late.*time = at(21, 12);
        Report corrected = late;
        corrected.revision = Revision::corrected;
        EXPECT_TRUE(replaces(late, early) && replaces(corrected, late) && replaces(late, late) &&
                    replaces(corrected, corrected));
        EXPECT_FALSE(replaces(early, late) || replaces(late, corrected) ||
                     replaces(early, corrected));
    };
    check(&Metar::observed);
    check(&Taf::issued);
}

std::filesystem::path shared(const char* name) {
    return std::filesystem::path(NOSIG_SHARED_DATA) / name;
}

std::string contentsOf(const std::filesystem::path& path) {
    std::string text;
    gzFile file = gzopen(path.c_str(), "rb");
    char part[1 << 16];
    for (int size = 0; file && (size = gzread(file, part, sizeof part)) > 0;) {
        text.append(part, static_cast<std::size_t>(size));
    }
    gzclose(file);
    return text;
}

/// Whether `some` are the first of `all`. Comparing the last of them is enough.
template <typename T>
bool begins(const std::vector<T>& some, const std::vector<T>& all) {
    return some.empty() || (some.size() <= all.size() && some.back() == all[some.size() - 1]);
}

TEST(Reader, GivesTheSameWhereverARealReplyIsCut) {
    if (!std::filesystem::exists(shared("world"))) {
        GTEST_SKIP() << "no recorded replies";
    }
    int samples = 0;
    for (const char* folder : {"replies", "replies-present", "world"}) {
        for (const auto& entry : std::filesystem::directory_iterator(shared(folder))) {
            if (entry.path().extension() != ".xml") {
                continue;
            }
            SCOPED_TRACE(entry.path().filename());
            const std::string text = contentsOf(entry.path());
            const Found whole = read(text);
            EXPECT_EQ(read(text, 1).metars, whole.metars);
            EXPECT_EQ(read(text, 7).tafs, whole.tafs);
            for (std::size_t end = 0; end < text.size(); ++end) {
                const Found cut = read(std::string_view(text).substr(0, end));
                ASSERT_TRUE(begins(cut.metars, whole.metars) && begins(cut.tafs, whole.tafs))
                    << end;
            }
            ++samples;
        }
    }
    EXPECT_EQ(samples, 11);
}

TEST(Reader, ReadsRealReplies) {
    if (!std::filesystem::exists(shared("world"))) {
        GTEST_SKIP() << "no recorded replies";
    }
    const struct {
        const char* name;
        Understanding understanding;
        std::size_t metars;
        std::size_t tafs;
    } cases[] = {
        {"replies/empty-rebuilt.xml", Understanding::nothing, 0, 0},
        {"replies/error-no-time-rebuilt.xml", Understanding::none, 0, 0},
        {"replies/metar-ksfo-2019-05-22.xml", Understanding::whole, 2, 0},
        {"replies/taf-phto-2019-06-01.xml", Understanding::whole, 0, 9},
        {"replies-present/metar-kbeh-2025-09-20-element-only.xml", Understanding::whole, 1, 0},
        {"replies-present/taf-rjtt-2026-09-16-trimmed.xml", Understanding::whole, 0, 1},
        {"world/metars-cache-2025-10-19-trimmed.xml", Understanding::whole, 11, 0},
        {"world/tafs-cache-2025-10-15-trimmed.xml", Understanding::whole, 0, 4},
    };
    for (const auto& [name, understanding, metars, tafs] : cases) {
        SCOPED_TRACE(name);
        const Found found = read(contentsOf(shared(name)));
        EXPECT_EQ(found.understanding, understanding);
        EXPECT_EQ(found.metars.size(), metars);
        EXPECT_EQ(found.tafs.size(), tafs);
    }
}

TEST(Reader, GivesAWholeWorldItsCategories) {
    const std::filesystem::path path = shared("world/metars-world-2014-12-18-rebuilt.xml.gz");
    if (!std::filesystem::exists(path)) {
        GTEST_SKIP() << "no recorded world";
    }
    const std::string text = contentsOf(path);
    const Found whole = read(text);
    EXPECT_EQ(whole.metars.size() + whole.passedOver, 4538U);
    // Each cut reads everything before it, so they are denser near the beginning, where that is
    // little.
    for (std::size_t i = 1; i <= 200; ++i) {
        const std::size_t end = text.size() * i * i / (std::size_t{201} * 201);
        const Found cut = read(std::string_view(text).substr(0, end), 4096);
        ASSERT_TRUE(begins(cut.metars, whole.metars)) << end;
    }
    std::map<std::string_view, int> counts;
    for (const Metar& metar : whole.metars) {
        ++counts[nameOf(metar.category)];
    }
    // 639 reports have no category from the service: one is NIL, 196 are certain from their
    // conditions.
    EXPECT_EQ(counts, (std::map<std::string_view, int>{{"VFR", 2251 + 79},
                                                       {"MVFR", 908 + 67},
                                                       {"IFR", 391 + 20},
                                                       {"LIFR", 349 + 30},
                                                       {"", 442}}));
}

} // namespace
} // namespace reports
