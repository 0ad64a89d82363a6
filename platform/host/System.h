// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

/// The parts of a host that are the same on every system.
namespace platform {

class SystemClock final : public Clock {
public:
    [[nodiscard]] Date now() const override;
};

/// Writes each line whole to the standard error stream, as text that may be shown; line ends and
/// tabs within it become blanks.
class StandardErrorLog final : public Log {
public:
    void line(std::string_view text) override;
};

} // namespace platform
