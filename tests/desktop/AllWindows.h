// SPDX-License-Identifier: MIT
#pragma once

#include "platform/archive/KeyedArchiver.h"
#include "tests/support/Reports.h"
#include "tests/support/RunningProgram.h"
#include "tests/support/Stations.h"

#include <QTableView>
#include <QTextEdit>

#include <utility>

/// Every window of the program on the offscreen platform's screen, which has 800 by 800 points and
/// gives each window a frame.
class AllWindows : public ::testing::Test, protected support::RunningProgram {
protected:
    AllWindows() {
        for (const char* file : {"resources/Stations.STNPKG", "support/MyStations.STNPKG"}) {
            EXPECT_TRUE(platform::KeyedArchiver::archiveRootObject(
                makeCollection({{"KJFK", "NEW YORK/JFK", "NEW YORK", 40.65, -73.78},
                                {"LLBG", "תל אביב", "ISRAEL", 32.01, 34.88}}),
                (fake.folder / file).string()));
        }
    }
    ~AllWindows() override {
        QApplication::setFont(font_);
        QApplication::setPalette(palette_);
        QApplication::setLayoutDirection(Qt::LeftToRight);
    }

    /// Starts the program, opens all windows including the station sheet, and returns them.
    QList<QWidget*> openAll() {
        start();
        for (const char* version : {"1.0", "1.1"}) {
            fake.bundle.info["CFBundleShortVersionString"] = version;
            delegate().showReleaseNotesOnce();
        }
        delegate().doHelp();
        delegate().doAbout();
        delegate().doUseShippedCatalogue();
        delegate().doBriefing();
        delegate().openMyStations();
        auto& mine = *window("SCMyStationsWindowController").findChild<QTableView*>();
        emit mine.activated(mine.model()->index(0, 0));
        QList<QWidget*> all;
        for (QWidget* one : QApplication::topLevelWidgets()) {
            if (one->isVisible()) {
                all.append(one);
            }
        }
        EXPECT_EQ(all.size(), 8);
        return all;
    }
    /// Selects a station whose reports come at once.
    void showReport() {
        child<QTableView>("table").selectRow(0);
        for (const auto& [kind, reply] : {std::pair("=metars", support::metarReply("KJFK")),
                                          std::pair("=TAFs", support::tafReply("KJFK", ""))}) {
            EXPECT_TRUE(fake.urlSessions.answer(kind, reply));
        }
        EXPECT_TRUE(QTest::qWaitFor([&] {
            fake.mainThread.run();
            return !child<QWidget>("reportTabs").findChildren<QTextEdit*>().last()->isHidden();
        }));
    }
    static void useFont(int points) {
        QFont font = QApplication::font();
        font.setPointSize(points);
        QApplication::setFont(font);
    }

private:
    QFont font_ = QApplication::font();
    QPalette palette_ = QApplication::palette();
};
