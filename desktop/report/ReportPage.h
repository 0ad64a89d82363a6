// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Store.h"

#include <QScrollArea>

#include <string>

class QLabel;
class QPushButton;

namespace desktop {

class CategoryBadge;
class FavoriteReports;
class ReportText;
class TafBar;

/// A station's reports on one page: category and age, what the last questions brought, the METAR as
/// it was sent and decoded, the TAF with its bar, and the favourites' reports. What a report lacks
/// has no place on the page.
class ReportPage final : public QScrollArea {
public:
    /// What is shown; of no station while nothing is selected.
    struct Content {
        std::string station;
        /// The station in full, as the head of the copied text.
        std::string description;
        reports::StationReports reports;
        std::string status;
        platform::Date now;
    };

    explicit ReportPage(QWidget* parent = nullptr);

    void show(const Content& content);
    [[nodiscard]] FavoriteReports& favorites() { return *favorites_; }

    /// A few lines at least are to be seen at once.
    [[nodiscard]] QSize minimumSizeHint() const override;

    /// Puts the whole report on the clipboard as text.
    void copyAll() const;

private:
    void showMetar();
    void showTaf();
    /// A row of a text and its button, which copies what `raw` returns.
    void addWithCopy(ReportText& text, QPushButton& button, std::string (*raw)(const Content&));

    Content content_;
    CategoryBadge* badge_;
    QLabel* age_;
    QLabel* hint_;
    QLabel* status_;
    QPushButton* copyAll_;
    ReportText* metar_;
    QPushButton* copyMetar_;
    ReportText* facts_;
    QLabel* tafHead_;
    TafBar* bar_;
    QLabel* undecoded_;
    ReportText* taf_;
    QPushButton* copyTaf_;
    ReportText* parts_;
    FavoriteReports* favorites_;
};

} // namespace desktop
