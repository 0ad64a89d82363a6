// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <QObject>

namespace desktop {

/// Watches what the user does in any window of the program, from construction on.
class UserEvents final : public QObject, public platform::Events {
public:
    UserEvents();

    [[nodiscard]] Event currentEvent() const override { return current_; }
    [[nodiscard]] double doubleClickInterval() const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Event current_;
};

} // namespace desktop
