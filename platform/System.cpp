// SPDX-License-Identifier: MIT
#include "platform/System.h"

#include <chrono>
#include <cstdio>
#include <string>

namespace platform {

Date SystemClock::now() const {
    return std::chrono::floor<Date::duration>(std::chrono::system_clock::now());
}

void StandardErrorLog::line(std::string_view text) {
    std::string line(text);
    for (char& c : line) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) {
            c = ' ';
        }
    }
    line += '\n';
    // One call, so that lines of several threads do not mix.
    std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace platform
