// SPDX-License-Identifier: MIT
#pragma once

#include "platform/text/Text.h"

#include <fmt/format.h>

#include <cstdio>
#include <string>

namespace tools {

/// Prints a message about a file. Whatever is not fit for a screen is escaped, in the name and in
/// the text alike.
inline void say(const std::string& file, const std::string& message) {
    const auto line = fmt::format("stationpackage: {}: {}\n", platform::escapedControls(file),
                                  platform::escapedControls(message));
    std::fputs(line.c_str(), stderr);
}

/// The tool's status after the message.
[[nodiscard]] inline int fail(const std::string& file, const std::string& reason) {
    say(file, reason);
    return 1;
}

} // namespace tools
