// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>
#include <QWidget>
#include <QtPlugin>

#include <functional>

/// What the program and its chart module know of each other. Main thread only.
namespace desktop {

/// Shows pages of one site over https and lets nothing else in. It grants no permission, saves
/// nothing and opens no window. The Tab key leads to it where its parent has its place.
class ChartPage : public QWidget {
public:
    using QWidget::QWidget;

    /// An address outside the site changes nothing; where loading fails, the page says so itself.
    virtual void load(const QUrl& address) = 0;
};

struct ChartPageSetup {
    /// The site's host, and its port after a colon where it has one of its own.
    QString site;
    /// The user has chosen a link that leads out of the page: http, https or mailto.
    std::function<void(const QUrl& link)> openInBrowser;
    /// The pointer has moved or the left button was released over the page; called while that
    /// event is the current one, once for each.
    std::function<void()> pointed;
};

/// The root object of the module.
class ChartModule {
public:
    virtual ~ChartModule() = default;
    /// Owned by its parent.
    [[nodiscard]] virtual ChartPage* makePage(ChartPageSetup setup, QWidget* parent) = 0;
};

} // namespace desktop

Q_DECLARE_INTERFACE(desktop::ChartModule, "nosig.ChartModule")
