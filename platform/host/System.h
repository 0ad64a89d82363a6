// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

/// The parts of a host that are the same on every system.
namespace platform {

class SystemClock final : public Clock {
public:
    [[nodiscard]] Date now() const override;
};

/// Writes each line in one piece to the standard error stream, without characters that are unsafe
/// to show; line ends and tabs in it become blanks.
class StandardErrorLog final : public Log {
public:
    void line(std::string_view text) override;
};

} // namespace platform
