// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"
#include "platform/views/Views.h"

/// Views of pages. Main thread only.
namespace platform {

/// Whom a web view tells what happens on its page.
class WebViewUIDelegate {
public:
    virtual ~WebViewUIDelegate() = default;
    /// The pointer has moved or a button was released over the page; `Events` tells which.
    virtual void webView_mouseDidMoveOverElement_modifierFlags() = 0;
};

/// A page of the web or of the program's own files.
class PageView {
public:
    virtual ~PageView() = default;
    /// Where a page cannot be loaded, whatever the view shows is shown.
    virtual void loadRequest(const URL& address) = 0;
};

/// A page in a window's place that another control may take.
class WebView : public PageView {
public:
    [[nodiscard]] virtual bool isHidden() const = 0;
    virtual void setHidden(bool hidden) = 0;
    virtual void setFrame(const Rect& frame) = 0;
    /// Borrowed; null lets go of it.
    virtual void setUIDelegate(WebViewUIDelegate* delegate) = 0;
};

} // namespace platform
