// SPDX-License-Identifier: MIT
#include "platform/net/HTTPCache.h"
#include "tests/fuzz/Fuzz.h"

namespace {

/// One line per field: its place in the list of names, and its value.
platform::HTTPReply replyWith(std::string_view lines) {
    platform::HTTPReply reply;
    reply.status = 200;
    while (!lines.empty()) {
        const std::string_view line = lines.substr(0, lines.find('\n'));
        lines.remove_prefix(std::min(line.size() + 1, lines.size()));
        if (!line.empty()) {
            const auto place =
                static_cast<unsigned char>(line.front()) % platform::HTTPCache::fieldNames.size();
            reply.fields[platform::HTTPCache::fieldNames[place]] = line.substr(1);
        }
    }
    return reply;
}

} // namespace

void feed(std::span<const std::byte> input) {
    platform::HTTPCache cache(1 << 20);
    const platform::HTTPReply reply = replyWith(textOf(input));
    cache.keep("a", reply);
    (void)platform::HTTPCache::isFresh(reply, platform::Date(std::chrono::hours(1)));
    (void)platform::HTTPCache::modifiedDate(reply);
    if (const auto kept = cache.find("a")) {
        for (const std::string& line : platform::HTTPCache::conditions(*kept)) {
            require(line.find_first_of("\r\n") == std::string::npos, "a header line is one line");
        }
        (void)cache.freshened("a", *kept, reply);
    }
}
