// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"
#include "platform/views/WebView.h"

#include <optional>
#include <string>

/// The main window's chart page: a web view that opens a larger chart in the user's browser when
/// double-clicked. Main thread only.
class SCWebView final : public platform::WebViewUIDelegate {
public:
    /// Both are borrowed and must outlive it.
    SCWebView(platform::Host& host, platform::WebView& view);
    ~SCWebView() override;
    SCWebView(const SCWebView&) = delete;
    SCWebView& operator=(const SCWebView&) = delete;

    platform::WebView& view;
    /// The full address of the larger chart; absent until a chart has been loaded.
    std::optional<std::string> feedingURLString;

    /// Sets the view up, once the window is loaded.
    void awakeFromNib();
    /// Whether a chart that has a larger one is shown.
    [[nodiscard]] bool hasLargerChart() const { return feedingURLString && !view.isHidden(); }
    /// Opens the larger chart, as a double click does; does nothing without an address.
    void openLargerChart();
    /// Looks at the current event only: the second of two releases of the left button within the
    /// double-click interval opens the larger chart.
    /// Kept: the system's count of clicks is not known here. Each release restarts the interval, so
    /// a third one opens the chart again.
    void webView_mouseDidMoveOverElement_modifierFlags() override;

private:
    platform::Host& host_;
    double doubleClickInterval_ = 0;
    double lastClick_ = 0;
};
