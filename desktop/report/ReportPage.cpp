// SPDX-License-Identifier: MIT
#include "desktop/report/ReportPage.h"

#include "desktop/controls/CategoryLook.h"
#include "desktop/controls/WrappingRow.h"
#include "desktop/report/FavoriteReports.h"
#include "desktop/report/ReportText.h"
#include "desktop/report/TafBar.h"
#include "desktop/text/Text.h"
#include "reports/Description.h"
#include "reports/RawText.h"

#include <QClipboard>
#include <QDateTime>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QShortcut>

#include <chrono>

namespace desktop {

namespace {

QLabel* wrappingLabel() {
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}

/// A label is known to assistive technology by its name alone, so the name carries the text.
void say(QLabel& label, const QString& name, const QString& text) {
    label.setText(text);
    label.setAccessibleName(text.isEmpty() ? QString() : name + QStringLiteral(": ") + text);
    label.setVisible(!text.isEmpty());
}

QString localTime(platform::Date date) {
    const auto since =
        std::chrono::floor<std::chrono::milliseconds>(date.time_since_epoch()).count();
    return QLocale::c().toString(QDateTime::fromMSecsSinceEpoch(since),
                                 QStringLiteral("d MMM HH:mm t"));
}

void copy(const std::string& text) {
    QGuiApplication::clipboard()->setText(shownLines(text));
}

QString factsInWords(const std::vector<reports::Fact>& facts) {
    QStringList words;
    for (const auto& [name, text] : facts) {
        words += shownText(name) + QStringLiteral(": ") + shownText(text);
    }
    return words.join(QStringLiteral("; "));
}

std::string rawMetar(const ReportPage::Content& content) {
    return content.reports.metar ? content.reports.metar->raw : "";
}

std::string rawTaf(const ReportPage::Content& content) {
    return content.reports.taf ? content.reports.taf->raw : "";
}

} // namespace

ReportPage::ReportPage(QWidget* parent)
    : QScrollArea(parent),
      badge_(new CategoryBadge(QStringLiteral("Report category"))),
      age_(wrappingLabel()),
      hint_(wrappingLabel()),
      status_(wrappingLabel()),
      copyAll_(new QPushButton(QStringLiteral("Copy Report"))),
      metar_(new ReportText(QStringLiteral("Report METAR"))),
      copyMetar_(new QPushButton(QStringLiteral("Copy"))),
      facts_(new ReportText(QStringLiteral("Decoded METAR"))),
      tafHead_(wrappingLabel()),
      bar_(new TafBar),
      undecoded_(wrappingLabel()),
      taf_(new ReportText(QStringLiteral("Report TAF"))),
      copyTaf_(new QPushButton(QStringLiteral("Copy"))),
      parts_(new ReportText(QStringLiteral("Decoded TAF"))),
      favorites_(new FavoriteReports) {
    auto* body = new QWidget;
    auto* column = new QVBoxLayout(body);
    auto* head = new QWidget;
    auto* headRow = new QHBoxLayout(head);
    headRow->setContentsMargins({});
    age_->setSizePolicy(QSizePolicy::Expanding, age_->sizePolicy().verticalPolicy());
    headRow->addWidget(badge_);
    headRow->addWidget(age_);
    headRow->addWidget(copyAll_);
    WrappingRow::replace(headRow);
    column->addWidget(hint_);
    column->addWidget(head);
    column->addWidget(status_);
    setWidget(body);
    setWidgetResizable(true);
    // What is in it takes the focus, and scrolls it into view.
    setFocusPolicy(Qt::NoFocus);
    setFrameShape(QFrame::NoFrame);
    // A bar that came and went would change the width to which texts are wrapped, and with that
    // whether it is needed.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);

    copyMetar_->setAccessibleName(QStringLiteral("Copy METAR"));
    copyTaf_->setAccessibleName(QStringLiteral("Copy TAF"));
    for (ReportText* raw : {metar_, taf_}) {
        raw->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    }
    for (ReportText* decoded : {facts_, parts_}) {
        decoded->setFrameShape(QFrame::NoFrame);
        decoded->viewport()->setAutoFillBackground(false);
        decoded->document()->setDocumentMargin(0);
    }
    addWithCopy(*metar_, *copyMetar_, rawMetar);
    column->addWidget(facts_);
    column->addWidget(tafHead_);
    column->addWidget(bar_);
    addWithCopy(*taf_, *copyTaf_, rawTaf);
    column->addWidget(undecoded_);
    column->addWidget(parts_);
    column->addWidget(favorites_);
    column->addStretch(1);
    hint_->setText(QStringLiteral("Select a station to see its report."));

    connect(copyAll_, &QPushButton::clicked, this, [this] { copyAll(); });
    auto* ctrlC = new QShortcut(QKeySequence::Copy, this);
    ctrlC->setContext(Qt::WidgetWithChildrenShortcut);
    connect(ctrlC, &QShortcut::activated, this, [this] { copyAll(); });
    // A text never scrolls itself, so its cursor must be followed.
    for (ReportText* text : {metar_, facts_, taf_, parts_}) {
        connect(text, &QTextEdit::cursorPositionChanged, this, [this, text, body] {
            if (text->hasFocus()) {
                const QPoint place = text->viewport()->mapTo(body, text->cursorRect().center());
                ensureVisible(place.x(), place.y(), 0, text->cursorRect().height());
            }
        });
    }
    show(Content());
}

QSize ReportPage::minimumSizeHint() const {
    constexpr int lines = 6;
    return {QScrollArea::minimumSizeHint().width(), lines * fontMetrics().lineSpacing()};
}

void ReportPage::addWithCopy(ReportText& text, QPushButton& button,
                             std::string (*raw)(const Content&)) {
    auto* row = new QHBoxLayout;
    row->addWidget(&text, 1);
    row->addWidget(&button, 0, Qt::AlignTop);
    static_cast<QVBoxLayout*>(widget()->layout())->addLayout(row);
    connect(&button, &QPushButton::clicked, this, [this, raw] { copy(raw(content_)); });
}

void ReportPage::show(const Content& content) {
    if (content.station != content_.station) {
        ensureVisible(0, 0);
    }
    content_ = content;
    const bool isAny = !content_.description.empty();
    hint_->setVisible(!isAny);
    say(*status_, QStringLiteral("Report status"), shownText(content_.status));
    showMetar();
    showTaf();
    copyAll_->setVisible(content_.reports.metar || content_.reports.taf);
}

void ReportPage::showMetar() {
    const auto& metar = content_.reports.metar;
    badge_->setVisible(metar != nullptr);
    copyMetar_->setVisible(metar != nullptr);
    if (!metar) {
        say(*age_, {}, {});
        metar_->showLines({});
        facts_->showEntries({}, ReportText::Layout::beside);
        return;
    }
    badge_->setCategory(metar->category);
    say(*age_, QStringLiteral("Report age"),
        shownText(reports::ageInWords(metar->observed, content_.now)));
    age_->setToolTip(localTime(metar->observed));
    metar_->showLines(shownLines(metar->raw));
    QList<ReportText::Entry> entries;
    for (const auto& [name, text] : reports::factsOf(*metar)) {
        const std::string_view arrow =
            name == "Wind" ? reports::windArrow(metar->conditions.wind) : std::string_view();
        entries.append({shownText(name),
                        (arrow.empty() ? QString() : exactText(arrow) + u' ') + shownText(text)});
    }
    facts_->showEntries(entries, ReportText::Layout::beside);
}

void ReportPage::showTaf() {
    const auto& taf = content_.reports.taf;
    // A bar that lacks a part would show the one before it in its place.
    const bool isWhole = taf && taf->forecasts.size() >= reports::partsOfTaf(taf->raw);
    bar_->setTaf(isWhole ? taf.get() : nullptr, content_.now);
    bar_->setVisible(isWhole && !taf->forecasts.empty());
    say(*undecoded_, QStringLiteral("TAF decoding"),
        isWhole || !taf ? QString()
                        : QStringLiteral("The server has not decoded every part of this TAF: go by "
                                         "its text."));
    copyTaf_->setVisible(taf != nullptr);
    if (!taf) {
        say(*tafHead_, {}, {});
        taf_->showLines({});
        parts_->showEntries({}, ReportText::Layout::below);
        return;
    }
    say(*tafHead_, QStringLiteral("TAF validity"),
        shownText(reports::tafInWords(*taf, content_.now)));
    QStringList lines;
    for (const std::string& line : reports::brokenTaf(taf->raw)) {
        lines += shownText(line);
    }
    taf_->showLines(lines.join(u'\n'));
    QList<ReportText::Entry> entries;
    for (const reports::Forecast& part : taf->forecasts) {
        const std::string_view category = reports::nameOf(part.category);
        entries.append(
            {shownText(reports::partInWords(part)) +
                 (category.empty() ? QString() : QStringLiteral(": ") + shownText(category)),
             factsInWords(reports::factsOf(part.stated))});
    }
    parts_->showEntries(entries, ReportText::Layout::below);
}

void ReportPage::copyAll() const {
    const auto& [station, description, reports, status, now] = content_;
    if (reports.metar || reports.taf) {
        copy(reports::reportAsText(description, reports.metar.get(), reports.taf.get(), now));
    }
}

} // namespace desktop
