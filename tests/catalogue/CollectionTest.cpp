// SPDX-License-Identifier: MIT
#include "catalogue/AviationWeatherStationCollection.h"
#include "tests/support/Stations.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using Names = std::vector<std::string>;

TEST(Station, MarksAreCreatedOnDemandAndCopiedAsImmutable) {
    const auto station = makeStation({"KJFK"});
    EXPECT_FALSE(station->isFavorite());
    EXPECT_FALSE(station->refCon);
    EXPECT_FALSE(station->copyWithZone()->refCon);
    station->setFavorite(false);
    ASSERT_TRUE(station->refCon);
    EXPECT_EQ(std::get<platform::Number>(station->refCon->entries.at("RQFavorite")),
              platform::Number(false));
    station->toggleFavoriteStatus();

    const auto copy = station->copyWithZone();
    EXPECT_TRUE(copy->isFavorite());
    EXPECT_FALSE(copy->refCon->isMutable);
    const auto before = copy->refCon;
    copy->toggleFavoriteStatus();
    EXPECT_FALSE(copy->isFavorite());
    EXPECT_TRUE(copy->refCon->isMutable);
    EXPECT_NE(copy->refCon, before);
    copy->refCon->entries = {{"RQOther", platform::Number(true)}};
    EXPECT_FALSE(copy->isFavorite());
    EXPECT_TRUE(station->isFavorite());
}

TEST(Collection, SearchesTheFirstPresentArgumentOnly) {
    const auto collection = makeCollection({
        {"KSFO", "SAN FRANCISCO   ", "CALIFORNIA         "},
        {"ksfb", "SANFORD         ", "FLORIDA            "},
        {"LSZH", "Z\xC3\x9CRICH          ", "SWITZERLAND "},
        {"    ", std::nullopt, std::nullopt},
        {std::nullopt, "\xC4\xB0STANBUL \xE2\x84\xAA", std::string(70, 'A') + "KELVIN"},
    });
    using Text = std::optional<std::string>;
    struct {
        Text identifier, name, state;
        Names found;
    } const rows[] = {
        {"sf", {}, {}, {"KSFO", "ksfb"}},
        {"", "san", {}, {}},
        {{}, "san ", "florida", {"KSFO"}},
        {{}, "z\xC3\xBCr", {}, {"LSZH"}},
        // A dotted capital I lower-cases to two characters, the Kelvin sign to a plain k.
        {{}, "i\xCC\x87stan", {}, {"-"}},
        {{}, "\xE2\x84\xAA", {}, {"-"}},
        {{}, {}, "a ", {"KSFO", "ksfb"}},
        {" ", {}, {}, {"    "}},
        {{}, {}, {}, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.identifier.value_or(row.name.value_or(row.state.value_or("nothing"))));
        EXPECT_EQ(identifiers(collection->stationArrayWithPartialICAOID_orName_orState(
                      row.identifier, row.name, row.state)),
                  row.found);
    }
}

TEST(Collection, FindsTheFirstStationOfExactlyThatIdentifier) {
    const auto collection =
        makeCollection({{std::nullopt}, {"KJF "}, {"KJFK", "one"}, {"KJFK", "two"}});
    EXPECT_EQ(collection->stationWithICAOID("KJFK")->stationName, "one");
    for (const auto& other : {std::optional<std::string>(), {"KJF"}, {"kjfk"}}) {
        EXPECT_EQ(collection->stationWithICAOID(other), nullptr);
    }
}

TEST(Collection, GroupsByRegionWithoutCountingTheFirstStationOfEach) {
    auto collection = makeCollection({{"A", {}, "ONE"},
                                      {"B", {}, std::nullopt},
                                      {"C", {}, "TWO"},
                                      {"D", {}, "ONE"},
                                      {"E", {}, std::nullopt}});
    collection->createStateCollections();
    const auto& groups = *collection->stateByStateCollection;
    ASSERT_EQ(groups.size(), 4U);
    EXPECT_EQ(groups[0]->stateName, "ONE");
    EXPECT_EQ(identifiers(*groups[0]->stations), (Names{"A", "D"}));
    EXPECT_EQ(groups[0]->numberOfStations, 1);
    EXPECT_EQ(groups[2]->numberOfStations, 0);
    EXPECT_FALSE(groups[1]->stateName || groups[3]->stateName);

    // At most 300 groups are made, but existing ones go on growing.
    for (int i = 0; i < 310; ++i) {
        collection->stations->push_back(makeStation({"X", {}, "REGION " + std::to_string(i)}));
    }
    collection->stations->push_back(makeStation({"Y", {}, "TWO"}));
    collection->createStateCollections();
    ASSERT_EQ(collection->stateByStateCollection->size(), 300U);
    EXPECT_EQ(collection->stateByStateCollection->back()->stateName, "REGION 295");
    EXPECT_EQ(identifiers(*(*collection->stateByStateCollection)[2]->stations), (Names{"C", "Y"}));
}

TEST(Collection, WithinMeansStrictlyBelowTheLimitInTwiceTruncatedMiles) {
    // One degree along the equator is 111319.4908 m.
    const auto eastBy = [](double metres) { return metres / 111319.490793; };
    const auto collection = makeCollection({
        {"CENT"},
        {"SAME"},
        {"NEAR", {}, {}, 0, eastBy(16093.5)},
        {"OVER", {}, {}, 0, eastBy(16100.5)},
        {"POLE", {}, {}, 90, 0},
        {"NONE", {}, {}, 0, 181},
        {"NAN_", {}, {}, std::numeric_limits<double>::quiet_NaN(), 0},
    });
    const auto& centre = collection->stations->front();
    const auto within = [&](std::int64_t miles) {
        return identifiers(collection->stationsWithinDistanceFromStation_within(centre, miles));
    };
    EXPECT_EQ(within(10), (Names{"SAME", "NEAR"}));
    EXPECT_EQ(within(11), (Names{"SAME", "NEAR", "OVER"}));
    // 6,214 miles along the ground, but 5,598 in a straight line.
    EXPECT_EQ(within(6214), (Names{"SAME", "NEAR", "OVER"}));
    EXPECT_EQ(within(6215), (Names{"SAME", "NEAR", "OVER", "POLE"}));
    EXPECT_EQ(within(0), Names{});
    EXPECT_EQ(within(std::numeric_limits<std::int64_t>::min()), Names{});
    EXPECT_TRUE(collection->stationsWithinDistanceFromStation_within(nullptr, 10).empty());

    EXPECT_EQ(identifiers(collection->stationsClosestToLocation_within({0, 0}, 10)),
              (Names{"CENT", "SAME", "NEAR"}));
    EXPECT_EQ(identifiers(collection->stationsClosestToLocation_within({0, 0}, 6214)),
              (Names{"CENT", "SAME", "NEAR", "OVER"}));
    EXPECT_EQ(collection->stationsClosestToLocation_within({0, 0}, UINT64_MAX).size(), 7U);
}

TEST(Collection, ClosestIsTheFirstOfTheNearestWithinItsOddBound) {
    const auto collection = makeCollection({{"FAR_", {}, {}, 0, 0.17},
                                            {"ONE_", {}, {}, 0, 0.1},
                                            {"TWO_", {}, {}, 0, 0.1},
                                            {"OUT_", {}, {}, 0, 200}});
    EXPECT_EQ(collection->stationClosestToLocation({0, 0})->ICAO, "ONE_");
    EXPECT_EQ(collection->stationClosestToLocation({0, 0.3})->ICAO, "FAR_");
    EXPECT_EQ(collection->stationClosestToLocation({0, 0.17 + 20036.5 / 111319.490793})->ICAO,
              "FAR_");
    EXPECT_EQ(collection->stationClosestToLocation({0, 0.17 + 20037.5 / 111319.490793}), nullptr);
    collection->stations = nullptr;
    EXPECT_EQ(collection->stationClosestToLocation({0, 0}), nullptr);
}

TEST(Collection, CopiesShareOrCopyRecordsAndKeepTheirOwnArrays) {
    auto source = makeCollection({{"A", {}, "ONE"}, {"B", {}, "TWO"}});
    source->stateName = "GROUP";
    source->createStateCollections();
    const auto copy = source->copyWithZone();
    const auto sharing = source->copySharingStations();
    EXPECT_FALSE(copy->stateName);
    EXPECT_NE(copy->stations->front(), source->stations->front());
    EXPECT_EQ(*sharing->stations, *source->stations);
    EXPECT_NE(copy->stateByStateCollection, source->stateByStateCollection);
    EXPECT_EQ(*copy->stateByStateCollection, *source->stateByStateCollection);
    sharing->stations->clear();
    EXPECT_EQ(source->stations->size(), 2U);
}

} // namespace
