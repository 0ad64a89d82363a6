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
    /// The host, and its port after a colon where it has one of its own.
    QString site = exactText(product::addresses::chartHost);
    /// The file of the module that shows web pages; by default the one beside the program.
    QString module = programsModule();

    [[nodiscard]] static QString programsModule();
};

/// The chart page of the logic. What shows web pages is loaded when the view is first shown and
/// never before; where it cannot be had, a sentence stands in its place, the log says why, and
/// addresses lead to nothing. Links out of the chart site open in the user's browser.
class ChartView final : public QWidget, public platform::WebView {
public:
    /// The host is borrowed and outlives the view. Hidden at first.
    explicit ChartView(platform::Host& host, ChartSetup setup = {}, QWidget* parent = nullptr);

    [[nodiscard]] bool isHidden() const override { return QWidget::isHidden(); }
    void setHidden(bool hidden) override;
    void setFrame(const platform::Rect& frame) override;
    void setUIDelegate(platform::WebViewUIDelegate* delegate) override { delegate_ = delegate; }
    /// Before the view is first shown the address is kept until then.
    void loadRequest(const platform::URL& address) override;

protected:
    /// The sentence in the chart's place can be clicked twice as well.
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void tellDelegate();
    void fill();
    [[nodiscard]] ChartPage* makePage();

    platform::Host& host_;
    ChartSetup setup_;
    platform::WebViewUIDelegate* delegate_ = nullptr;
    bool isFilled_ = false;
    /// A child; null before the first show, and where the module cannot be had.
    ChartPage* page_ = nullptr;
    /// What was asked for before the first show.
    QUrl kept_;
};

} // namespace desktop
