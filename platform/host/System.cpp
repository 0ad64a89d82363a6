// SPDX-License-Identifier: MIT
#include "platform/host/System.h"

#include "platform/text/Text.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>

namespace platform {

Date SystemClock::now() const {
    return std::chrono::floor<Date::duration>(std::chrono::system_clock::now());
}

void StandardErrorLog::line(std::string_view text) {
    std::string line = withoutControls(repairedUtf8(text));
    std::ranges::replace_if(
        line, [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
    line += '\n';
    // One call, so that lines from several threads do not mix.
    std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace platform
