// SPDX-License-Identifier: MIT
#include "product/Addresses.h"
#include "tests/support/FakeViews.h"
#include "tests/support/RunningProgram.h"

#include <QDialog>
#include <QHeaderView>
#include <QPointer>
#include <QSplitter>
#include <QTextBrowser>
#include <QToolButton>

namespace {

/// The program with a catalogue and a package of My Stations.
class ProgramTest : public ::testing::Test, protected support::RunningProgram {
protected:
    ProgramTest() {
        setCatalogue({{"KJFK"}, {"KDEN"}});
        save(makeCollection({{"EDDF", "FRANKFURT", "GERMANY", 50.03, 8.57},
                             {"LS\u202eZH", "ZU\x1b[7mRICH", "SWITZERLAND", 47.46, 8.55}}),
             "support/MyStations.STNPKG");
        start();
    }

    QMainWindow& myStations() {
        delegate().openMyStations();
        return window("SCMyStationsWindowController");
    }
};

TEST_F(ProgramTest, EveryWindowCarriesTheMenus) {
    myStations();
    delegate().doHelp();
    delegate().doAbout();
    EXPECT_EQ(entry({"Stations", "Show favorites"}).shortcut(),
              QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_D));
    entry({"Stations", "Always Show Favorites' Weather"}, window("slibHelpWindow")).trigger();
    EXPECT_TRUE(entry({"Stations", "Always Show Favorites' Weather"}, myStations()).isChecked());
    entry({"Stations", "Make Favorite"}, myStations()).trigger();
    EXPECT_TRUE(entry({"Stations", "Unfavorite"}).isEnabled());
    EXPECT_EQ(delegate().sw->allFavorites().size(), 1U);

    // Chosen from the about window's own menu, it replaces that window by a new one.
    entry({"Help", "About Nosig"}, window("SCAboutWindowController")).trigger();
    const auto* before = delegate().ab.get();
    EXPECT_TRUE(QTest::qWaitFor([&] { return delegate().ab.get() != before; }));

    QAction& near =
        entry({"Stations", "Near the Selected Station", "Within 50 Miles"}, myStations());
    near.trigger();
    EXPECT_EQ(table().model()->rowCount(), 1);
    table().clearSelection();
    QApplication::processEvents();
    EXPECT_FALSE(entry({"Stations", "Unfavorite"}).isEnabled());
}

TEST_F(ProgramTest, AClosedWindowComesBackAsItWas) {
    QMainWindow& mine = myStations();
    mine.resize(700, 400);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&mine));
    QTest::keyClick(&mine, Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(mine.isVisible());
    stations().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&stations()));
    QTest::keyClick(&stations(), Qt::Key_2, Qt::ControlModifier);
    EXPECT_TRUE(mine.isVisible());
    EXPECT_EQ(&window("SCMyStationsWindowController"), &mine);
    EXPECT_EQ(mine.size(), QSize(700, 400));
    stations().close();
    entry({"Windows", "Stations"}, mine).trigger();
    EXPECT_TRUE(stations().isVisible());
}

TEST_F(ProgramTest, TheDelegateStartsShowsAndEndsTheMainWindow) {
    delegate().openStations();
    support::FakeButton saver, viewer;
    delegate().outlets.saver = &saver;
    delegate().outlets.viewer = &viewer;
    fake.userDefaults.setObject(platform::Number(1), "displayfavweather");
    delegate().applicationDidFinishLaunching();
    EXPECT_FALSE(saver.enabled || viewer.enabled);
    EXPECT_TRUE(entry({"Stations", "Always Show Favorites' Weather"}).isChecked());
    stations().close();
    delegate().showTble(makeCollection({{"EDDF"}}));
    EXPECT_TRUE(stations().isVisible());
    EXPECT_EQ(delegate().sw->workingCollection->stations->size(), 1U);
    delegate().sw->currentMapType = 3;
    delegate().applicationWillTerminate();
    EXPECT_EQ(platform::integerOf(fake.userDefaults.objectForKey("curmaptype")), 3);
}

TEST_F(ProgramTest, WindowsAreRememberedAcrossRuns) {
    const auto splitter = [] { return &child<QSplitter>("tableAndDetails"); };
    const auto header = [] { return table().horizontalHeader(); };
    stations().resize(760, 560);
    splitter()->setSizes({300, 460});
    const QList<int> sizes = splitter()->sizes();
    header()->resizeSection(1, 333);
    stations().close();
    stop();
    start();
    EXPECT_EQ(stations().size(), QSize(760, 560));
    EXPECT_EQ(splitter()->sizes(), sizes);
    EXPECT_EQ(header()->sectionSize(1), 333);
}

TEST_F(ProgramTest, MyStationsShowsItsStationsOnAMapAndOnASheet) {
    QMainWindow& mine = myStations();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&mine));
    auto& table = *mine.findChild<QTableView*>("mftable");
    ASSERT_EQ(table.model()->rowCount(), 2);
    table.setFocus();
    table.selectRow(1);
    const auto centre = [](QWidget& of, const char* name) {
        return dynamic_cast<desktop::MapView*>(of.findChild<QWidget*>(name))->region().centre;
    };
    EXPECT_NEAR(centre(mine, "mfmapV").latitude, 47.46, 1e-3);

    QTest::keyClick(&table, Qt::Key_Return);
    auto* sheet = mine.findChild<QDialog*>("SCWetherSheetController");
    ASSERT_NE(sheet, nullptr);
    EXPECT_TRUE(sheet->isModal());
    EXPECT_NEAR(centre(*sheet, "mapV").longitude, 8.55, 1e-3);
    EXPECT_TRUE(sheet->findChild<QLabel*>("stationLine")->text().startsWith("LSZH · ZU[7mRICH"));
    // Characters that could disguise the file's texts are shown nowhere.
    EXPECT_EQ(sheet->windowTitle(), "LSZH");
    EXPECT_EQ(table.model()->index(1, 2).data().toString(), "LSZH");
    const QPointer<QDialog> alive(sheet);
    QTest::keyClick(sheet, Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return alive.isNull(); }));
}

TEST_F(ProgramTest, TheReleaseNotesAreShownOnceAfterAnUpdate) {
    fake.folder.write("resources/Release Notes.rtf", R"({\rtf1 What is \b new\b0 .\par})");
    const std::pair<const char*, bool> starts[] = {
        {"1.0", false}, {"1.0", false}, {"1.1", true}, {"1.1", false}};
    for (const auto& [version, isNew] : starts) {
        fake.bundle.info["CFBundleShortVersionString"] = version;
        delegate().showReleaseNotesOnce();
        EXPECT_EQ(delegate().releaseNotes != nullptr, isNew);
        EXPECT_EQ(fake.userDefaults.objectForKey("windows/version"),
                  platform::Value(std::string(version)));
        if (isNew) {
            QMainWindow& notes = window("SLIBReleaseNotesWindowController");
            EXPECT_EQ(notes.findChild<QTextEdit*>("rlText")->toPlainText(), "What is new.");
            EXPECT_TRUE(QTest::qWaitForWindowActive(&notes));
            notes.close();
            entry({"Help", "Release Notes"}).trigger();
            EXPECT_TRUE(QTest::qWaitForWindowActive(&notes));
        }
        stop();
        start();
    }
}

TEST_F(ProgramTest, HelpFollowsLinksAndGoesBack) {
    fake.folder.write("resources/index.html", "<p>Contents <a href='two.html'>Two</a></p>");
    fake.folder.write("resources/two.html", "<p>The second page</p>");
    delegate().doHelp();
    QMainWindow& help = window("slibHelpWindow");
    auto& page = *help.findChild<QTextBrowser*>("theWebHelp");
    auto& back = *help.findChild<QToolButton*>("back");
    EXPECT_TRUE(page.toPlainText().startsWith("Contents"));
    EXPECT_FALSE(back.isEnabled());
    page.setFocus();
    QTest::keyClick(&page, Qt::Key_Tab);
    QTest::keyClick(&page, Qt::Key_Return);
    EXPECT_EQ(page.toPlainText(), "The second page");
    back.click();
    EXPECT_TRUE(page.toPlainText().startsWith("Contents"));
}

TEST_F(ProgramTest, ItsOwnCollectionIsSavedWhereASheetEndsWithOne) {
    delegate().masterCollection = makeCollection({{"KZZQ"}});
    fake.panels.answers.emplace_back(platform::URL::file((fake.folder / "own.list").string()));
    for (const int code : {0, 2, 1}) {
        delegate().zzsaveoptionsDidEnd_returnCode(code);
        EXPECT_EQ(std::filesystem::exists(fake.folder / "own.STNPKG"), code == 1);
    }
    EXPECT_EQ(identifiers(*delegate().workingCollection->stations),
              std::vector<std::string>{"KZZQ"});
}

TEST_F(ProgramTest, TheAboutWindowShowsTheVersionAndOpensTheContactAddresses) {
    fake.bundle.info["CFBundleShortVersionString"] = "1.0";
    delegate().doAbout();
    QMainWindow& about = window("SCAboutWindowController");
    EXPECT_EQ(about.findChild<QLabel*>("version")->text(), "Version 1.0");
    about.findChild<QPushButton*>("feedback")->click();
    about.findChild<QPushButton*>("website")->click();
    ASSERT_EQ(fake.workspace.opened.size(), 2U);
    EXPECT_EQ(QByteArray::fromPercentEncoding(fake.workspace.opened[0].c_str()).toStdString(),
              "mailto:" + std::string(product::addresses::feedback) +
                  "?subject=Nosig 1.0 feedback&body=What I did:\r\n\r\n"
                  "What I saw, and what I had expected:\r\n\r\n"
                  "My system and its desktop, such as Debian 12 with GNOME:\r\n\r\n"
                  "Attached (a picture of the window; the list or package concerned):\r\n");
    EXPECT_TRUE(fake.workspace.opened[0].find("?subject=Nosig%201.0%20feedback&") !=
                std::string::npos);
    EXPECT_EQ(fake.workspace.opened[1], product::addresses::productPage);
}

} // namespace
