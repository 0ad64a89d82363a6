// SPDX-License-Identifier: MIT
#include "tests/desktop/AllWindows.h"

#include <QAccessible>
#include <QButtonGroup>
#include <QDialog>
#include <QSignalSpy>

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
    // A label's name is its text, whose changes the toolkit announces by itself.
    const QString line = name(spoken(child<QLabel>("stationLine")));
    EXPECT_TRUE(line.startsWith("KJFK · NEW YORK/JFK")) << line.toStdString();
    auto& sheet = *window("SCMyStationsWindowController").findChild<QDialog*>();
    EXPECT_EQ(name(spoken(*sheet.findChild<QLabel*>())), line);
}

TEST_F(AccessTest, ExclusiveButtonsAreANamedGroup) {
    start();
    const struct {
        const char* group;
        const char* name;
        int buttons;
        const char* down;
        const char* next;
    } groups[] = {{"searchModes", "Search in", 3, "searchICAO", "searchName"},
                  {"mapTypes", "Map type", 5, "mapSatellite", "mapHybrid"}};
    for (const auto& one : groups) {
        SCOPED_TRACE(one.group);
        QAccessibleInterface& group = spoken(child<QWidget>(one.group));
        EXPECT_EQ(group.role(), QAccessible::Grouping);
        EXPECT_EQ(name(group), one.name);
        EXPECT_EQ(group.childCount(), one.buttons);
        auto& down = child<QAbstractButton>(one.down);
        auto& next = child<QAbstractButton>(one.next);
        EXPECT_EQ(spoken(down).role(), QAccessible::RadioButton);
        EXPECT_TRUE(spoken(down).state().checked);
        QSignalSpy sent(down.group(), &QButtonGroup::idClicked);
        down.setFocus();
        QTest::keyClick(&down, Qt::Key_Right);
        EXPECT_TRUE(spoken(next).state().checked);
        EXPECT_TRUE(next.hasFocus());
        EXPECT_EQ(sent.size(), 1);
    }
}

TEST_F(AccessTest, AMapTypeIsSentAtEveryClick) {
    start();
    for (int times = 0; times < 2; ++times) {
        delegate().sw->currentMapType = 99;
        click("mapSatellite");
        EXPECT_EQ(delegate().sw->currentMapType, 1);
    }
}

TEST_F(AccessTest, AChangedStarIsAnnouncedForItsCell) {
    start();
    table().selectRow(1);
    QSignalSpy told(table().model(), &QAbstractItemModel::dataChanged);
    QTest::keyClick(&table(), Qt::Key_D, Qt::ControlModifier);
    ASSERT_EQ(told.size(), 1);
    EXPECT_EQ(told[0][0].toModelIndex(), table().model()->index(1, 1));
    EXPECT_EQ(told[0][1], told[0][0]);
}

} // namespace
