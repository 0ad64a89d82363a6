// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Briefing.h"

#include <QTextEdit>

#include <functional>
#include <vector>

namespace desktop {

/// A page of several stations' weather, to be read, selected and copied. A change of the page keeps
/// the reader's place, and the selection wherever the lines stay the same.
class BriefingPage final : public QTextEdit {
public:
    explicit BriefingPage(QWidget* parent = nullptr);

    void show(std::vector<reports::BriefingLine> lines);

    /// Called for Ctrl+C while nothing is selected.
    std::function<void()> copyAll = [] {};

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void write();

    std::vector<reports::BriefingLine> lines_;
};

} // namespace desktop
