// SPDX-License-Identifier: MIT
#include "catalogue/Packages.h"
#include "catalogue/ListFile.h"
#include "catalogue/stationparser.h"
#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "tests/support/FakeHost.h"
#include "tests/support/PinnedArchive.h"
#include "tests/support/Record.h"
#include "tests/support/ScarceMemory.h"
#include "tests/support/Stations.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fmt/format.h>

namespace {

/// Every archived field of a collection, as text to compare.
std::string described(const AviationWeatherStationCollection& collection) {
    std::string text = fmt::format(
        "{} {} {}\n",
        collection.lastUpdated ? collection.lastUpdated->time_since_epoch().count() : -1,
        collection.fromURL ? collection.fromURL->text : "-", collection.numberOfStations);
    for (const auto& one : *collection.stations) {
        for (const auto& field : {one->stateName, one->stateAbbreviation, one->stationName,
                                  one->ICAO, one->IATA, one->countryCode}) {
            text += field ? "'" + *field + "'" : "-";
        }
        text += fmt::format(" {} {:a} {:a} {}", one->SYNOPIndex, one->latitude, one->longitude,
                            one->ELEV);
        for (const char code : {one->METAR, one->NEXRAD, one->aviationFlag, one->upperAirOrWind,
                                one->observationType, one->officeType, one->plottingPriority}) {
            text += fmt::format(" {}", int{code});
        }
        text += one->refCon ? one->isFavorite() ? " favourite\n" : " marked\n" : "\n";
    }
    return text;
}

/// A collection in which no field is empty and no two fields are equal.
std::shared_ptr<AviationWeatherStationCollection> fullCollection() {
    auto collection = makeCollection({{"KABC", "NAME OF STATION ", "REGION OF IT ", 12.5, -34.75}});
    auto& station = *collection->stations->front();
    station.stateAbbreviation = "DE";
    station.IATA = "FGH ";
    station.SYNOPIndex = 98765;
    station.ELEV = -430;
    station.METAR = 'X';
    station.NEXRAD = 'N';
    station.aviationFlag = 'T';
    station.upperAirOrWind = 'U';
    station.observationType = 'A';
    station.officeType = 'F';
    station.plottingPriority = '7';
    station.countryCode = "IJ";
    station.setFavorite(true);
    collection->lastUpdated = platform::Date(std::chrono::microseconds(1678307200250000));
    collection->fromURL = platform::URL{"file:///lists/stations.txt"};
    collection->numberOfStations = 17;
    return collection;
}

TEST(Packages, KeepTheirKeysAndClassNamesForEver) {
    const auto read = catalogue::readPackage(support::pinnedArchive("catalogue.STNPKG"));
    ASSERT_TRUE(read);
    EXPECT_EQ(described(*read),
              "1678307200250000 file:///lists/stations.txt 17\n"
              "'REGION OF IT ''DE''NAME OF STATION ''KABC''FGH ''IJ' 98765 0x1.9p+3 -0x1.16p+5 "
              "-430 88 78 84 85 65 70 55 favourite\n");
    EXPECT_TRUE(read->stations->front()->refCon->isMutable);
    auto written = fullCollection();
    written->stateName = "GROUP";
    written->createStateCollections();
    support::expectWrittenAs("catalogue.STNPKG", written);
    EXPECT_EQ(described(*written->copyWithZone()), described(*read));
}

TEST(Packages, HoldNoCodeThatIsNoCharacter) {
    for (const auto& [stored, read] : std::vector<std::pair<double, int>>{
             {-129, 0}, {-128, -128}, {255, -1}, {256, 0}, {88.5, 0}}) {
        const auto bytes = platform::KeyedArchiver::archivedData(std::make_shared<support::Record>(
            "AviationWeatherStation", [number = stored](platform::KeyedArchiver& coder) {
                coder.encodeObject(platform::Number(number), "METAR");
            }));
        const auto station = platform::objectOf<AviationWeatherStation>(
            platform::KeyedUnarchiver::unarchive(*bytes, catalogue::archivedClasses()).root);
        ASSERT_TRUE(station);
        EXPECT_EQ(station->METAR, read) << stored;
        EXPECT_EQ(station->NEXRAD, 0) << "is absent";
    }
}

TEST(Packages, AbsentBrokenAndForeignFilesGiveNoCollection) {
    const support::TemporaryFolder folder;
    const auto path = folder / "a.STNPKG";
    EXPECT_FALSE(catalogue::readPackage(folder.path()));
    EXPECT_FALSE(platform::KeyedArchiver::archiveRootObject(
        std::shared_ptr<AviationWeatherStationCollection>(), path));
    EXPECT_FALSE(catalogue::readPackage(path));
    for (const platform::Value& other :
         {platform::Value(std::string("KDEN")), platform::Value(makeStation({"KDEN"}))}) {
        ASSERT_TRUE(platform::KeyedArchiver::archiveRootObject(other, path));
        EXPECT_FALSE(catalogue::readPackage(path));
    }
}

TEST(Packages, RunningOutOfMemoryLeavesNothingHalfRead) {
    const support::TemporaryFolder folder;
    const auto path = folder / "a.STNPKG";
    ASSERT_TRUE(platform::KeyedArchiver::archiveRootObject(fullCollection(), path));
    const auto isNothing = [](const auto& result) { EXPECT_FALSE(result); };
    EXPECT_GT(support::starve([&] { return catalogue::readPackage(path); }, isNothing), 50U);

    const auto list = folder.write(
        "list", "!\r\n\r\nREGION OF LONG NAME 1\r\nZZ S\u00C3O PAULO        SBSP  SAO   83780  "
                "23 32S  046 38W  802   X     T          7 BR\r\n");
    EXPECT_GT(support::starve([&] { return catalogue::readList(list); }, isNothing), 2U);
    support::FakeHost host;
    const auto parser = stationparser::initWithNSString(host.notificationCenter, host.log,
                                                        catalogue::readListFile(list));
    EXPECT_GT(support::starve(
                  [&] {
                      parser->parse();
                      return parser->theCollection();
                  },
                  isNothing),
              1U);
}

TEST(Packages, AreReadFromAnotherWriter) {
    const std::filesystem::path folder = NOSIG_SHARED_DATA "/archives";
    if (!std::filesystem::exists(folder)) {
        GTEST_SKIP() << "other writers' archives are not at " << folder;
    }
    const auto read = catalogue::readPackage(folder / "gs-1-favourite.bin");
    ASSERT_TRUE(read);
    EXPECT_EQ(described(*read),
              "1678307200250000 https://example.org/data/stations.txt 1\n"
              "'ALASKA''AK''STATION NUMBER 0''AAAA''AAA''US' 0 -0x1.68p+6 -0x1.68p+7 0 32 88 86 88 "
              "65 70 48 favourite\n");
}

} // namespace
