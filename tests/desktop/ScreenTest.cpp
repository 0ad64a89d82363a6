// SPDX-License-Identifier: MIT
#include "desktop/controls/Contrast.h"
#include "desktop/map/MapScheme.h"
#include "tests/desktop/AllWindows.h"

#include <QScreen>
#include <QSettings>
#include <QTextDocumentFragment>
#include <QTreeWidget>

#include <set>
#include <utility>

namespace {

class ScreenTest : public AllWindows {
protected:
    /// The part of a control that its parents do not clip, in the control's coordinates.
    static QRect partSeen(const QWidget& control) {
        QRect part = control.rect();
        for (const QWidget* place = &control; !place->isWindow(); place = place->parentWidget()) {
            const QWidget& around = *place->parentWidget();
            part &= QRect(control.mapFrom(&around, QPoint(0, 0)), around.size());
        }
        return part;
    }
};

TEST_F(ScreenTest, EveryWindowFitsItsScreenWithItsFrame) {
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    for (const int points : {9, 20}) {
        SCOPED_TRACE(points);
        useFont(points);
        const QList<QWidget*> all = openAll();
        QStringList names;
        for (QWidget* one : all) {
            names.append(one->objectName());
            SCOPED_TRACE(names.last().toStdString());
            EXPECT_TRUE(
                QTest::qWaitFor([&] { return screen.contains(one->frameGeometry()); }, 2000));
        }
        stop();
        // The next start finds window sizes remembered from a larger screen.
        QSettings memory(desktop::shownText((fake.folder / "windows.ini").string()),
                         QSettings::IniFormat);
        QWidget large;
        large.setGeometry(10, 10, 3000, 2000);
        for (const QString& name : names) {
            memory.setValue(QStringLiteral("windows/%1/geometry").arg(name), large.saveGeometry());
        }
    }
}

TEST_F(ScreenTest, EveryControlCanBeReachedHoweverSmallTheWindow) {
    const std::pair<QSize, int> cases[] = {
        {{1022, 575}, 9}, {{698, 426}, 9}, {{1022, 575}, 20}, {{698, 426}, 20}};
    for (const auto& [size, points] : cases) {
        SCOPED_TRACE(testing::Message() << size.width() << " at " << points);
        useFont(points);
        start();
        child<QWidget>("saver").setEnabled(true);
        delegate().sw->showFavsMenu();
        delegate().sw->filterIt("KJFK with terms that are longer than a line of a small window");
        showReport();
        stations().resize(size);
        QApplication::processEvents();
        ASSERT_EQ(stations().size(), size);
        search().setFocus();
        std::set<QString> reached;
        for (int press = 0; press < 28; ++press) {
            QWidget& control = *QApplication::focusWidget();
            SCOPED_TRACE(control.objectName().toStdString());
            const QSize seen = partSeen(control).size();
            const bool isButton = qobject_cast<QAbstractButton*>(&control) != nullptr;
            EXPECT_TRUE(isButton ? seen == control.size()
                                 : seen.height() >= control.fontMetrics().height())
                << seen.width() << "x" << seen.height();
            const QImage focused = control.grab().toImage();
            control.clearFocus();
            EXPECT_NE(control.grab().toImage(), focused) << "the focus does not show";
            control.setFocus();
            reached.insert(control.objectName());
            QTest::keyClick(&control, Qt::Key_Tab);
        }
        EXPECT_TRUE(reached.contains("filterSearchEnd"));
        EXPECT_TRUE(reached.contains("filterFavoritesEnd"));
        EXPECT_GE(reached.size(), 14U);
        stop();
    }
}

TEST_F(ScreenTest, WordsRunFromLeftToRightInAnyLanguage) {
    QApplication::setLayoutDirection(Qt::RightToLeft);
    for (const QWidget* one : openAll()) {
        EXPECT_EQ(one->layoutDirection(), Qt::LeftToRight) << one->objectName().toStdString();
    }
    // Text of the other direction stays within its part of the line.
    table().selectRow(1);
    const QString line = child<QLabel>("stationLine").text();
    EXPECT_TRUE(line.startsWith("LLBG · \u2068תל אביב\u2069 · ISRAEL")) << line.toStdString();
}

TEST_F(ScreenTest, NothingFromOutsideCountsAsMarkup) {
    for (const char* file : {"resources/Stations.STNPKG", "support/MyStations.STNPKG"}) {
        save(makeCollection({{"KJFK", "<b>intruder", "<b>intruder", 40.65, -73.78}}), file);
    }
    openAll();
    table().selectRow(0);
    QTest::keyClick(&table(), Qt::Key_D, Qt::ControlModifier);
    std::string reply = support::metarReply("KJFK");
    reply.insert(reply.find("RMK"), "&lt;b>intruder ");
    EXPECT_TRUE(fake.urlSessions.answer("=metars", reply));
    const auto& favorites = *stations().findChild<QTreeWidget*>();
    await("the report", [&] {
        const auto* line = favorites.topLevelItem(0);
        return line != nullptr && !line->toolTip(0).isEmpty();
    });

    int seen = 0;
    const auto look = [&seen](const QString& text, bool mayBeMarkup) {
        const bool isMarkup = mayBeMarkup && Qt::mightBeRichText(text);
        const QString read = isMarkup ? QTextDocumentFragment::fromHtml(text).toPlainText() : text;
        seen += text.contains("intruder") ? 1 : 0;
        EXPECT_EQ(read.contains("<b>intruder"), text.contains("intruder")) << text.toStdString();
    };
    for (const QWidget* one : QApplication::allWidgets()) {
        look(one->toolTip(), true);
        if (const auto* label = qobject_cast<const QLabel*>(one)) {
            look(label->text(), label->textFormat() != Qt::PlainText);
        }
        const auto* list = qobject_cast<const QAbstractItemView*>(one);
        const int columns = list && list->model() ? list->model()->columnCount() : 0;
        for (int column = 0; column < columns; ++column) {
            look(list->model()->index(0, column).data(Qt::ToolTipRole).toString(), true);
        }
    }
    EXPECT_GE(seen, 4) << "a label, the rows' tips, the favourite's tip";
}

TEST(Contrast, FollowsTheAccessibilityGuidelines) {
    EXPECT_NEAR(desktop::contrast(Qt::black, Qt::white), 21, 1e-9);
    EXPECT_NEAR(desktop::contrast(QColor("#767676"), Qt::white), 4.54, 0.005);
    EXPECT_NEAR(desktop::contrast(Qt::white, QColor("#569BC6")), 3.04, 0.005);
}

/// Name, window, text, base, highlight and highlighted text.
constexpr const char* themes[][6] = {
    {"light", "#efefef", "#000000", "#ffffff", "#308cc6", "#ffffff"},
    {"dark", "#232629", "#fcfcfc", "#1b1e20", "#569bc6", "#fcfcfc"},
    {"black", "#000000", "#ffffff", "#000000", "#1aebff", "#000000"},
    {"white", "#ffffff", "#000000", "#ffffff", "#ffffff", "#ffffff"},
    {"grey", "#808080", "#000000", "#8a8a8a", "#7f7f7f", "#909090"},
};

TEST_F(ScreenTest, PressedButtonsAndSelectedRowsStandOutInEveryTheme) {
    useFont(14);
    start();
    auto& down = child<QAbstractButton>("searchICAO");
    auto& up = child<QAbstractButton>("searchName");
    table().selectRow(0);
    // In a picture: the background at its left edge, and the highest contrast of any pixel with it.
    const auto ground = [](const QImage& image) { return image.pixelColor(3, image.height() / 2); };
    const auto letters = [&](const QImage& image) {
        double most = 1;
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 3; y < image.height() - 3; ++y) {
                most = std::max(most, desktop::contrast(image.pixelColor(x, y), ground(image)));
            }
        }
        return most;
    };
    const auto row = [] {
        const QRect cell = table().visualRect(table().model()->index(0, 1));
        return table().viewport()->grab(cell.adjusted(0, 0, -1, 0)).toImage();
    };
    for (const auto& [name, window, text, base, highlight, highlighted] : themes) {
        SCOPED_TRACE(name);
        QPalette palette{QColor(window), QColor(window)};
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
            palette.setColor(role, text);
        }
        palette.setColor(QPalette::Base, base);
        palette.setColor(QPalette::AlternateBase, base);
        palette.setColor(QPalette::Highlight, highlight);
        palette.setColor(QPalette::HighlightedText, highlighted);
        // The theme changes while the program runs.
        QApplication::setPalette(palette);
        QApplication::processEvents();
        for (const bool onImagery : {false, true}) {
            const desktop::MapScheme map = desktop::mapScheme(palette, onImagery);
            for (const QColor& below : {map.sea, map.land}) {
                EXPECT_GE(desktop::contrast(map.focus, below), desktop::contrastOfShapes);
            }
        }
        for (const bool hasFocus : {false, true}) {
            SCOPED_TRACE(hasFocus);
            hasFocus ? down.setFocus() : down.clearFocus();
            const QImage button = down.grab().toImage();
            // Outside the focus frame.
            const QColor filled = button.pixelColor(1, button.height() / 2);
            EXPECT_GE(desktop::contrast(filled, window), desktop::contrastOfShapes);
            EXPECT_GE(letters(button), desktop::contrastOfText);
            EXPECT_NE(filled, up.grab().toImage().pixelColor(1, button.height() / 2));

            hasFocus ? table().setFocus() : table().clearFocus();
            const QImage selected = row();
            EXPECT_GE(letters(selected), desktop::contrastOfText);
            // The row has lines above and below, or is filled with their colour.
            EXPECT_GE(desktop::contrast(selected.pixelColor(20, 0), base),
                      desktop::contrastOfShapes);
            EXPECT_EQ(ground(selected) == selected.pixelColor(20, 0), hasFocus);
        }
    }
}

} // namespace
