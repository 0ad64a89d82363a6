// SPDX-License-Identifier: MIT
#include "platform/net/HTTPCache.h"

#include "platform/text/Text.h"

#include <curl/curl.h>
#include <fmt/chrono.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <optional>
#include <string_view>
#include <utility>

namespace platform {
namespace {

using std::chrono::seconds;

std::string_view fieldOf(const HTTPReply& reply, std::string_view name) {
    const auto found = reply.fields.find(name);
    return found == reply.fields.end() ? std::string_view() : std::string_view(found->second);
}

bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < ' ' && c != '\t') || byte == 0x7F;
}

/// Removes the first element from a list and returns it (RFC 9110, 5.6.1). A comma within quotes
/// does not separate elements.
std::string_view takeElement(std::string_view& list) {
    std::size_t end = 0;
    for (bool isQuoted = false; end < list.size() && (isQuoted || list[end] != ','); ++end) {
        if (list[end] == '"') {
            isQuoted = !isQuoted;
        } else if (isQuoted && list[end] == '\\') {
            ++end;
        }
    }
    end = std::min(end, list.size());
    const std::string_view element = trimmed(list.substr(0, end));
    list.remove_prefix(std::min(end + 1, list.size()));
    return element;
}

/// The argument of the first Cache-Control directive of that name, empty if it has none; absent
/// without such a directive.
std::optional<std::string_view> directive(const HTTPReply& reply, std::string_view name) {
    for (std::string_view rest = fieldOf(reply, "cache-control"); !rest.empty();) {
        const std::string_view element = takeElement(rest);
        const std::size_t equals = std::min(element.find('='), element.size());
        if (equalIgnoringCase(trimmed(element.substr(0, equals)), name)) {
            std::string_view argument =
                trimmed(element.substr(std::min(equals + 1, element.size())));
            if (argument.size() > 1 && argument.front() == '"' && argument.back() == '"') {
                argument = argument.substr(1, argument.size() - 2);
            }
            return argument;
        }
    }
    return std::nullopt;
}

/// Absent unless the text is a number of seconds; a larger one than 2^31 counts as 2^31 (RFC 9111,
/// 1.2.2).
std::optional<seconds> secondsIn(std::string_view text) {
    constexpr std::int64_t most = std::int64_t{1} << 31;
    std::int64_t count = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    if (text.empty() || text.front() == '-' || end != text.data() + text.size() ||
        error == std::errc::invalid_argument) {
        return std::nullopt;
    }
    return seconds(error == std::errc() ? std::min(count, most) : most);
}

/// A date beyond the year 9999, which has no form in HTTP, is none.
std::optional<Date> dateIn(std::string_view text) {
    constexpr auto end = std::chrono::sys_days(std::chrono::year(10000) / 1 / 1);
    const std::time_t date = curl_getdate(std::string(text).c_str(), nullptr);
    return date < 0 || seconds(date) >= end.time_since_epoch() ? std::nullopt
                                                               : std::optional(Date(seconds(date)));
}

Date dateOf(const HTTPReply& reply) {
    return dateIn(fieldOf(reply, "date")).value_or(reply.received);
}

/// RFC 9111, 4.2.1: absent if the reply states no lifetime, zero if it cannot be parsed.
std::optional<std::chrono::microseconds> lifetimeOf(const HTTPReply& reply) {
    if (const auto longest = directive(reply, "max-age")) {
        return secondsIn(*longest).value_or(seconds(0));
    }
    if (const std::string_view expires = fieldOf(reply, "expires"); !expires.empty()) {
        const Date date = dateOf(reply);
        return dateIn(expires).value_or(date) - date;
    }
    return std::nullopt;
}

/// RFC 9111, 4.2.3.
std::chrono::microseconds ageAt(Date now, const HTTPReply& reply) {
    std::string_view ages = fieldOf(reply, "age");
    const seconds told = secondsIn(takeElement(ages)).value_or(seconds(0));
    return std::max<std::chrono::microseconds>(reply.received - dateOf(reply),
                                               told + (reply.received - reply.asked)) +
           (now - reply.received);
}

bool mayBeKept(const HTTPReply& reply) {
    if (reply.status != 200 || directive(reply, "no-store")) {
        return false;
    }
    for (std::string_view rest = fieldOf(reply, "vary"); !rest.empty();) {
        const std::string_view name = takeElement(rest);
        if (!name.empty() && !equalIgnoringCase(name, "accept-encoding")) {
            return false;
        }
    }
    return HTTPCache::isFresh(reply, reply.received) || !HTTPCache::conditions(reply).empty();
}

/// Whether a 304 is about the kept reply (RFC 9111, 4.3.4): compares the entity tags if the 304 has
/// one, otherwise Last-Modified if it has that.
bool speaksOf(const HTTPReply& notModified, const HTTPReply& kept) {
    std::string_view tag = fieldOf(notModified, "etag");
    std::string_view keptTag = fieldOf(kept, "etag");
    if (!tag.empty()) {
        constexpr std::string_view weak = "W/";
        if (tag.starts_with(weak)) {
            tag.remove_prefix(weak.size());
            keptTag.remove_prefix(keptTag.starts_with(weak) ? weak.size() : 0);
        }
        return tag == keptTag;
    }
    const std::string_view changed = fieldOf(notModified, "last-modified");
    return changed.empty() || changed == fieldOf(kept, "last-modified");
}

} // namespace

HTTPCache::Kept HTTPCache::find(const std::string& address) {
    const auto found = places_.find(address);
    if (found == places_.end()) {
        return nullptr;
    }
    entries_.splice(entries_.begin(), entries_, found->second);
    return entries_.front().reply;
}

bool HTTPCache::isFresh(const HTTPReply& reply, Date now) {
    const bool isInOrder = reply.asked <= reply.received && reply.received <= now;
    return isInOrder && !directive(reply, "no-cache") &&
           lifetimeOf(reply).value_or(seconds(0)) > ageAt(now, reply);
}

std::vector<std::string> HTTPCache::conditions(const HTTPReply& kept) {
    std::vector<std::string> lines;
    const auto addLine = [&](std::string_view name, std::string_view value) {
        // What a server sent is not sent back if it could pass for more than one line.
        if (!value.empty() && std::ranges::none_of(value, isControl)) {
            lines.push_back(fmt::format("{}: {}", name, value));
        }
    };
    addLine("If-None-Match", fieldOf(kept, "etag"));
    addLine("If-Modified-Since", fieldOf(kept, "last-modified"));
    return lines;
}

std::optional<Date> HTTPCache::modifiedDate(const HTTPReply& reply) {
    const std::string_view changed = fieldOf(reply, "last-modified");
    return changed.empty() ? std::nullopt : dateIn(changed);
}

std::string HTTPCache::entityTag(const HTTPReply& reply) {
    return std::string(fieldOf(reply, "etag"));
}

bool HTTPCache::isEntityTag(std::string_view text) {
    constexpr std::string_view weak = "W/";
    if (text.starts_with(weak)) {
        text.remove_prefix(weak.size());
    }
    return text.size() >= 2 && text.front() == '"' && text.back() == '"' &&
           std::ranges::all_of(text.substr(1, text.size() - 2),
                               [](char c) { return c > ' ' && c < '\x7F' && c != '"'; });
}

std::string HTTPCache::textOfDate(Date date) {
    return fmt::format("{:%a, %d %b %Y %H:%M:%S} GMT",
                       fmt::gmtime(std::chrono::system_clock::to_time_t(
                           std::chrono::floor<std::chrono::seconds>(date))));
}

void HTTPCache::keep(const std::string& address, HTTPReply reply) {
    constexpr long tooManyRequests = 429;
    if (reply.status >= 500 || reply.status == tooManyRequests) {
        return;
    }
    remove(address);
    if (mayBeKept(reply)) {
        insert(address, std::make_shared<const HTTPReply>(std::move(reply)));
    }
}

HTTPCache::Kept HTTPCache::freshened(const std::string& address, const HTTPReply& kept,
                                     const HTTPReply& notModified) {
    remove(address);
    if (!speaksOf(notModified, kept)) {
        return nullptr;
    }
    const auto merged = std::make_shared<HTTPReply>(kept);
    // These two describe a single message: if the 304 lacks them, the kept values would be wrong.
    merged->fields.erase("age");
    merged->fields.erase("date");
    for (const auto& [name, value] : notModified.fields) {
        merged->fields.insert_or_assign(name, value);
    }
    merged->asked = notModified.asked;
    merged->received = notModified.received;
    if (mayBeKept(*merged)) {
        insert(address, merged);
    }
    return merged;
}

void HTTPCache::remove(const std::string& address) {
    if (const auto found = places_.find(address); found != places_.end()) {
        bytes_ -= found->second->bytes;
        entries_.erase(found->second);
        places_.erase(found);
    }
}

void HTTPCache::insert(const std::string& address, Kept reply) {
    // The address is stored in the entry and as the key of `places_`.
    std::size_t bytes = sizeof(HTTPReply) + 2 * (sizeof(Entry) + address.size());
    bytes += reply->body.size();
    for (const auto& [name, value] : reply->fields) {
        bytes += 2 * sizeof(std::string) + name.size() + value.size();
    }
    if (bytes > byteLimit_) {
        return;
    }
    while (bytes_ + bytes > byteLimit_) {
        remove(std::string(entries_.back().address));
    }
    entries_.push_front({address, std::move(reply), bytes});
    places_.emplace(address, entries_.begin());
    bytes_ += bytes;
}

} // namespace platform
