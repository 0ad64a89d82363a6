// SPDX-License-Identifier: MIT
#include "desktop/chart/engine/SitePage.h"

#include <QWebEngineClientCertificateSelection>
#include <QWebEngineFileSystemAccessRequest>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineQuotaRequest>
#include <QWebEngineRegisterProtocolHandlerRequest>
#include <QWebEngineSettings>

#include <utility>

namespace desktop {

namespace {

/// In milliseconds: how soon after a click or key press a link must be followed to be the user's.
constexpr qint64 promptly = 2000;
constexpr int httpsPort = 443;

} // namespace

SitePage::SitePage(QWebEngineProfile& profile, const QString& site,
                   std::function<void(const QUrl&)> openInBrowser, QObject* parent)
    : QWebEnginePage(&profile, parent),
      site_(QStringLiteral("https://") + site),
      openInBrowser_(std::move(openInBrowser)) {
    shutSettings();
    refuseRequests();
    connect(this, &QWebEnginePage::newWindowRequested, this,
            [this](const QWebEngineNewWindowRequest& request) {
                if (request.isUserInitiated()) {
                    handOver(request.requestedUrl());
                }
            });
    connect(this, &QWebEnginePage::loadFinished, this, [this] { leaving_ = false; });
}

void SitePage::shutSettings() {
    using Settings = QWebEngineSettings;
    for (const auto attribute :
         {Settings::AutoLoadIconsForPage, Settings::DnsPrefetchEnabled,
          Settings::FullScreenSupportEnabled, Settings::JavascriptCanOpenWindows,
          Settings::LocalContentCanAccessFileUrls, Settings::LocalContentCanAccessRemoteUrls,
          Settings::NavigateOnDropEnabled, Settings::PdfViewerEnabled, Settings::PluginsEnabled,
          Settings::ScreenCaptureEnabled}) {
        settings()->setAttribute(attribute, false);
    }
    settings()->setAttribute(Settings::PlaybackRequiresUserGesture, true);
    settings()->setAttribute(Settings::WebRTCPublicInterfacesOnly, true);
    // Otherwise the engine drops mailto links without asking this page.
    settings()->setUnknownUrlSchemePolicy(Settings::AllowUnknownUrlSchemesFromUserInteraction);
}

void SitePage::refuseRequests() {
    connect(this, &QWebEnginePage::featurePermissionRequested, this,
            [this](const QUrl& origin, Feature feature) {
                setFeaturePermission(origin, feature, PermissionDeniedByUser);
            });
    const auto reject = [](auto request) { request.reject(); };
    connect(this, &QWebEnginePage::fullScreenRequested, this, reject);
    connect(this, &QWebEnginePage::quotaRequested, this, reject);
    connect(this, &QWebEnginePage::registerProtocolHandlerRequested, this, reject);
    connect(this, &QWebEnginePage::fileSystemAccessRequested, this, reject);
    connect(this, &QWebEnginePage::selectClientCertificate, this,
            [](QWebEngineClientCertificateSelection selection) { selection.selectNone(); });
}

void SitePage::leaveFor(const QUrl& address) {
    leaving_ = true;
    load(address);
}

bool SitePage::isOfSite(const QUrl& address) const {
    return address.scheme() == site_.scheme() && address.host() == site_.host() &&
           address.port(httpsPort) == site_.port(httpsPort) && address.userInfo().isEmpty();
}

void SitePage::handOver(const QUrl& link) {
    // Scripts follow links too, so one click or key press opens one page at most.
    if (!sinceUserActed_.isValid() || sinceUserActed_.hasExpired(promptly)) {
        return;
    }
    const QString scheme = link.scheme();
    if (scheme == QLatin1String("https") || scheme == QLatin1String("http") ||
        scheme == QLatin1String("mailto")) {
        sinceUserActed_.invalidate();
        openInBrowser_(link);
    }
}

bool SitePage::acceptNavigationRequest(const QUrl& address, NavigationType type, bool isMainFrame) {
    if (isOfSite(address)) {
        return true;
    }
    if (isMainFrame && type == NavigationTypeLinkClicked) {
        handOver(address);
    }
    return false;
}

QStringList SitePage::chooseFiles(FileSelectionMode /*mode*/, const QStringList& /*oldFiles*/,
                                  const QStringList& /*acceptedMimeTypes*/) {
    return {};
}

void SitePage::javaScriptAlert(const QUrl& /*origin*/, const QString& /*text*/) {}

bool SitePage::javaScriptConfirm(const QUrl& /*origin*/, const QString& /*text*/) {
    // A page that tries to keep the user from leaving asks in this way too.
    return leaving_;
}

bool SitePage::javaScriptPrompt(const QUrl& /*origin*/, const QString& /*text*/,
                                const QString& /*proposal*/, QString* /*answer*/) {
    return false;
}

void SitePage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel /*level*/,
                                        const QString& /*message*/, int /*line*/,
                                        const QString& /*source*/) {}

} // namespace desktop
