// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QUrl>
#include <QWebEnginePage>

#include <functional>

namespace desktop {

/// A web page that stays on its site, in the main frame and in all others. Links elsewhere that the
/// user follows are handed over; whatever else leads away, and whatever the page asks for, is
/// silently refused.
class SitePage final : public QWebEnginePage {
public:
    /// The profile is borrowed and must outlive the page.
    SitePage(QWebEngineProfile& profile, const QString& site,
             std::function<void(const QUrl&)> openInBrowser, QObject* parent);

    /// Loads an address even if the page on show asks the user to stay.
    void leaveFor(const QUrl& address);
    /// The user has clicked or pressed a key: a link followed right afterwards is the user's
    /// choice.
    void userActed() { sinceUserActed_.start(); }

protected:
    bool acceptNavigationRequest(const QUrl& address, NavigationType type,
                                 bool isMainFrame) override;
    QStringList chooseFiles(FileSelectionMode mode, const QStringList& oldFiles,
                            const QStringList& acceptedMimeTypes) override;
    void javaScriptAlert(const QUrl& origin, const QString& text) override;
    bool javaScriptConfirm(const QUrl& origin, const QString& text) override;
    bool javaScriptPrompt(const QUrl& origin, const QString& text, const QString& proposal,
                          QString* answer) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message,
                                  int line, const QString& source) override;

private:
    [[nodiscard]] bool isOfSite(const QUrl& address) const;
    void handOver(const QUrl& link);
    void shutSettings();
    void refuseRequests();

    QUrl site_;
    std::function<void(const QUrl&)> openInBrowser_;
    QElapsedTimer sinceUserActed_;
    bool leaving_ = false;
};

} // namespace desktop
