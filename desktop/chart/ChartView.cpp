// SPDX-License-Identifier: MIT
#include "desktop/chart/ChartView.h"

#include "desktop/chart/ChartModule.h"

#include <QCoreApplication>
#include <QDir>
#include <QLabel>
#include <QLoggingCategory>
#include <QMouseEvent>
#include <QPluginLoader>
#include <QVBoxLayout>

#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <utility>

namespace desktop {

namespace {

/// Suppresses the browser engine's warnings about being created this late: they concern settings
/// that the module makes in its own way. Also suppresses its report about itself, whatever the
/// user's logging rules: it would query a graphics context that does not exist.
class Quiet {
public:
    Quiet() { usual = QLoggingCategory::installFilter(filter); }
    ~Quiet() { QLoggingCategory::installFilter(usual); }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

private:
    static void filter(QLoggingCategory* category) {
        if (usual) {
            usual(category);
        }
        const QLatin1String name(category->categoryName());
        if (name == QLatin1String("default")) {
            category->setEnabled(QtWarningMsg, false);
        } else if (name == QLatin1String("qt.webenginecontext")) {
            category->setEnabled(QtDebugMsg, false);
            category->setEnabled(QtInfoMsg, false);
        }
    }

    static inline QLoggingCategory::CategoryFilter usual = nullptr;
};

/// Whether the browser engine can sandbox its processes. If it cannot, it would end the program.
bool canLockIn() {
    if (qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX")) {
        return true;
    }
    if (geteuid() == 0) {
        return false;
    }
    // Tries in a process of our own what the engine's processes do first.
    const pid_t tried = fork();
    if (tried == 0) {
        _exit(unshare(CLONE_NEWUSER | CLONE_NEWPID | CLONE_NEWNET) == 0 ? 0 : 1);
    }
    int status = -1;
    return tried > 0 && waitpid(tried, &status, 0) == tried && status == 0;
}

} // namespace

QString ChartSetup::programsModule() {
    return QDir::cleanPath(
        QDir(QCoreApplication::applicationDirPath()).absoluteFilePath(QStringLiteral(NOSIG_CHART)));
}

ChartView::ChartView(platform::Host& host, ChartSetup setup, QWidget* parent)
    : QWidget(parent), host_(host), setup_(std::move(setup)) {
    hide();
}

void ChartView::setHidden(bool hidden) {
    if (!hidden && !std::exchange(isFilled_, true)) {
        fill();
    }
    QWidget::setHidden(hidden);
}

void ChartView::setFrame(const platform::Rect& frame) {
    setGeometry(QRectF(frame.x, frame.y, frame.width, frame.height).toRect());
}

void ChartView::loadRequest(const platform::URL& address) {
    const QUrl url(exactText(address.text));
    if (page_) {
        page_->load(url);
    } else if (!isFilled_) {
        kept_ = url;
    }
}

void ChartView::mouseReleaseEvent(QMouseEvent* event) {
    if (!page_ && event->button() == Qt::LeftButton) {
        tellDelegate();
    }
    QWidget::mouseReleaseEvent(event);
}

void ChartView::tellDelegate() {
    if (delegate_) {
        delegate_->webView_mouseDidMoveOverElement_modifierFlags();
    }
}

void ChartView::fill() {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    page_ = makePage();
    if (!page_) {
        auto* notice = new QLabel(QStringLiteral("The chart cannot be shown on this computer."));
        notice->setObjectName(QStringLiteral("notice"));
        notice->setAlignment(Qt::AlignCenter);
        notice->setWordWrap(true);
        layout->addWidget(notice);
        return;
    }
    layout->addWidget(page_);
    if (const QUrl kept = std::exchange(kept_, {}); !kept.isEmpty()) {
        page_->load(kept);
    }
}

ChartPage* ChartView::makePage() {
    if (!canLockIn()) {
        host_.log.line("No chart: the browser engine cannot sandbox its processes, as for the user "
                       "root; QTWEBENGINE_DISABLE_SANDBOX=1 turns the sandbox off");
        return nullptr;
    }
    const Quiet quiet;
    QPluginLoader loader(setup_.module);
    auto* module = qobject_cast<ChartModule*>(loader.instance());
    if (!module) {
        host_.log.line("No chart: " + loader.errorString().toStdString());
        return nullptr;
    }
    return module->makePage({.site = setup_.site,
                             .openInBrowser =
                                 [this](const QUrl& link) {
                                     host_.workspace.openURL(
                                         {link.toString(QUrl::FullyEncoded).toStdString()});
                                 },
                             .pointed = [this] { tellDelegate(); }},
                            this);
}

} // namespace desktop
