// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"
#include "app/SLIBReleaseNotesWindowController.h"
#include "catalogue/Packages.h"
#include "platform/KeyedArchiver.h"
#include "tests/support/FakeHost.h"
#include "tests/support/FakeViews.h"
#include "tests/support/Stations.h"

#include <gtest/gtest.h>

namespace {

using Told = std::vector<std::string>;

/// Windows that note what happens to them.
class FakeWindows final : public app::Windows {
public:
    std::unique_ptr<platform::Window> stationWindow(SCStationWindowController& made) override {
        EXPECT_EQ(made.windowNibName(), "SCStationWindowController");
        made.outlets.table = &table;
        return window("stations");
    }
    std::unique_ptr<platform::Window>
    myStationsWindow(SCMyStationsWindowController& made) override {
        made.outlets.mftable = &mftable;
        return window("my stations");
    }
    std::unique_ptr<platform::Window> aboutWindow(SCAboutWindowController& /*made*/) override {
        return window("about");
    }
    std::unique_ptr<platform::Window> helpWindow(slibHelpWindow& made) override {
        made.outlets.theWebHelp = &page;
        return window("help");
    }
    std::unique_ptr<platform::Window>
    releaseNotesWindow(SLIBReleaseNotesWindowController& made) override {
        made.outlets.rlText = &notes;
        return window("notes");
    }

    Told take() { return std::exchange(told, {}); }

    support::FakeTable table;
    support::FakeTable mftable;
    support::FakeWebView page;
    support::FakeRichTextView notes;
    Told told;

private:
    struct Noting final : platform::Window {
        Noting(std::string label, Told& log) : name(std::move(label)), told(log) {}
        ~Noting() override { told.push_back(name + " gone"); }
        void showWindow() override { told.push_back(name + " shown"); }
        void makeKey() override { told.push_back(name + " key"); }
        std::string name;
        Told& told;
    };
    std::unique_ptr<platform::Window> window(std::string name) {
        told.push_back(name + " made");
        return std::make_unique<Noting>(std::move(name), told);
    }
};

class Delegate : public testing::Test {
protected:
    support::FakeHost host;
    FakeWindows windows;
    support::FakeMenuItem favwe;
    support::FakeButton saver, viewer;
    AppDelegate delegate{host.host, windows};
};

TEST_F(Delegate, StartsAndEndsWithTheStations) {
    delegate.applicationWillTerminate();
    delegate.openStations();
    EXPECT_TRUE(windows.take().empty());
    ASSERT_TRUE(platform::KeyedArchiver::archiveRootObject(
        makeCollection({{"KJFK"}, {"KDEN"}}), host.bundle.resources + "/Stations.STNPKG"));
    host.userDefaults.setObject(platform::Number(std::int64_t{1}), "displayfavweather");
    delegate.outlets = {.saver = &saver, .viewer = &viewer, .favwe = &favwe};
    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(windows.take(), (Told{"stations made", "stations shown", "stations key"}));
    EXPECT_FALSE(saver.enabled);
    EXPECT_FALSE(viewer.enabled);
    EXPECT_TRUE(favwe.on);
    EXPECT_EQ(windows.table.rows, 2);

    delegate.showTble(makeCollection({{"EDDF"}}));
    EXPECT_EQ(windows.take(), (Told{"stations shown", "stations key"}));
    EXPECT_EQ(delegate.sw->numberOfRowsInTableView(windows.table), 1);
    delegate.sw->currentMapType = 3;
    delegate.applicationWillTerminate();
    EXPECT_EQ(platform::integerOf(host.userDefaults.objectForKey("curmaptype")), 3);

    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(windows.take(),
              (Told{"stations gone", "stations made", "stations shown", "stations key"}));
}

TEST_F(Delegate, MakesEachWindowOnceButAboutAnew) {
    host.folder.write("resources/index.html", "<p>Help</p>");
    for (const bool isFirst : {true, false}) {
        SCOPED_TRACE(isFirst);
        const auto expected = [&](const std::string& name) {
            return isFirst ? Told{name + " made", name + " shown", name + " key"}
                           : Told{name + " shown", name + " key"};
        };
        delegate.openMyStations();
        EXPECT_EQ(windows.take(), expected("my stations"));
        delegate.doHelp();
        EXPECT_EQ(windows.take(), expected("help"));
        delegate.doReleaseNotes();
        EXPECT_EQ(windows.take(),
                  isFirst ? (Told{"notes made", "notes shown", "notes shown", "notes key"})
                          : (Told{"notes shown", "notes key"}));
        const auto before = delegate.ab;
        delegate.doAbout();
        EXPECT_EQ(windows.take(),
                  isFirst ? expected("about")
                          : (Told{"about gone", "about made", "about shown", "about key"}));
        EXPECT_NE(delegate.ab, before);
    }
    EXPECT_EQ(windows.page.loaded,
              Told{platform::URL::file(host.bundle.resources + "/index.html").text});
    EXPECT_EQ(windows.mftable.widths.size(), 16U);
}

TEST_F(Delegate, SavesUnderAForcedExtension) {
    delegate.masterCollection = makeCollection({{"KJFK"}});
    const auto file = [this](const char* name) { return (host.folder / name).string(); };
    for (const int code : {0, 2, -1}) {
        delegate.zzsaveoptionsDidEnd_returnCode(code);
    }
    EXPECT_EQ(host.panels.timesAsked, 0);
    delegate.zzsaveoptionsDidEnd_returnCode(1);
    EXPECT_EQ(host.panels.timesAsked, 1) << "and cancelled";
    for (const auto& [chosen, written] :
         {std::pair("one.txt", "one.STNPKG"), std::pair("two", "two.STNPKG"),
          std::pair("a.b.STNPKG", "a.b.STNPKG")}) {
        host.panels.answers.emplace_back(platform::URL::file(file(chosen)));
        delegate.innerSave();
        const auto saved = catalogue::readPackage(file(written));
        ASSERT_TRUE(saved) << written;
        EXPECT_EQ(identifiers(*saved->stations), Told{"KJFK"});
    }
    delegate.masterCollection = nullptr;
    host.panels.answers.emplace_back(platform::URL::file(file("one")));
    delegate.innerSave();
    EXPECT_TRUE(catalogue::readPackage(file("one.STNPKG"))) << "nothing writes nothing";
}

TEST(SaveOptions, AreRecordedAndEndTheSheet) {
    support::FakeCheckBox box;
    support::FakeSheet sheet;
    SCSaveOptionsSheetController options;
    options.saveCliked();
    options.outlets.window = &sheet;
    box.on = true;
    options.usonlyclicked(box);
    EXPECT_TRUE(options.usOnly && !options.noNames);
    options.nonamesclicked(box);
    box.on = false;
    options.usonlyclicked(box);
    EXPECT_TRUE(!options.usOnly && options.noNames);
    options.saveCliked();
    options.cancelClicked();
    EXPECT_EQ(sheet.told, (Told{"ordered out", "ended with 1", "ordered out", "ended with 0"}));
}

TEST(ReleaseNotes, AreShownBeforeTheyAreRead) {
    support::FakeHost host;
    FakeWindows windows;
    {
        const auto notes = SLIBReleaseNotesWindowController::initWithWindowNibName(
            host.host, windows, "SLIBReleaseNotesWindowController");
        EXPECT_EQ(windows.notes.read, host.bundle.resources + "/Release Notes.rtf");
    }
    EXPECT_EQ(windows.take(), (Told{"notes made", "notes shown", "notes gone"}));
}

} // namespace
