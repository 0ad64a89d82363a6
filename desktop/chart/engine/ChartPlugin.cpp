// SPDX-License-Identifier: MIT
#include "desktop/chart/ChartModule.h"
#include "desktop/chart/engine/SitePage.h"
#include "product/Product.h"

#include <QChildEvent>
#include <QMouseEvent>
#include <QQuickWindow>
#include <QVBoxLayout>
#include <QWebEngineDownloadRequest>
#include <QWebEngineProfile>
#include <QWebEngineUrlRequestInfo>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineView>

#include <utility>

namespace desktop {

namespace {

/// Lets a page fetch over secure schemes only.
class SecureRequests final : public QWebEngineUrlRequestInterceptor {
public:
    void interceptRequest(QWebEngineUrlRequestInfo& request) override {
        const QString scheme = request.requestUrl().scheme();
        request.block(scheme != QLatin1String("https") && scheme != QLatin1String("wss") &&
                      scheme != QLatin1String("data") && scheme != QLatin1String("blob"));
    }
};

class Page final : public ChartPage {
public:
    Page(ChartPageSetup setup, QWidget* parent)
        : ChartPage(parent),
          pointed_(std::move(setup.pointed)),
          page_(profile_, setup.site, std::move(setup.openInBrowser), this),
          view_(&page_, this) {
        profile_.setHttpUserAgent(profile_.httpUserAgent() + ' ' +
                                  QLatin1String(product::userAgent));
        // Even for a profile in memory the engine creates a folder for databases; here it cannot.
        profile_.setPersistentStoragePath(QStringLiteral("/dev/null"));
        profile_.setUrlRequestInterceptor(&secureRequests_);
        QObject::connect(&profile_, &QWebEngineProfile::downloadRequested, this,
                         [](QWebEngineDownloadRequest* download) { download->cancel(); });
        // Without this the view would have no place in the tab order.
        view_.setFocusPolicy(Qt::StrongFocus);
        view_.setAccessibleName(QStringLiteral("Chart"));
        view_.setAcceptDrops(false);
        // The menu would offer to save the page and to show its source.
        view_.setContextMenuPolicy(Qt::PreventContextMenu);
        view_.installEventFilter(this);
        for (QObject* child : view_.children()) {
            watch(child);
        }
        setFocusProxy(&view_);
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins({});
        layout->addWidget(&view_);
    }

    void load(const QUrl& address) override { page_.leaveFor(address); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        switch (event->type()) {
        case QEvent::ChildAdded:
            watch(static_cast<QChildEvent*>(event)->child());
            break;
        case QEvent::KeyPress:
            page_.userActed();
            break;
        case QEvent::MouseMove:
            notice(watched);
            break;
        case QEvent::MouseButtonRelease:
            page_.userActed();
            if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
                notice(watched);
            }
            break;
        default:
            break;
        }
        return ChartPage::eventFilter(watched, event);
    }

private:
    /// The view's input goes to a child, and to a new one whenever its renderer has changed.
    void watch(QObject* child) {
        if (child->isWidgetType()) {
            child->installEventFilter(this);
            // Queued until the view has made the child its focus proxy.
            QMetaObject::invokeMethod(
                this, [this] { comeAfterParent(); }, Qt::QueuedConnection);
        }
    }
    /// A new child becomes the last in the window's tab order and takes the view along: this puts
    /// the view back after its parent, which counts only while it accepts the focus itself.
    void comeAfterParent() {
        QWidget* place = parentWidget();
        place->setFocusPolicy(Qt::StrongFocus);
        setTabOrder(place, &view_);
        place->setFocusPolicy(Qt::NoFocus);
    }
    /// What the child ignores goes on to the view as well; it must count only once.
    void notice(QObject* watched) {
        if (watched != &view_) {
            pointed_();
        }
    }

    std::function<void()> pointed_;
    SecureRequests secureRequests_;
    /// Has no name, and so keeps everything in memory.
    QWebEngineProfile profile_;
    SitePage page_;
    QWebEngineView view_;
};

} // namespace

class ChartPlugin final : public QObject, public ChartModule {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "nosig.ChartModule")
    Q_INTERFACES(desktop::ChartModule)

public:
    ChartPlugin() {
        // Makes the engine draw with the processor. To draw otherwise it would share a graphics
        // library with the whole program, which must be there before the first window and costs
        // every start 58 MiB and 80 ms. The engine asks for that library's format only to report on
        // itself, which whoever loads the module must prevent.
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }

    [[nodiscard]] ChartPage* makePage(ChartPageSetup setup, QWidget* parent) override {
        return new Page(std::move(setup), parent);
    }
};

} // namespace desktop

#include "ChartPlugin.moc"
