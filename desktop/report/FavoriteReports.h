// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Report.h"

#include <QTreeWidget>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace desktop {

/// The favourites' last METARs, a line each, under the accessible name "Favorite reports". Hidden
/// while there are no favourites.
class FavoriteReports final : public QTreeWidget {
public:
    struct Line {
        /// The identifier.
        std::string station;
        /// Null where none is known.
        std::shared_ptr<const reports::Metar> metar;
    };

    explicit FavoriteReports(QWidget* parent = nullptr);

    void show(const std::vector<Line>& lines, platform::Date now);

    /// Called with the station of a line that the user clicks, or opens by the keyboard.
    std::function<void(const std::string& station)> chosen = [](const std::string&) {};

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] QIcon iconOf(reports::Category category) const;
    void fit();
};

} // namespace desktop
