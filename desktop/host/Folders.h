// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

namespace desktop {

/// The user's folders as named by the desktop's base directories (XDG). The constructor creates the
/// folder for program data; if that fails, it logs one line.
class Folders final : public platform::SearchPaths {
public:
    explicit Folders(platform::Log& log);

    /// Whether the folder for program data exists.
    [[nodiscard]] bool areThere() const { return areThere_; }
    [[nodiscard]] std::vector<std::string> paths(int kind, int domainMask) const override;

private:
    std::string documents_;
    std::string applicationSupport_;
    bool areThere_ = true;
};

} // namespace desktop
