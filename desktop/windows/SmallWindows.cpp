// SPDX-License-Identifier: MIT
#include "desktop/windows/SmallWindows.h"

#include "app/SCAboutWindowController.h"
#include "app/SLIBReleaseNotesWindowController.h"
#include "app/slibHelpWindow.h"
#include "desktop/text/RichText.h"
#include "desktop/text/Text.h"
#include "product/Addresses.h"
#include "ui_SCAboutWindowController.h"
#include "ui_SLIBReleaseNotesWindowController.h"
#include "ui_slibHelpWindow.h"

#include <QIcon>

namespace desktop {

namespace {

/// Around a page of text, in points.
constexpr double textMargin = 16;

/// Shows the program's own pages in a text browser, which never loads from a network.
class HelpPages final : public platform::PageView {
public:
    explicit HelpPages(QTextBrowser& browser) : browser_(browser) {}

    void loadRequest(const platform::URL& address) override {
        browser_.setSource(QUrl(exactText(address.text)));
    }

private:
    QTextBrowser& browser_;
};

class RichTextPane final : public platform::RichTextView {
public:
    explicit RichTextPane(QTextEdit& pane) : pane_(pane) {}

    void readRTFDFromFile(const std::string& path) override {
        QFile file(pathText(path));
        if (file.open(QIODevice::ReadOnly)) {
            showRTF(*pane_.document(), file.read(longestRTF));
        }
    }

private:
    QTextEdit& pane_;
};

} // namespace

AboutWindow::AboutWindow(SCAboutWindowController& controller, const platform::Bundle& bundle,
                         ProgramMenus& menus, QSettings& memory)
    : ProgramWindow(menus, memory) {
    Ui::SCAboutWindowController ui;
    ui.setupUi(this);
    ui.icon->setPixmap(windowIcon().pixmap(ui.icon->minimumSize(), devicePixelRatio()));
    ui.version->setText(
        QStringLiteral("Version %1")
            .arg(shownText(bundle.infoValue("CFBundleShortVersionString").value_or(""))));
    ui.licences->setSource(
        QUrl::fromLocalFile(pathText(bundle.resourcePath() + "/help/licences.html")));
    ui.feedback->setToolTip(shownText(product::addresses::feedback));
    ui.website->setToolTip(shownText(product::addresses::productPage));
    connect(ui.feedback, &QPushButton::clicked, this,
            [&controller] { controller.doEmailFeedback(); });
    connect(ui.website, &QPushButton::clicked, this, [&controller] { controller.doGoToWebsite(); });
    connect(ui.close, &QPushButton::clicked, this, [this] { close(); });
}

struct HelpWindow::Views {
    struct Interface : Ui::slibHelpWindow {
        explicit Interface(QMainWindow& window) { setupUi(&window); }
    };

    explicit Views(QMainWindow& window) : ui(window) {}

    Interface ui;
    HelpPages pages{*ui.theWebHelp};
};

HelpWindow::HelpWindow(slibHelpWindow& controller, ProgramMenus& menus, QSettings& memory)
    : ProgramWindow(menus, memory),
      controller_(controller),
      views_(std::make_unique<Views>(*this)) {
    Ui::slibHelpWindow& ui = views_->ui;
    QTextBrowser& browser = *ui.theWebHelp;
    browser.document()->setDocumentMargin(textMargin);
    controller_.outlets = {.theWebHelp = &views_->pages};
    connect(ui.back, &QToolButton::clicked, &browser, &QTextBrowser::backward);
    connect(ui.forward, &QToolButton::clicked, &browser, &QTextBrowser::forward);
    connect(ui.contents, &QToolButton::clicked, &browser, &QTextBrowser::home);
    connect(&browser, &QTextBrowser::backwardAvailable, ui.back, &QWidget::setEnabled);
    connect(&browser, &QTextBrowser::forwardAvailable, ui.forward, &QWidget::setEnabled);
}

HelpWindow::~HelpWindow() {
    controller_.outlets = {};
}

struct ReleaseNotesWindow::Views {
    struct Interface : Ui::SLIBReleaseNotesWindowController {
        explicit Interface(QMainWindow& window) { setupUi(&window); }
    };

    explicit Views(QMainWindow& window) : ui(window) {}

    Interface ui;
    RichTextPane pane{*ui.rlText};
};

ReleaseNotesWindow::ReleaseNotesWindow(SLIBReleaseNotesWindowController& controller,
                                       ProgramMenus& menus, QSettings& memory)
    : ProgramWindow(menus, memory),
      controller_(controller),
      views_(std::make_unique<Views>(*this)) {
    views_->ui.rlText->document()->setDocumentMargin(textMargin);
    controller_.outlets = {.rlText = &views_->pane};
}

ReleaseNotesWindow::~ReleaseNotesWindow() {
    controller_.outlets = {};
}

} // namespace desktop
