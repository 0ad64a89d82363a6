// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"
#include "platform/views/Views.h"

/// Views of pages. Main thread only.
namespace platform {

/// Is told what happens on a web view's page.
class WebViewUIDelegate {
public:
    virtual ~WebViewUIDelegate() = default;
    /// Called when the pointer has moved or a button was released over the page; `Events` says
    /// which.
    virtual void webView_mouseDidMoveOverElement_modifierFlags() = 0;
};

/// Shows a page from the web or from the program's own files.
class PageView {
public:
    virtual ~PageView() = default;
    /// If the page cannot be loaded, what is shown instead is up to the view.
    virtual void loadRequest(const URL& address) = 0;
};

/// A page in a place of a window that it may share with another control.
class WebView : public PageView {
public:
    [[nodiscard]] virtual bool isHidden() const = 0;
    virtual void setHidden(bool hidden) = 0;
    virtual void setFrame(const Rect& frame) = 0;
    /// Borrowed; null detaches it.
    virtual void setUIDelegate(WebViewUIDelegate* delegate) = 0;
};

} // namespace platform
