// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"
#include "tests/desktop/AllWindows.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QButtonGroup>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QToolButton>

#include <functional>
#include <set>

namespace {

/// What assistive technology is told and can read.
class AccessTest : public AllWindows {
protected:
    static QAccessibleInterface& spoken(QObject& object) {
        QAccessibleInterface* found = QAccessible::queryAccessibleInterface(&object);
        if (found == nullptr) {
            throw std::runtime_error("no accessible interface");
        }
        return *found;
    }
    static QString name(QAccessibleInterface& one) { return one.text(QAccessible::Name); }

    /// Checks all controls below `parent` except the cells of tables, and returns their number.
    static int expectNames(QAccessibleInterface& parent) {
        int controls = 0;
        std::set<QString> names;
        for (int i = 0; i < parent.childCount(); ++i) {
            QAccessibleInterface* one = parent.child(i);
            if (one == nullptr) {
                continue;
            }
            const QAccessible::State state = one->state();
            if (state.focusable && !state.invisible) {
                ++controls;
                SCOPED_TRACE(one->object() ? one->object()->objectName().toStdString() : "");
                EXPECT_FALSE(name(*one).isEmpty()) << one->role();
                EXPECT_TRUE(names.insert(name(*one)).second) << name(*one).toStdString();
            }
            if (one->role() != QAccessible::Table) {
                controls += expectNames(*one);
            }
        }
        return controls;
    }
};

TEST_F(AccessTest, EveryControlOfEveryWindowHasANameOfItsOwn) {
    const QList<QWidget*> all = openAll();
    showReport();
    for (QWidget* one : all) {
        SCOPED_TRACE(one->objectName().toStdString());
        EXPECT_GE(expectNames(spoken(*one)), 1);
    }
}

TEST_F(AccessTest, TheSelectedStationIsRead) {
    openAll();
    child<QTableView>("table").selectRow(0);
    // A label's name is its text, whose changes the toolkit announces by itself.
    const QString line = name(spoken(child<QLabel>("stationLine")));
    EXPECT_TRUE(line.startsWith(QStringLiteral("KJFK · NEW YORK/JFK"))) << line.toStdString();
    auto& sheet = *window("SCMyStationsWindowController").findChild<QDialog*>();
    EXPECT_EQ(name(spoken(*sheet.findChild<QLabel*>())), line);
}

TEST_F(AccessTest, ExclusiveButtonsAreANamedGroup) {
    start();
    struct {
        const char* group;
        const char* name;
        int buttons;
        const char* next;
    } const groups[] = {{"searchModes", "Search in", 3, "searchName"},
                        {"mapTypes", "Map type", 5, "mapHybrid"}};
    for (const auto& one : groups) {
        SCOPED_TRACE(one.group);
        QAccessibleInterface& group = spoken(child<QWidget>(one.group));
        EXPECT_EQ(group.role(), QAccessible::Grouping);
        EXPECT_EQ(name(group), QString::fromUtf8(one.name));
        ASSERT_EQ(group.childCount(), one.buttons);
        QAbstractButton* down = nullptr;
        const auto look = [&] {
            for (int i = 0; i < one.buttons; ++i) {
                EXPECT_EQ(group.child(i)->role(), QAccessible::RadioButton);
                if (group.child(i)->state().checked) {
                    down = qobject_cast<QAbstractButton*>(group.child(i)->object());
                }
            }
        };
        look();
        ASSERT_NE(down, nullptr);
        QSignalSpy sent(down->group(), &QButtonGroup::idClicked);
        down->setFocus();
        QTest::keyClick(down, Qt::Key_Right);
        look();
        EXPECT_EQ(down->objectName(), QString::fromUtf8(one.next));
        EXPECT_TRUE(down->hasFocus());
        EXPECT_EQ(sent.size(), 1);
    }
}

TEST_F(AccessTest, AMapTypeIsSentAtEveryClick) {
    start();
    for (int click = 0; click < 2; ++click) {
        delegate().sw->currentMapType = 99;
        QTest::mouseClick(&child<QAbstractButton>("mapSatellite"), Qt::LeftButton);
        EXPECT_EQ(delegate().sw->currentMapType, 1);
    }
}

TEST_F(AccessTest, ShowAllHidesTheSearchFieldsClearButton) {
    start();
    auto& search = child<QLineEdit>("sf");
    auto& clear = *search.findChild<QToolButton*>();
    QTest::keyClicks(&search, QStringLiteral("k"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return clear.isVisible(); }));
    QTest::mouseClick(&child<QAbstractButton>("showAll"), Qt::LeftButton);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !clear.isVisible(); }));
}

TEST_F(AccessTest, AChangedStarIsAnnouncedForItsCell) {
    start();
    auto& table = child<QTableView>("table");
    table.setFocus();
    table.selectRow(1);
    QSignalSpy told(table.model(), &QAbstractItemModel::dataChanged);
    QTest::keyClick(&table, Qt::Key_D, Qt::ControlModifier);
    ASSERT_EQ(told.size(), 1);
    for (const int corner : {0, 1}) {
        EXPECT_EQ(told[0][corner].toModelIndex(), table.model()->index(1, 1));
    }
}

} // namespace
