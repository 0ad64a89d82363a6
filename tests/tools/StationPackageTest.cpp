// SPDX-License-Identifier: MIT
#include "platform/archive/KeyedArchiver.h"
#include "tests/support/Record.h"
#include "tests/support/Stations.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <utility>
#include <vector>

using namespace std::string_literals;
using platform::KeyedArchiver;
using platform::Number;
using platform::Value;
using support::Record;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const std::string station =
    "ZZ SAMPLE FIELD     KZZQ ZZQ   72999   39 52N  104 40W 1656   X     T     A    7 US";
const std::string list = "! a list\n\nSOMEWHERE 1\n" + station + "\n";

using Write = std::function<void(KeyedArchiver&)>;

struct Result {
    /// -1 if a signal ended the tool.
    int status = -1;
    /// Of errors, "> " stands for the name of the tool and that of the test's folder.
    std::string output, errors;
};

class StationPackage : public testing::Test {
protected:
    /// Runs the tool itself. If `output` is given, standard output goes there, not into the result.
    Result run(const std::vector<std::string>& words, const char* output = nullptr) {
        std::string command = NOSIG_BINARY_DIR "/bin/stationpackage";
        for (const auto& word : words) {
            command += " '" + word + "'";
        }
        const auto out = output ? output : (folder / "output").string();
        command += " >" + out + " 2>" + (folder / "errors").string();
        const int status = std::system(command.c_str());
        std::string errors = folder.read("errors");
        const auto before = "stationpackage: " + folder.path().string() + "/";
        for (auto at = errors.find(before); at != errors.npos; at = errors.find(before)) {
            errors.replace(at, before.size(), "> ");
        }
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output ? "" : folder.read("output"),
                errors};
    }
    [[nodiscard]] std::string in(const char* name) const { return (folder / name).string(); }

    std::string written(const Value& root, const char* name = "a.STNPKG") {
        EXPECT_TRUE(KeyedArchiver::archiveRootObject(root, in(name)));
        return in(name);
    }

    /// A package of one station. `ofCollection` adds fields to the collection; `ofStation` writes
    /// all fields of the station.
    std::string package(const Write& ofCollection, const Write& ofStation) {
        const Value one = std::make_shared<Record>("AviationWeatherStation", ofStation);
        const Value stations = std::make_shared<platform::Array>(platform::Array{true, {one}});
        const auto write = [&](KeyedArchiver& coder) {
            coder.encodeObject(Number(1), "numberOfStations");
            coder.encodeObject(stations, "stations");
            ofCollection(coder);
        };
        return written(std::make_shared<Record>("AviationWeatherStationCollection", write));
    }

    support::TemporaryFolder folder;
};

TEST_F(StationPackage, UnknownCommandsPrintTheUsage) {
    for (const auto& words : std::vector<std::vector<std::string>>{
             {}, {"make"}, {"make", "list"}, {"print"}, {"check", "a", "b"}, {"list", "a"}}) {
        const auto result = run(words);
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.errors, testing::StartsWith("usage: stationpackage make LIST FILE"));
        EXPECT_THAT(result.output, IsEmpty());
    }
    const auto help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.output, HasSubstr("check FILE"));
}

TEST_F(StationPackage, MakesPackagesAndReportsWhatItRealigned) {
    std::string shifted;
    for (int i = 0; i < 20; ++i) {
        shifted += "ZZ SAMPLE FIELD     KZZQ  ZZQ   72999  39 52N  104 40W 1656   X     T     A    "
                   "7 US\n";
    }
    const struct {
        const char* what;
        std::string list;
        int status;
        std::string output, errors;
        const char* file = "made.STNPKG";
    } rows[] = {
        {"a list", list, 0, "stations: 1, lines realigned: 0, lines that do not fit: 0\n", ""},
        {"the public form",
         "!\n\nSOMEWHERE 1\n" + shifted + station + "\n" + std::string(83, 'x') + "\n", 0,
         "stations: 22, lines realigned: 20, lines that do not fit: 1\n", ""},
        {"a station outside the globe",
         list + station + "\n" +
             std::string(station).replace(20, 21, "K\xC2\x9BZ ZZQ   72999   99") + "\n",
         0, "stations: 2, lines realigned: 0, lines that do not fit: 0\n", "KZ\n"},
        {"no station", "!\n", 1, "", "> list: holds no station\n"},
        {"cut", list + "ZZ SAM", 1, "", "Errored out\n> list: ends unexpectedly\n"},
        {"no folder", list, 1, "", "> no/made: cannot be written\n", "no/made"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const auto path = folder.write("list", row.list).string();
        const auto result = run({"make", path, in(row.file)});
        EXPECT_EQ(result.status, row.status);
        EXPECT_EQ(result.output, row.output);
        EXPECT_EQ(result.errors, row.errors);
        if (row.status == 0) {
            EXPECT_THAT(run({"print", in(row.file)}).output,
                        HasSubstr("\nSOMEWHERE \tZZ\tSAMPLE FIELD    \tKZZQ\tZZQ \t72999\t"
                                  "39.86666666666667\t-104.66666666666667\t1656\tX\t \tT\t \tA\t"
                                  " \t7\tUS\t\n"));
        }
    }
    const auto unread = run({"make", in("none"), "x"});
    EXPECT_EQ(unread.errors, "> none: cannot be read\n");
    EXPECT_EQ(unread.status, 1);
}

TEST_F(StationPackage, PrintsOneLinePerStationWhateverItsTextsContain) {
    auto collection = makeCollection({{"K\x1b[2J", "a\tb\\\n\u009b", "\u202eCØ", 1, -2}});
    collection->fromURL = platform::URL{"file:///\x7f"};
    collection->lastUpdated = platform::Date(std::chrono::seconds(1'700'000'000));
    collection->stations->front()->METAR = '\x1b';
    collection->stations->front()->setFavorite(true);
    const auto file = written(collection);
    const auto result = run({"print", file});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(
        result.output,
        "numberOfStations=1\tlastUpdated=2023-11-14T22:13:20Z\tfromURL=file:///\\u007f\t"
        "stations=1\n"
        "\\u202eC\xC3\x98\t\ta\\tb\\\\\\n\\u009b\tK\\u001b[2J\t\t0\t1\t-2\t0\t\\u001b\t\t\t\t\t\t"
        "\t\tRQFavorite=1\n");
    const auto full = run({"print", file}, "/dev/full");
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(full.errors, "stationpackage: standard output: cannot be written\n");
    folder.write("text", list);
    written("KDEN"s, "other");
    for (const char* name : {"none", "text", "other"}) {
        const auto refused = run({"print", in(name)});
        EXPECT_EQ(refused.status, 1);
        EXPECT_EQ(refused.errors, "> "s + name + ": is no station package\n");
    }
}

TEST_F(StationPackage, ChecksEveryField) {
    const auto text = Value("text"s);
    const auto number = Value(Number(5));
    const auto dictionary = [](const Value& mark) {
        return Value(std::make_shared<platform::Dictionary>(
            platform::Dictionary{true, {{"RQFavorite", mark}}}));
    };
    const struct {
        const char* key;
        Value value;
        /// Empty for a sound field.
        std::string fault;
        bool isOfCollection = false;
    } rows[] = {
        {"stateName", number, "is not text"},
        {"SYNOPIndex", text, "is not an integer of 64 bits"},
        {"latitude", text, "is not a real number"},
        {"plottingPriority", Number(256), "is no character"},
        {"METAR", Number(-128), ""},
        {"refCon", text, "is no dictionary"},
        {"refCon", dictionary(text), "holds a favorite mark that is no number"},
        {"lastUpdated", text, "is no date", true},
        {"fromURL", text, "is no address", true},
        {"numberOfStations", Number(1.5), "is no whole number", true},
        {"stations", dictionary(number), "is no array", true},
        {"stations", std::make_shared<platform::Array>(platform::Array{true, {text}}),
         "holds an element that is no station", true},
    };
    const auto nothing = [](KeyedArchiver&) {};
    EXPECT_EQ(run({"check", package(nothing, nothing)}).errors, "");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.key + ": "s + row.fault);
        const auto odd = [&](KeyedArchiver& coder) { coder.encodeObject(row.value, row.key); };
        const auto file = row.isOfCollection ? package(odd, nothing) : package(nothing, odd);
        const auto result = run({"check", file});
        EXPECT_EQ(result.status, row.fault.empty() ? 0 : 1);
        EXPECT_EQ(result.errors.empty(), row.fault.empty()) << result.errors;
        const auto owner =
            row.isOfCollection ? "AviationWeatherStationCollection" : "AviationWeatherStation";
        const auto expected =
            "> a.STNPKG: \""s + row.key + "\" of " + owner + " " + row.fault + ".\n";
        EXPECT_TRUE(row.fault.empty() || result.errors.starts_with(expected)) << result.errors;
        EXPECT_EQ(run({"print", file}).status, 0) << "reading must go on without the field";
    }
}

TEST_F(StationPackage, ReportsEveryFaultOfAFile) {
    written(makeCollection({{"KAAA"}, {"KBBB"}}), "sound");
    auto wrong = makeCollection({{"KAAA"}, {"K\x1b", {}, {}, 91, 0}});
    wrong->numberOfStations = 7;
    written(wrong, "wr\x1b]0;ong");
    package([](KeyedArchiver& coder) { coder.encodeObject("x"s, "fromURL"); },
            [](KeyedArchiver& coder) { coder.encodeObject("x"s, "METAR"); });
    const auto nameless = makeCollection({});
    nameless->stations = nullptr;
    written(nameless, "nameless");
    written("KDEN"s, "foreign");
    folder.write("text", list);
    std::filesystem::create_directory(folder / "folder");
    const std::pair<const char*, std::string> rows[] = {
        {"sound", ""},
        {"wr\x1b]0;ong", "> wr\\u001b]0;ong: says 7 stations, holds 2\n"
                         "> wr\\u001b]0;ong: station 2 (K\\u001b) lies outside the globe\n"},
        {"a.STNPKG",
         "> a.STNPKG: \"fromURL\" of AviationWeatherStationCollection is no address.\n"
         "> a.STNPKG: \"METAR\" of AviationWeatherStation is not a number of at most 64 "
         "bits.\n"},
        {"nameless", "> nameless: holds no array of stations\n"},
        {"foreign", "> foreign: holds no station collection\n"},
        {"text", "> text: The file is not a binary property list.\n"},
        {"none", "> none: The file does not exist.\n"},
        {"folder", "> folder: The file cannot be read or is too large.\n"},
    };
    for (const auto& [name, errors] : rows) {
        SCOPED_TRACE(name);
        const auto result = run({"check", in(name)});
        EXPECT_EQ(result.status, errors.empty() ? 0 : 1);
        EXPECT_EQ(result.errors, errors);
        EXPECT_EQ(result.output, "");
    }
}

} // namespace
