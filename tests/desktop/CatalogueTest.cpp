// SPDX-License-Identifier: MIT
#include "catalogue/own/OwnCatalogue.h"
#include "catalogue/own/TableUpdate.h"
#include "tests/support/Gzip.h"
#include "tests/support/ServedProgram.h"

#include <QProgressBar>
#include <fmt/chrono.h>
#include <fmt/format.h>
#include <gmock/gmock.h>

#include <mutex>
#include <set>
#include <span>

namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* tableDate = "Fri, 20 Nov 2026 06:00:00 GMT";

std::string row(const std::string& icao, const std::string& site, double latitude,
                const std::string& types = R"("METAR","TAF")") {
    return fmt::format(R"({{"icaoId":"{}","site":"{}","lat":{},"lon":8.5,"elev":100,)"
                       R"("country":"DE","siteType":[{}]}})",
                       icao, site, latitude, types);
}

std::string tableOf(const std::vector<std::string>& rows) {
    return fmt::format("[{}]", fmt::join(rows, ","));
}

std::vector<std::string> oldRows() {
    std::vector<std::string> rows{row("EDAA", "Alpha", 50), row("EDBB", "Bravo", 51),
                                  row("EDGG", "Golf", 52)};
    for (char c = 'J'; c <= 'Q'; ++c) {
        rows.push_back(row(std::string("EDZ") + c, std::string("Zulu ") + c, 40));
    }
    return rows;
}

/// EDGG is gone, EDNN new, EDBB moved and EDZQ renamed.
std::vector<std::string> newRows() {
    auto rows = oldRows();
    rows[1] = row("EDBB", "Bravo", 51.0001);
    rows[2] = row("EDNN", "November", 52);
    rows.back() = row("EDZQ", "Quebec", 40);
    return rows;
}

platform::Data bytesOf(const std::string& text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

class CatalogueTest : public support::ServedProgram {
protected:
    struct Answer {
        int status = 200;
        /// Of a redirection, the place that it leads to.
        std::string body;
    };

    CatalogueTest()
        : ServedProgram([this](const auto& request, auto& response) { reply(request, response); }) {
        save(catalogue::updateFromTable(bytesOf(tableOf(oldRows())), {}, nullptr, fake.log)
                 .collection,
             "resources/Stations.STNPKG");
        fake.bundle.replacement = [this](std::string_view name) { return own.replacementOf(name); };
    }

    void answer(Answer next) {
        const std::scoped_lock lock(mutex_);
        answer_ = std::move(next);
    }
    static QAction& entry(const char* title) { return RunningProgram::entry({"Stations", title}); }
    /// Chooses Update Catalogue and returns what the program says in the end.
    std::string updated() {
        entry("Update Catalogue").trigger();
        EXPECT_TRUE(part<QPushButton>("stop").isVisible());
        await("the end of the update", [this] { return !delegate().keeper->isUpdating(); });
        EXPECT_FALSE(part<QPushButton>("stop").isVisible());
        return words();
    }
    static std::string words() { return part<QLabel>("words").text().toStdString(); }
    template <typename T>
    static T& part(const char* name) {
        return *window("CatalogueWindow").findChild<T*>(name);
    }
    /// In alphabetical order, favourites with a star.
    std::string listed() {
        std::multiset<std::string> all;
        for (const auto& station : *delegate().sw->workingCollection->stations) {
            all.insert(*station->ICAO + (station->isFavorite() ? "* " : " "));
        }
        return fmt::format("{}", fmt::join(all, ""));
    }

    catalogue::OwnCatalogue own{fake.host};
    static constexpr const char* oldList =
        "EDAA EDBB EDGG EDZJ EDZK EDZL EDZM EDZN EDZO EDZP EDZQ ";

private:
    void reply(const httplib::Request& request, httplib::Response& response) {
        if (request.path != "/data/cache/stations.cache.json.gz") {
            return;
        }
        Answer answer;
        {
            const std::scoped_lock lock(mutex_);
            answer = answer_;
        }
        server.gates.pass("table");
        if (request.get_header_value("If-Modified-Since") == tableDate) {
            response.status = 304;
        } else if (answer.status == 302) {
            response.set_redirect(answer.body);
        } else {
            response.status = answer.status;
            response.set_header("Last-Modified", tableDate);
            response.set_content(answer.body, "application/gzip");
        }
    }

    std::mutex mutex_;
    Answer answer_;
};

TEST_F(CatalogueTest, AnUpdateIsShownKeptAndToldAndCanBeUndone) {
    server.gates.openAll();
    ASSERT_EQ(listed(), oldList);
    for (const int one : {0, 2}) {
        table().selectRow(one);
        delegate().sw->favMenuItem();
    }
    table().selectRow(1);
    EXPECT_FALSE(entry("Use Shipped Catalogue").isEnabled());
    answer({200, support::gzip(tableOf(newRows()))});
    // Makes the window that shows the words; asked once more, the program goes on as it was.
    entry("Update Catalogue").trigger();
    std::string said;
    auto& keeper = *delegate().keeper;
    keeper.changed = [&said, &keeper, shown = keeper.changed] {
        said += keeper.words() + "\n";
        shown();
    };
    EXPECT_EQ(updated(), "1 new, 1 gone, 2 moved or renamed, edition of 20 November 2026. It lacks "
                         "these favorites, which are kept for when it has them again: EDGG GOLF.");
    EXPECT_THAT(said, testing::AllOf(StartsWith("Fetching the table of stations: 0 KB…\n"),
                                     HasSubstr("\nMaking the catalogue…\n")));
    const std::string newList = "EDAA* EDBB EDNN EDZJ EDZK EDZL EDZM EDZN EDZO EDZP EDZQ ";
    EXPECT_EQ(listed(), newList);
    EXPECT_EQ(selected(), "EDBB");
    EXPECT_EQ(delegate().sw->selectedStation->latitude, 51.0001);
    EXPECT_EQ(delegate().sw->nowSelection, table().selectionModel()->currentIndex().row());
    EXPECT_TRUE(std::filesystem::exists(fake.folder / "support/nosig/own/Stations.STNPKG"));

    // It is there after a new start, asks only for a newer table, and keeps no marks of its own.
    end();
    begin();
    EXPECT_EQ(listed(), newList);
    EXPECT_FALSE(own.inUse()->stations->front()->isFavorite());
    answer({404, "for whoever asks for any table"});
    EXPECT_EQ(updated(), "There is no newer table of stations than that of 20 November 2026.");

    entry("Use Shipped Catalogue").trigger();
    EXPECT_EQ(words(), "The catalogue that came with Nosig is in use again.");
    EXPECT_EQ(listed(), "EDAA* EDBB EDGG* EDZJ EDZK EDZL EDZM EDZN EDZO EDZP EDZQ ");
    EXPECT_FALSE(entry("Use Shipped Catalogue").isEnabled());
    answer({200, support::gzip(tableOf(newRows()))});
    EXPECT_THAT(updated(), StartsWith("1 new")) << "it asks again for what is no longer kept";
}

TEST_F(CatalogueTest, WhatFailsChangesNothingAndSaysWhy) {
    server.gates.openAll();
    const std::string whole = support::gzip(tableOf(newRows()));
    auto fewer = newRows();
    fewer.resize(8);
    auto withoutTafs = newRows();
    for (std::size_t i = 0; i < 3; ++i) {
        withoutTafs[i] = row(fmt::format("EDY{}", i), "Yankee", 50, R"("METAR")");
    }
    const std::string unreached =
        "The weather service cannot be reached, or did not send its table whole";
    const std::string damaged = "The service's table is cut short, damaged or too large";
    const struct {
        Answer answer;
        std::string words;
    } rows[] = {
        {{404, "<html>nicht gefunden</html>"},
         "The weather service has no table of stations (status 404)"},
        {{304, ""}, "The weather service has no table of stations (status 304)"},
        {{302, "http://localhost/elsewhere"}, unreached},
        {{200, whole.substr(0, whole.size() / 2)}, damaged},
        {{200, support::gzip(std::string(40 << 20, ' '))}, damaged},
        {{200, "<html>"}, "The service's table is no table of stations"},
        {{200, std::string(17 << 20, ' ')}, unreached},
        {{200, support::gzip(tableOf(fewer))},
         "The service's table has only 8 stations, where there were 11"},
        {{200, support::gzip(tableOf(withoutTafs))},
         "The service's table has only 8 stations with TAFs, where there were 11"},
    };
    for (const auto& one : rows) {
        answer(one.answer);
        EXPECT_EQ(updated(), one.words + ". The catalogue stays as it is.");
        EXPECT_EQ(listed(), oldList);
        EXPECT_FALSE(own.isThere());
    }
    std::filesystem::create_directories(fake.folder / "support/nosig");
    fake.folder.write("support/nosig/own", "in the way");
    answer({200, whole});
    EXPECT_EQ(updated(), "The new catalogue cannot be written. The catalogue stays as it is.");
    EXPECT_EQ(listed(), oldList);
}

TEST_F(CatalogueTest, AStoppedUpdateNeverHappens) {
    answer({200, support::gzip(tableOf(newRows()))});
    entry("Update Catalogue").trigger();
    EXPECT_TRUE(part<QProgressBar>("working").isVisible());
    EXPECT_EQ(words(), "Asking the weather service for its table of stations…");
    ASSERT_TRUE(server.waitForTargets(1));
    entry("Update Catalogue").trigger();
    part<QPushButton>("stop").click();
    EXPECT_EQ(words(), "Stopped. The catalogue stays as it is.");
    EXPECT_FALSE(part<QProgressBar>("working").isVisible());
    server.gates.open("table");
    await("the end of every request", [this] { return sessions->openRequests() == 0; });
    EXPECT_EQ(words(), "Stopped. The catalogue stays as it is.");
    answer({404, ""});
    EXPECT_THAT(updated(), HasSubstr("404"));
    EXPECT_EQ(listed(), oldList);
    EXPECT_FALSE(own.isThere());
}

TEST(TableUpdate, NamesAsManyStationsAsASentenceHolds) {
    const auto names = [](std::size_t count) {
        return catalogue::namesInWords(
            StationArray(count, makeStation({"EDXA", "X-RAY           "})));
    };
    EXPECT_EQ(names(1), "EDXA X-RAY");
    const std::string five = "EDXA X-RAY, EDXA X-RAY, EDXA X-RAY, EDXA X-RAY, EDXA X-RAY";
    EXPECT_EQ(names(5), five);
    EXPECT_EQ(names(6), five + " and 1 more");
}

TEST(TableUpdate, NamesEachMonth) {
    for (int month = 1; month <= 12; ++month) {
        const std::chrono::sys_days day(std::chrono::year(2026) / month / 19);
        EXPECT_EQ(catalogue::dayInWords(day), fmt::format("{:%d %B %Y}", day));
    }
}

TEST_F(CatalogueTest, AnOpenedListCanBecomeTheCatalogue) {
    EXPECT_FALSE(entry("Use as My Catalogue…").isEnabled());
    openList(fake.folder.write("mine.txt",
                               "! mine\n\nSOMEWHERE 1\nZZ SAMPLE FIELD     KZZQ ZZQ   72999   "
                               "39 52N  104 40W 1656   X     T     A    7 US\n"));
    table().selectRow(0);
    delegate().sw->favMenuItem();
    EXPECT_EQ(listed(), "KZZQ* ");
    entry("Use as My Catalogue…").trigger();
    EXPECT_EQ(words(), "Use the opened list as your catalogue? Nosig then shows its stations (1) "
                       "whenever it starts, until you update the catalogue or choose Use Shipped "
                       "Catalogue.");
    EXPECT_FALSE(own.isThere());
    part<QPushButton>("agree").click();
    EXPECT_EQ(words(), "These stations are your catalogue now.");
    EXPECT_FALSE(part<QPushButton>("agree").isVisible());
    EXPECT_FALSE(own.inUse()->stations->front()->isFavorite()) << "marks have a file of their own";
    end();
    begin();
    EXPECT_EQ(listed(), "KZZQ* ");
    // One that cannot be read is set aside, and the shipped one takes its place.
    fake.folder.write("support/nosig/own/Stations.STNPKG", "damaged");
    end();
    begin();
    EXPECT_EQ(listed(), oldList);
    EXPECT_THAT(fake.log.lines(), testing::Contains(HasSubstr("is now called")).Times(1));
    EXPECT_FALSE(entry("Use Shipped Catalogue").isEnabled());
}

} // namespace
