// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

namespace desktop {

/// The user's folders as the desktop's base directories name them (XDG). The one for program data
/// is made with the object; where that fails one line is in the log.
class Folders final : public platform::SearchPaths {
public:
    explicit Folders(platform::Log& log);

    /// Whether the folder for program data is there.
    [[nodiscard]] bool areThere() const { return areThere_; }
    [[nodiscard]] std::vector<std::string> paths(int kind, int domainMask) const override;

private:
    std::string documents_;
    std::string applicationSupport_;
    bool areThere_ = true;
};

} // namespace desktop
