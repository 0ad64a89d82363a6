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

/// Lets a page fetch over secure ways only.
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
        // Even so the engine makes a folder for databases: here it cannot.
        profile_.setPersistentStoragePath(QStringLiteral("/dev/null"));
        profile_.setUrlRequestInterceptor(&secureRequests_);
        QObject::connect(&profile_, &QWebEngineProfile::downloadRequested, this,
                         [](QWebEngineDownloadRequest* download) { download->cancel(); });
        // Or it has no place in the order of the Tab key.
        view_.setFocusPolicy(Qt::StrongFocus);
        view_.setAccessibleName(QStringLiteral("Chart"));
        view_.setAcceptDrops(false);
        // Its menu offers to save the page and to show its source.
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
    /// The view's input goes to a child, and to another one whenever its renderer has changed.
    void watch(QObject* child) {
        if (child->isWidgetType()) {
            child->installEventFilter(this);
            // Once the view has made it its focus proxy.
            QMetaObject::invokeMethod(
                this, [this] { comeAfterParent(); }, Qt::QueuedConnection);
        }
    }
    /// For the Tab key a new child is the window's last, and takes the view along. The parent,
    /// which has its place, counts only as long as it could have the focus itself.
    void comeAfterParent() {
        QWidget* place = parentWidget();
        place->setFocusPolicy(Qt::StrongFocus);
        setTabOrder(place, &view_);
        place->setFocusPolicy(Qt::NoFocus);
    }
    /// What the child leaves goes to the view as well, and counts once.
    void notice(QObject* watched) {
        if (watched != &view_) {
            pointed_();
        }
    }

    std::function<void()> pointed_;
    SecureRequests secureRequests_;
    /// Without a name it keeps everything in memory.
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
        // The engine draws with the processor: the graphics library that it would share with the
        // whole program must be there before the first window, and costs every start 58 MiB and
        // 80 ms. The engine asks for its format only to tell of itself: whoever loads the module
        // sees to it that it does not.
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }

    [[nodiscard]] ChartPage* makePage(ChartPageSetup setup, QWidget* parent) override {
        return new Page(std::move(setup), parent);
    }
};

} // namespace desktop

#include "ChartPlugin.moc"
