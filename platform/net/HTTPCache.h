// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"

#include <array>
#include <cstddef>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace platform {

/// A complete reply to a GET, as far as a cache looks at it.
struct HTTPReply {
    long status = 0;
    /// Those of `HTTPCache::fieldNames` that came; lines of one name are joined with commas.
    std::map<std::string, std::string, std::less<>> fields;
    /// Unpacked.
    Data body;
    /// When the request was sent and when its reply was there, on the wall clock: unlike others it
    /// counts the hours in which the machine sleeps.
    Date asked;
    Date received;
};

/// Replies kept in memory and reused as RFC 9111 lets a private cache. Only those with status 200
/// are kept, and of these only such as tell how long they last or can be asked after: no lifetime
/// is guessed. One that varies with anything but the accepted coding is not kept, for all requests
/// of the program accept the same. No clock and no locks of its own.
class HTTPCache {
public:
    using Kept = std::shared_ptr<const HTTPReply>;

    /// The header fields that matter here, in lower case.
    static constexpr std::array fieldNames{"age",     "cache-control", "date", "etag",
                                           "expires", "last-modified", "vary"};

    /// Of all that is kept, addresses and fields included.
    explicit HTTPCache(std::size_t byteLimit) : byteLimit_(byteLimit) {}

    /// The reply kept for an address, fresh or not, or null. Counts as a use.
    [[nodiscard]] Kept find(const std::string& address);
    /// Whether a reply may be reused at `now` without asking after it. Never so while the clock
    /// stands before the moment of its request.
    [[nodiscard]] static bool isFresh(const HTTPReply& reply, Date now);
    /// The header lines that ask for a reply only if it is no longer the kept one; none where it
    /// bears nothing to tell it by.
    [[nodiscard]] static std::vector<std::string> conditions(const HTTPReply& kept);

    /// Takes a reply in place of the kept one, if it may be kept; those used longest ago make room.
    /// A server's own trouble (5xx, 429) tells nothing about the kept one, which stays.
    void keep(const std::string& address, HTTPReply reply);
    /// The kept reply with the fields and times of the 304 that was the answer to its conditions.
    /// Null, and nothing is kept, where the 304 speaks of another reply.
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
    /// The one used last first.
    std::list<Entry> entries_;
    std::unordered_map<std::string, std::list<Entry>::iterator> places_;
};

} // namespace platform
