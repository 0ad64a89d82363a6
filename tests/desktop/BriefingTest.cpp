// SPDX-License-Identifier: MIT
#include "app/Briefing.h"
#include "desktop/report/BriefingPage.h"
#include "desktop/report/BriefingPrint.h"
#include "tests/support/Reports.h"
#include "tests/support/ServedProgram.h"
#include "tests/support/Stations.h"

#include <QLabel>
#include <QLineEdit>
#include <QPageSize>
#include <QPaintEngine>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <future>
#include <map>
#include <utility>

namespace {

using support::metarRaw;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// The real window, fed by a real server that answers each list when its gate is opened.
class BriefingWindowTest : public support::ServedProgram {
protected:
    BriefingWindowTest()
        : ServedProgram(
              [this](const auto& request, auto& response) { answer(request, response); }) {
        setCatalogue(makeCollection({{"KAAA", "ALPHA"},
                                     {"KDDD", "AT FIRST"},
                                     {"KBBB", "BR\u202eAVO"},
                                     {"KCCC", "CHARLIE"}}));
    }

    static QMainWindow& briefing() { return window("BriefingWindow"); }
    template <typename T>
    static T& part(const char* name) {
        return dynamic_cast<T&>(*briefing().findChild<QWidget*>(QString::fromUtf8(name)));
    }
    static desktop::BriefingPage& page() { return part<desktop::BriefingPage>("page"); }
    static std::string text() { return page().toPlainText().toStdString(); }
    static void type(const char* list) {
        auto& field = part<QLineEdit>("list");
        field.setFocus();
        field.selectAll();
        QTest::keyClicks(&field, QString::fromUtf8(list));
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

private:
    void answer(const httplib::Request& request, httplib::Response& response) {
        const bool isList = request.has_param("ids");
        const std::string ids = request.get_param_value(isList ? "ids" : "stationString");
        EXPECT_TRUE(!isList || server.gates.pass(ids));
        const bool isMetar = request.target.find("metar") != std::string::npos;
        std::vector<std::string> replies;
        for (std::size_t at = 0; at < ids.size(); at += 5) {
            const std::string station = ids.substr(at, 4);
            replies.push_back(isMetar ? support::metarReply(station)
                                      : support::tafReply(station, ""));
        }
        response.set_content(support::joined(replies), "text/xml");
    }
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
    EXPECT_THAT(text(), HasSubstr("Left out, since they name no station: xx."));
    awaitRequests();
    server.gates.open("KAAA,KCCC");
    server.gates.open("KBBB,KZZZ");
    awaitText("TAF KZZZ");
    awaitText(metarRaw("KBBB"));
    EXPECT_THAT(text(), AllOf(HasSubstr("KBBB · BRAVO"), HasSubstr(metarRaw("KBBB")),
                              HasSubstr("KZZZ is not in the catalogue."), Not(HasSubstr("KAAA")),
                              Not(HasSubstr("Asking"))));
    EXPECT_EQ(std::ranges::count_if(server.targets(), isList), 4) << "asked twice for one list";
    // The rest of the program shows it as well.
    EXPECT_TRUE(reports().reportsOf("KBBB").taf);

    part<QPushButton>("copy").click();
    EXPECT_THAT(copied(), AllOf(StartsWith("01 Mar 2024 00:00 UTC\nThis is no briefing"),
                                HasSubstr("\n\nKBBB · BRAVO"), HasSubstr(metarRaw("KZZZ"))));
    briefing().close();
    end();
    begin();
    delegate().doBriefing();
    EXPECT_EQ(part<QLineEdit>("list").text().toStdString(), "KBBB KZZZ xx");
    EXPECT_THAT(text(), StartsWith("Type ICAO"));
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
    page().find(QStringLiteral("METAR KBBB"));
    page().verticalScrollBar()->setValue(40);
    ASSERT_EQ(page().verticalScrollBar()->value(), 40) << "there is nothing to scroll";
    fake.clock.time = fake.clock.now() + std::chrono::minutes(12);
    fake.timers.fire();
    EXPECT_THAT(text(), AllOf(HasSubstr("12 minutes ago"), Not(HasSubstr("0 minutes ago"))));
    EXPECT_EQ(page().verticalScrollBar()->value(), 40);
    QTest::keyClick(&page(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(copied(), "METAR KBBB");
    // A hidden window is renewed when it comes back.
    briefing().close();
    fake.clock.time = fake.clock.now() + std::chrono::minutes(12);
    fake.timers.fire();
    delegate().doBriefing();
    EXPECT_THAT(text(), HasSubstr("24 minutes ago"));
}

TEST_F(BriefingWindowTest, PrintsToAFile) {
    server.gates.openAll();
    for (const int row : {0, 2}) {
        child<QTableView>("table").selectRow(row);
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
        const std::string file = fake.folder.read(name);
        EXPECT_EQ(file.substr(0, 5), sheets > 0 ? "%PDF-" : "");
        int pages = 0;
        for (std::size_t at = 0; (at = file.find("/Type /Page\n", at)) != file.npos; ++at) {
            ++pages;
        }
        EXPECT_EQ(pages, sheets);
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
        ASSERT_TRUE(desktop::printBriefing(paper, lines, QStringLiteral("22 Nov 2026 07:00 UTC")));
        EXPECT_TRUE(paper.isBlack);
        const std::size_t count = paper.sheets.size();
        EXPECT_GE(count, 4U);
        for (const auto& [number, text] : paper.sheets) {
            EXPECT_THAT(text, AllOf(HasSubstr("Printed 22 Nov 2026 07:00 UTC. No briefing"),
                                    HasSubstr(fmt::format("{} of {}", number, count))));
        }
        const auto sheetWith = [&](const std::string& words) {
            const auto found = std::ranges::find_if(paper.sheets, [&](const auto& sheet) {
                return sheet.second.find(words) != std::string::npos;
            });
            return found == paper.sheets.end() ? 0 : found->first;
        };
        for (int i = 0; i < 12; ++i) {
            const int sheet = sheetWith(fmt::format("<station{}>", i));
            EXPECT_GT(sheet, 0) << i;
            EXPECT_EQ(sheet, sheetWith(fmt::format("<report{}>", i))) << i;
        }
    }
}

} // namespace
