// SPDX-License-Identifier: MIT
#include "desktop/windows/BriefingWindow.h"

#include "app/Briefing.h"
#include "desktop/controls/WrappingRow.h"
#include "desktop/report/BriefingPage.h"
#include "desktop/report/BriefingPrint.h"
#include "desktop/text/Text.h"
#include "ui_BriefingWindow.h"

#include <QClipboard>
#include <QPrintDialog>
#include <QPrinter>

namespace desktop {

namespace {

/// Around the print, in millimetres, unless the user chooses another.
constexpr double margin = 15;

} // namespace

struct BriefingWindow::Views {
    struct Interface : Ui::BriefingWindow {
        explicit Interface(QMainWindow& window) { setupUi(&window); }
    };

    explicit Views(QMainWindow& window) : ui(window), page(*new BriefingPage) {
        page.setObjectName(QStringLiteral("page"));
        ui.contentLayout->insertWidget(1, &page, 1);
        ui.status->hide();
        WrappingRow::replace(ui.listLayout);
    }

    Interface ui;
    BriefingPage& page;
};

BriefingWindow::BriefingWindow(app::Briefing& briefing, ProgramMenus& menus, QSettings& memory)
    : ProgramWindow(menus, memory), briefing_(briefing), views_(std::make_unique<Views>(*this)) {
    auto& [ui, page] = *views_;
    ui.list->setText(shownText(briefing_.text()));
    const auto showList = [this] { briefing_.show(views_->ui.list->text().toStdString()); };
    connect(ui.list, &QLineEdit::returnPressed, this, showList);
    connect(ui.show, &QPushButton::clicked, this, showList);
    connect(ui.favorites, &QPushButton::clicked, this, [this] {
        briefing_.showFavorites();
        views_->ui.list->setText(shownText(briefing_.text()));
    });
    connect(ui.copy, &QPushButton::clicked, this, [this] { copy(); });
    connect(ui.print, &QPushButton::clicked, this, [this] { print(); });
    page.copyAll = [this] { copy(); };
    briefing_.changed = [this] {
        if (isVisible()) {
            showPage();
        }
    };
}

BriefingWindow::~BriefingWindow() {
    briefing_.changed = [] {};
}

void BriefingWindow::makeKey() {
    ProgramWindow::makeKey();
    views_->ui.list->setFocus();
    views_->ui.list->selectAll();
}

void BriefingWindow::showEvent(QShowEvent* event) {
    ProgramWindow::showEvent(event);
    showPage();
}

void BriefingWindow::showPage() {
    views_->page.show(briefing_.page());
    views_->ui.copy->setEnabled(briefing_.hasStations());
    views_->ui.print->setEnabled(briefing_.hasStations());
}

void BriefingWindow::copy() {
    if (briefing_.hasStations()) {
        QGuiApplication::clipboard()->setText(shownLines(briefing_.asText()));
    }
}

void BriefingWindow::print() {
    if (!printer_) {
        printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
        printer_->setDocName(QStringLiteral("Briefing"));
        printer_->setPageMargins({margin, margin, margin, margin}, QPageLayout::Millimeter);
    }
    views_->ui.status->hide();
    auto* dialog = new QPrintDialog(printer_.get(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this] {
        if (!printBriefing(*printer_, briefing_.page(), shownText(briefing_.time()))) {
            views_->ui.status->setText(QStringLiteral("The page could not be printed."));
            views_->ui.status->show();
        }
    });
    dialog->open();
}

} // namespace desktop
