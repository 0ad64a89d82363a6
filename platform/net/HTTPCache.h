// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"

#include <array>
#include <cstddef>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace platform {

/// The parts of a complete reply to a GET that a cache uses.
struct HTTPReply {
    long status = 0;
    /// The received fields among `HTTPCache::fieldNames`; several lines of one name are joined with
    /// commas.
    std::map<std::string, std::string, std::less<>> fields;
    /// Decompressed.
    Data body;
    /// When the request was sent and when its reply was complete, by the wall clock: a monotonic
    /// one does not count the hours in which the machine sleeps.
    Date asked;
    Date received;
};

/// Keeps replies in memory and reuses them as RFC 9111 allows a private cache to. It keeps only
/// replies with status 200 that state a lifetime or have a validator; it never guesses a lifetime.
/// A reply may vary with Accept-Encoding, which is the same in all requests of the program, but
/// with nothing else. Has no clock and no locks of its own.
class HTTPCache {
public:
    using Kept = std::shared_ptr<const HTTPReply>;

    /// The header fields that matter to the cache, in lower case.
    static constexpr std::array fieldNames{"age",     "cache-control", "date", "etag",
                                           "expires", "last-modified", "vary"};

    /// `byteLimit` bounds everything kept, addresses and header fields included.
    explicit HTTPCache(std::size_t byteLimit) : byteLimit_(byteLimit) {}

    /// The reply kept for an address, fresh or not, or null. Counts as a use.
    [[nodiscard]] Kept find(const std::string& address);
    /// Whether a reply may be reused at `now` without revalidation. Never if the clock has gone
    /// back, so that `now` is before the reply or the reply before its request.
    [[nodiscard]] static bool isFresh(const HTTPReply& reply, Date now);
    /// The header lines that ask for a reply only if it differs from the kept one; empty if that
    /// has no validator.
    [[nodiscard]] static std::vector<std::string> conditions(const HTTPReply& kept);
    /// When a reply says that it was last modified; absent if it does not.
    [[nodiscard]] static std::optional<Date> modifiedDate(const HTTPReply& reply);
    /// A reply's entity tag; empty if it has none.
    [[nodiscard]] static std::string entityTag(const HTTPReply& reply);
    /// Whether a text is an entity tag (RFC 9110, 8.8.3), and so fit to be sent.
    [[nodiscard]] static bool isEntityTag(std::string_view text);
    /// As header lines have it (RFC 9110, 5.6.7).
    [[nodiscard]] static std::string textOfDate(Date date);

    /// Replaces the kept reply with this one, or just removes it if this one may not be kept. The
    /// least recently used replies make room. A server error (5xx, 429) says nothing about the kept
    /// reply, which stays.
    void keep(const std::string& address, HTTPReply reply);
    /// Updates the kept reply with the fields and times of the 304 that answered its conditions,
    /// and returns it. If the 304 is about another reply, returns null and keeps nothing.
    [[nodiscard]] Kept freshened(const std::string& address, const HTTPReply& kept,
                                 const HTTPReply& notModified);
    void remove(const std::string& address);

private:
    struct Entry {
        std::string address;
        Kept reply;
        std::size_t bytes;
    };

    void insert(const std::string& address, Kept reply);

    std::size_t byteLimit_;
    std::size_t bytes_ = 0;
    /// Most recently used first.
    std::list<Entry> entries_;
    std::unordered_map<std::string, std::list<Entry>::iterator> places_;
};

} // namespace platform
