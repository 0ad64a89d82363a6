// SPDX-License-Identifier: MIT
#include "desktop/report/BriefingPage.h"
#include "desktop/report/BriefingPrint.h"
#include "tests/support/ServedProgram.h"

#include <QPageSize>
#include <QPaintEngine>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QScrollBar>
#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <future>
#include <map>

namespace {

using support::metarRaw;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// The real window, fed by a real server.
class BriefingWindowTest : public support::ServedProgram {
protected:
    BriefingWindowTest() { setCatalogue({{"KAAA", "ALPHA"}, {"KDDD"}, {"KBBB", "BR\u202eAVO"}}); }

    static QMainWindow& briefing() { return window("BriefingWindow"); }
    template <typename T>
    static T& part(const char* name) {
        return dynamic_cast<T&>(*briefing().findChild<QWidget*>(name));
    }
    static desktop::BriefingPage& page() { return part<desktop::BriefingPage>("page"); }
    static std::string text() { return page().toPlainText().toStdString(); }
    static void type(const char* list) {
        auto& field = part<QLineEdit>("list");
        field.setFocus();
        field.selectAll();
        QTest::keyClicks(&field, list);
        QTest::keyClick(&field, Qt::Key_Return);
    }
    void awaitText(const std::string& words) {
        await(words, [&] { return text().find(words) != std::string::npos; });
    }
    /// Waits until the sessions have taken up all requests.
    void awaitRequests() {
        std::promise<void> taken;
        sessions->perform([&taken] { taken.set_value(); });
        taken.get_future().wait();
    }
    static bool isList(const std::string& target) { return target.find("ids=") != target.npos; }
};

TEST_F(BriefingWindowTest, ShowsItsOwnListHoweverSlowTheServer) {
    QTest::keyClick(&stations(), Qt::Key_B, Qt::ControlModifier);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&briefing()));
    EXPECT_EQ(QApplication::focusWidget(), &part<QLineEdit>("list"));
    EXPECT_THAT(text(), StartsWith("Type ICAO"));
    EXPECT_FALSE(part<QPushButton>("print").isEnabled() || part<QPushButton>("copy").isEnabled());
    type("kaaa, kccc");
    awaitText("Asking localhost");
    type("KBBB KZZZ xx");
    type("KBBB KZZZ xx");
    awaitRequests();
    for (const char* gate :
         {"METAR KAAA,KCCC", "TAF KAAA,KCCC", "METAR KBBB,KZZZ", "TAF KBBB,KZZZ"}) {
        server.gates.open(gate);
    }
    awaitText("TAF KZZZ");
    awaitText(metarRaw("KBBB"));
    EXPECT_THAT(text(), AllOf(HasSubstr("KBBB · BRAVO"), HasSubstr(metarRaw("KBBB")),
                              HasSubstr("KZZZ is not in the catalogue."), Not(HasSubstr("KAAA")),
                              Not(HasSubstr("Asking"))));
    server.gates.openAll();
    await("the end of every request", [this] { return sessions->openRequests() == 0; });
    EXPECT_EQ(std::ranges::count_if(server.targets(), isList), 4) << "asked twice for one list";

    part<QPushButton>("copy").click();
    EXPECT_THAT(copied(), AllOf(StartsWith("01 Mar 2024 00:00 UTC\nThis is no briefing"),
                                HasSubstr("\n\nKBBB · BRAVO"), HasSubstr(metarRaw("KZZZ"))));
    briefing().close();
    end();
    begin();
    delegate().doBriefing();
    EXPECT_EQ(part<QLineEdit>("list").text().toStdString(), "KBBB KZZZ xx");
}

TEST_F(BriefingWindowTest, ARenewedPageKeepsTheReadersPlaceAndSelection) {
    server.gates.openAll();
    delegate().doBriefing();
    briefing().resize(500, 300);
    type("KAAA KBBB KCCC");
    awaitText("TAF KCCC");
    awaitText("KBBB 010000Z");
    page().setFocus();
    QTest::keyClick(&page(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_THAT(copied(), StartsWith("01 Mar 2024"));
    page().find("METAR KBBB");
    page().verticalScrollBar()->setValue(40);
    ASSERT_EQ(page().verticalScrollBar()->value(), 40) << "there is nothing to scroll";
    pass(std::chrono::minutes(12));
    EXPECT_THAT(text(), AllOf(HasSubstr("12 minutes ago"), Not(HasSubstr("0 minutes ago"))));
    EXPECT_EQ(page().verticalScrollBar()->value(), 40);
    QTest::keyClick(&page(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(copied(), "METAR KBBB");
    // A hidden window is renewed when it comes back.
    briefing().close();
    pass(std::chrono::minutes(12));
    delegate().doBriefing();
    EXPECT_THAT(text(), HasSubstr("24 minutes ago"));
}

TEST_F(BriefingWindowTest, PrintsToAFile) {
    server.gates.openAll();
    for (const int row : {0, 2}) {
        table().selectRow(row);
        delegate().sw->favMenuItem();
    }
    delegate().doBriefing();
    part<QPushButton>("favorites").click();
    EXPECT_EQ(part<QLineEdit>("list").text().toStdString(), "KAAA KBBB");
    awaitText("TAF KBBB");
    std::string many;
    for (int i = 0; i < 30; ++i) {
        many += fmt::format("K{:03} ", i);
    }
    const struct {
        const char* name;
        const char* list;
        int sheets;
    } files[] = {
        {"few.pdf", "KAAA KBBB", 1}, {"many.pdf", many.c_str(), 5}, {"missing/out.pdf", "KAAA", 0}};
    for (const auto& [name, list, sheets] : files) {
        SCOPED_TRACE(name);
        type(list);
        const std::string last(list);
        awaitText("TAF " + last.substr(last.find_last_of("AB0123456789") - 3, 4));
        part<QPushButton>("print").click();
        auto* dialog = briefing().findChild<QPrintDialog*>();
        ASSERT_NE(dialog, nullptr);
        dialog->printer()->setOutputFormat(QPrinter::PdfFormat);
        dialog->printer()->setPageSize(QPageSize(QPageSize::A4));
        dialog->printer()->setOutputFileName(desktop::pathText((fake.folder / name).string()));
        emit dialog->accepted();
        delete dialog;
        EXPECT_EQ(part<QLabel>("status").isVisible(), sheets == 0);
        const QByteArray file = QByteArray::fromStdString(fake.folder.read(name));
        EXPECT_EQ(file.startsWith("%PDF-"), sheets > 0);
        EXPECT_EQ(file.count("/Type /Page\n"), sheets);
    }
}

/// Paper of a size in points that notes which text is seen on which sheet.
class NotedPaper final : public QPdfWriter, private QPaintEngine {
public:
    explicit NotedPaper(QSizeF size) : QPdfWriter(QString()), QPaintEngine(AllFeatures) {
        setResolution(72);
        setPageSize(QPageSize(size, QPageSize::Point));
        setPageMargins({});
    }

    bool newPage() override { return ++sheet_ > 0; }
    [[nodiscard]] QPaintEngine* paintEngine() const override {
        return const_cast<NotedPaper*>(this);
    }

    std::map<int, std::string> sheets;
    bool isBlack = true;

private:
    bool begin(QPaintDevice* /*device*/) override { return true; }
    bool end() override { return true; }
    [[nodiscard]] Type type() const override { return User; }
    void updateState(const QPaintEngineState& /*state*/) override {}
    void drawPath(const QPainterPath& /*path*/) override {}
    void drawPixmap(const QRectF& /*to*/, const QPixmap& /*map*/, const QRectF& /*of*/) override {}
    void drawTextItem(const QPointF& at, const QTextItem& item) override {
        const double y = state->transform().map(at).y();
        const bool isSeen = !painter()->hasClipping() || painter()->clipBoundingRect().contains(at);
        if (isSeen && y > 0 && y <= height()) {
            sheets[sheet_] += item.text().toStdString();
            isBlack = isBlack && state->pen().color() == Qt::black;
        }
    }

    int sheet_ = 1;
};

TEST(BriefingPrint, KeepsEachStationsNameWithItsReport) {
    using Kind = reports::BriefingLine::Kind;
    for (int height = 150; height < 260; height += 9) {
        SCOPED_TRACE(height);
        std::vector<reports::BriefingLine> lines{{Kind::words, "This is no briefing"}};
        for (int i = 0; i < 12; ++i) {
            lines.push_back({Kind::station, fmt::format("<station{}>", i)});
            lines.push_back({Kind::category, "IFR, now", reports::Category::IFR});
            lines.push_back({Kind::raw, fmt::format("<report{}> {}", i, metarRaw("KAAA"))});
            lines.push_back({Kind::raw, "TAF KAAA\nBECMG\nTEMPO\nFM"});
        }
        NotedPaper paper(QSizeF(300, height));
        ASSERT_TRUE(desktop::printBriefing(paper, lines, "22 Nov 2026 07:00 UTC"));
        EXPECT_TRUE(paper.isBlack);
        const std::size_t count = paper.sheets.size();
        EXPECT_GE(count, 4U);
        for (const auto& [number, text] : paper.sheets) {
            EXPECT_THAT(text, AllOf(HasSubstr("Printed 22 Nov 2026 07:00 UTC. No briefing"),
                                    HasSubstr(fmt::format("{} of {}", number, count))));
        }
        for (int i = 0; i < 12; ++i) {
            const auto hasBoth = [i](const auto& sheet) {
                return sheet.second.find(fmt::format("<station{}>", i)) != std::string::npos &&
                       sheet.second.find(fmt::format("<report{}>", i)) != std::string::npos;
            };
            EXPECT_EQ(std::ranges::count_if(paper.sheets, hasBoth), 1) << i;
        }
    }
}

} // namespace
