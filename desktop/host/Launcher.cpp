// SPDX-License-Identifier: MIT
#include "desktop/host/Launcher.h"

#include "desktop/text/Text.h"

#include <QDesktopServices>
#include <QUrl>

namespace desktop {

void Launcher::openURL(const platform::URL& address) {
    const QUrl url(exactText(address.text));
    if (url.isValid() && !url.scheme().isEmpty()) {
        QDesktopServices::openUrl(url);
    }
}

} // namespace desktop
