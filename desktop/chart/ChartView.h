// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/text/Text.h"
#include "platform/host/Host.h"
#include "platform/views/WebView.h"
#include "product/Addresses.h"

#include <QString>
#include <QUrl>
#include <QWidget>

namespace desktop {

class ChartPage;

/// Where the chart comes from.
struct ChartSetup {
    /// The host, followed by a colon and the port if that is not the default one.
    QString site = exactText(product::addresses::chartHost);
    /// The file of the module that shows web pages; by default the one installed with the program.
    QString module = programsModule();

    [[nodiscard]] static QString programsModule();
};

/// The logic's chart page. The module that shows web pages is loaded only when the view is first
/// shown. If it cannot be loaded, a notice takes its place, the log says why, and addresses are
/// ignored. Links out of the chart site open in the user's browser.
class ChartView final : public QWidget, public platform::WebView {
public:
    /// The host is borrowed and must outlive the view, which is hidden at first.
    explicit ChartView(platform::Host& host, ChartSetup setup = {}, QWidget* parent = nullptr);

    [[nodiscard]] bool isHidden() const override { return QWidget::isHidden(); }
    void setHidden(bool hidden) override;
    void setFrame(const platform::Rect& frame) override;
    void setUIDelegate(platform::WebViewUIDelegate* delegate) override { delegate_ = delegate; }
    /// Before the view is first shown, the address is kept and loaded then.
    void loadRequest(const platform::URL& address) override;

protected:
    /// Lets the user double-click the notice just like the chart.
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void tellDelegate();
    void fill();
    [[nodiscard]] ChartPage* makePage();

    platform::Host& host_;
    ChartSetup setup_;
    platform::WebViewUIDelegate* delegate_ = nullptr;
    bool isFilled_ = false;
    /// A child widget; null before the view is first shown, and if the module cannot be loaded.
    ChartPage* page_ = nullptr;
    /// The address requested before the view was first shown.
    QUrl kept_;
};

} // namespace desktop
