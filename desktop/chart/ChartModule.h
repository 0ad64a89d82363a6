// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>
#include <QWidget>
#include <QtPlugin>

#include <functional>

/// The interface between the program and its chart module. Main thread only.
namespace desktop {

/// Shows pages of one site over https and goes nowhere else. It grants no permissions, saves
/// nothing and opens no windows. In the tab order it comes right after its parent.
class ChartPage : public QWidget {
public:
    using QWidget::QWidget;

    /// An address outside the site changes nothing; if loading fails, the page itself says so.
    virtual void load(const QUrl& address) = 0;
};

struct ChartPageSetup {
    /// The site's host, followed by a colon and the port if that is not the default one.
    QString site;
    /// Called when the user has followed a link out of the site: http, https or mailto.
    std::function<void(const QUrl& link)> openInBrowser;
    /// Called once each time the pointer moves or the left button is released over the page, while
    /// that event is the current one.
    std::function<void()> pointed;
};

/// The root object of the module.
class ChartModule {
public:
    virtual ~ChartModule() = default;
    /// The parent owns the page.
    [[nodiscard]] virtual ChartPage* makePage(ChartPageSetup setup, QWidget* parent) = 0;
};

} // namespace desktop

Q_DECLARE_INTERFACE(desktop::ChartModule, "nosig.ChartModule")
