// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"
#include "platform/views/WebView.h"

#include <optional>
#include <string>

/// The main window's chart page: a web view that opens a larger chart in the user's browser when
/// it is clicked twice. Main thread only.
class SCWebView final : public platform::WebViewUIDelegate {
public:
    /// Both are borrowed and outlive it.
    SCWebView(platform::Host& host, platform::WebView& view);
    ~SCWebView() override;
    SCWebView(const SCWebView&) = delete;
    SCWebView& operator=(const SCWebView&) = delete;

    platform::WebView& view;
    /// The full address of the larger chart; absent before any chart was loaded.
    std::optional<std::string> feedingURLString;

    /// Set-up, once the window is loaded.
    void awakeFromNib();
    /// Whether a chart is on show that has a larger one.
    [[nodiscard]] bool hasLargerChart() const { return feedingURLString && !view.isHidden(); }
    /// Opens the larger chart as a double click does; without an address it does nothing.
    void openLargerChart();
    /// Looks at the current event only: the second of two releases of the left button within the
    /// double-click interval opens the larger chart.
    /// Kept: each release starts the interval anew, so a third one opens it again; the system's
    /// count of clicks is not known here.
    void webView_mouseDidMoveOverElement_modifierFlags() override;

private:
    platform::Host& host_;
    double doubleClickInterval_ = 0;
    double lastClick_ = 0;
};
