// SPDX-License-Identifier: MIT
#include "platform/net/HTTPCache.h"

#include <gtest/gtest.h>

#include <optional>
#include <regex>

namespace platform {
namespace {

using std::chrono::seconds;

/// Sun, 06 Nov 1994 08:49:37 GMT.
const Date start{seconds(784'111'777)};
constexpr std::size_t large = 1 << 20;

/// A reply to a request sent at `start`, received a second later, with the fields of a text such as
/// "name: value|name: value".
HTTPReply replyWith(std::string head, long status = 200) {
    HTTPReply reply{status, {}, Data(100), start, start + seconds(1)};
    static const std::regex field("([^:|]+): ([^|]*)");
    for (std::smatch line; std::regex_search(head, line, field); head = line.suffix()) {
        reply.fields[line[1]] = line[2];
    }
    return reply;
}

TEST(HTTPCache, ReusesRepliesForAsLongAsTheySay) {
    const struct {
        const char* head;
        bool isKept;
        /// The last second after `start` at which it is fresh; 0 if it never is.
        long last;
        long status = 200;
    } rows[] = {
        {"", false, 0},
        {"cache-control: max-age=60", true, 59},
        {"cache-control: x=\",\", Max-Age = \"60\"", true, 59},
        {"cache-control: max-age=60, max-age=5", true, 59},
        // Age and date show that the reply has already spent part of its time elsewhere.
        {"cache-control: max-age=60|age: 20", true, 39},
        {"cache-control: max-age=60|date: Sun, 06 Nov 1994 08:49:08 GMT", true, 30},
        {"cache-control: max-age=99999999999999999999", true, 2'147'483'647},
        {"cache-control: max-age=soon", false, 0},
        {"cache-control: max-age=-1", false, 0},
        {"date: Sun, 06 Nov 1994 08:49:37 GMT|expires: Sun, 06 Nov 1994 08:50:37 GMT", true, 59},
        {"expires: Sun Nov  6 08:50:38 1994", true, 59},
        {"expires: 0|etag: \"a\"", true, 0},
        {"expires: Sun, 06 Nov 4711846|etag: \"a\"", true, 0},
        // max-age, valid or not, overrides expires.
        {"expires: 0|cache-control: max-age=60", true, 59},
        {"expires: Sun, 06 Nov 2094 08:49:37 GMT|cache-control: max-age=x", false, 0},
        {"cache-control: max-age=60, No-Store|etag: \"a\"", false, 0},
        {"cache-control: private=\"no-store\", max-age=60", true, 59},
        {"cache-control: no-cache, max-age=60|etag: \"a\"", true, 0},
        {"cache-control: no-cache, max-age=60", false, 0},
        {"cache-control: s-maxage=60", false, 0},
        {"last-modified: Sun, 06 Nov 1994 08:00:00 GMT", true, 0},
        {"vary: Accept-Encoding|cache-control: max-age=60", true, 59},
        {"vary: Accept-Encoding, Origin|cache-control: max-age=60", false, 0},
        {"vary: *|cache-control: max-age=60", false, 0},
        {"cache-control: max-age=60", false, 0, 206},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.head);
        HTTPCache cache(large);
        cache.keep("a", replyWith(row.head, row.status));
        const HTTPCache::Kept kept = cache.find("a");
        ASSERT_EQ(kept != nullptr, row.isKept);
        if (kept) {
            EXPECT_EQ(HTTPCache::isFresh(*kept, start + seconds(row.last)), row.last > 0);
            EXPECT_FALSE(HTTPCache::isFresh(*kept, start + seconds(row.last + 1)));
            EXPECT_FALSE(HTTPCache::isFresh(*kept, start - seconds(1))) << "the clock was set back";
        }
    }
}

TEST(HTTPCache, RevalidatesRepliesAndAppliesTheAnswer) {
    const std::string kept =
        "etag: \"a\"|last-modified: Sun, 06 Nov 1994 08:00:00 GMT|cache-control: max-age=60"
        "|age: 50|date: Sun, 06 Nov 1994 08:48:47 GMT";
    using Lines = std::vector<std::string>;
    EXPECT_EQ(HTTPCache::conditions(replyWith(kept)),
              (Lines{"If-None-Match: \"a\"", "If-Modified-Since: Sun, 06 Nov 1994 08:00:00 GMT"}));
    EXPECT_EQ(HTTPCache::conditions(replyWith("etag: \"a\"\rHost: other|last-modified: now\x7F")),
              Lines())
        << "a line end in a field would be one in our request";
    const struct {
        const char* what;
        const char* head;
        bool isTaken;
        std::optional<int> last;
    } rows[] = {
        // The kept reply's age and date no longer count.
        {"nothing new", "", true, 59},
        {"the same tag", "etag: \"a\"|cache-control: max-age=10", true, 9},
        {"the same, weakened", "etag: W/\"a\"", true, 59},
        {"another tag", "etag: \"b\"", false, {}},
        {"the same time of change", "last-modified: Sun, 06 Nov 1994 08:00:00 GMT", true, 59},
        {"another time", "last-modified: Mon, 07 Nov 1994 08:00:00 GMT", false, {}},
        {"no longer to be kept", "cache-control: no-store", true, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        HTTPCache cache(large);
        cache.keep("a", replyWith(kept));
        HTTPReply answer = replyWith(row.head, 304);
        answer.body.clear();
        const Date asked = answer.asked += seconds(100);
        answer.received += seconds(100);
        const HTTPCache::Kept taken = cache.freshened("a", *cache.find("a"), answer);
        ASSERT_EQ(taken != nullptr, row.isTaken);
        EXPECT_EQ(cache.find("a"), row.last ? taken : nullptr);
        if (taken) {
            EXPECT_EQ(taken->body.size(), 100U);
            EXPECT_EQ(taken->asked, asked);
        }
        if (row.last) {
            EXPECT_TRUE(HTTPCache::isFresh(*taken, asked + seconds(*row.last)));
            EXPECT_FALSE(HTTPCache::isFresh(*taken, asked + seconds(*row.last + 1)));
        }
    }
}

TEST(HTTPCache, OnlyServerErrorsAndThrottlingLeaveTheKeptReplyInPlace) {
    for (const long status : {200, 204, 301, 403, 404, 429, 500, 503}) {
        SCOPED_TRACE(status);
        HTTPCache cache(large);
        cache.keep("a", replyWith("cache-control: max-age=60"));
        cache.keep("a", replyWith("", status));
        EXPECT_EQ(cache.find("a") != nullptr, status == 429 || status >= 500);
    }
}

TEST(HTTPCache, EvictsTheLeastRecentlyUsedReply) {
    HTTPCache cache(10'000);
    const auto keep = [&](const std::string& address, std::size_t bytes) {
        HTTPReply reply = replyWith("cache-control: max-age=60");
        reply.body.resize(bytes);
        cache.keep(address, reply);
    };
    const auto kept = [&] {
        std::string addresses;
        for (const char* address : {"a", "b", "c", "d", "e"}) {
            addresses += cache.find(address) ? address : "";
        }
        return addresses;
    };
    keep("a", 2500);
    keep("b", 2500);
    keep("c", 2500);
    EXPECT_TRUE(cache.find("a"));
    keep("d", 2500);
    EXPECT_EQ(kept(), "acd");
    // Replacing a reply evicts no other, nor does one that is too large to keep.
    keep("a", 2000);
    keep("a", 2500);
    keep("e", 10'000);
    EXPECT_EQ(kept(), "acd");
    keep("e", 9000);
    EXPECT_EQ(kept(), "e");
    // Even empty bodies count, with the rest of the reply.
    for (int i = 0; i < 1000; ++i) {
        keep(std::to_string(i), 0);
    }
    EXPECT_FALSE(cache.find("900"));
    EXPECT_TRUE(cache.find("999"));
}

} // namespace
} // namespace platform
