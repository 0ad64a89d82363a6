// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

namespace desktop {

/// Opens addresses the way the user's desktop does.
class Launcher final : public platform::Workspace {
public:
    void openURL(const platform::URL& address) override;
};

} // namespace desktop
