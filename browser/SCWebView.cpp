// SPDX-License-Identifier: MIT
#include "browser/SCWebView.h"

SCWebView::SCWebView(platform::Host& host, platform::WebView& shown) : view(shown), host_(host) {}

SCWebView::~SCWebView() {
    view.setUIDelegate(nullptr);
}

void SCWebView::awakeFromNib() {
    view.setUIDelegate(this);
    doubleClickInterval_ = host_.events.doubleClickInterval();
}

void SCWebView::openLargerChart() {
    if (feedingURLString) {
        host_.workspace.openURL({*feedingURLString});
    }
}

void SCWebView::webView_mouseDidMoveOverElement_modifierFlags() {
    const auto event = host_.events.currentEvent();
    if (event.type != platform::Events::leftMouseUp) {
        return;
    }
    const double sinceLastClick = event.timestamp - lastClick_;
    lastClick_ = event.timestamp;
    if (sinceLastClick < doubleClickInterval_) {
        openLargerChart();
    }
}
