// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/Reports.h"
#include "tests/support/RunningProgram.h"

#include <QTextEdit>

/// Every window of the program on the offscreen platform's screen, which has 800 by 800 points and
/// gives each window a frame.
class AllWindows : public ::testing::Test, protected support::RunningProgram {
protected:
    AllWindows() {
        for (const char* file : {"resources/Stations.STNPKG", "support/MyStations.STNPKG"}) {
            save(makeCollection({{"KJFK", "NEW YORK/JFK", "NEW YORK", 40.65, -73.78},
                                 {"LLBG", "תל אביב", "ISRAEL", 32.01, 34.88}}),
                 file);
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
        table().selectRow(0);
        EXPECT_TRUE(fake.urlSessions.answer("=metars", support::metarReply("KJFK")));
        EXPECT_TRUE(fake.urlSessions.answer("=TAFs", support::tafReply("KJFK", "")));
        await("the reports", [] {
            return !child<QWidget>("reportTabs").findChildren<QTextEdit*>().last()->isHidden();
        });
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
