// SPDX-License-Identifier: MIT
#include "platform/URLTransfer.h"

#include "platform/Addresses.h"
#include "platform/RetiredAddresses.h"
#include "platform/Text.h"

#include <curl/curl.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace platform {
namespace {

/// One part of an address, or nothing where it has none.
std::string partOf(const std::string& address, CURLUPart part) {
    std::string result;
    CURLU* parsed = curl_url();
    char* text = nullptr;
    if (curl_url_set(parsed, CURLUPART_URL, address.c_str(), 0) == CURLUE_OK &&
        curl_url_get(parsed, part, &text, 0) == CURLUE_OK) {
        result = text;
    }
    curl_free(text);
    curl_url_cleanup(parsed);
    return result;
}

bool isHttps(const std::string& address) {
    return partOf(address, CURLUPART_SCHEME) == "https";
}

} // namespace

void URLTransfer::Free::operator()(void* handle) const {
    curl_easy_cleanup(handle);
}

void URLTransfer::FreeList::operator()(void* list) const {
    curl_slist_free_all(static_cast<curl_slist*>(list));
}

URLTransfer::URLTransfer(const URL& address, URLSessions::CompletionHandler handler,
                         const URLSessionOptions& options)
    : address_(successorOf(address).text),
      handler_(std::move(handler)),
      options_(options),
      timeLeft_(options.totalLimit) {}

bool URLTransfer::isPaced() const {
    return equalIgnoringCase(partOf(address_, CURLUPART_HOST), addresses::dataServerHost);
}

void* URLTransfer::begin() {
    begun_ = lastByte_ = options_.now();
    headerBytes_ = 0;
    body_.clear();
    handle_.reset(curl_easy_init());
    CURL* handle = handle_.get();
    curl_easy_setopt(handle, CURLOPT_URL, address_.c_str());
    curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(handle, CURLOPT_USERAGENT, "Nosig/" NOSIG_VERSION);
    curl_easy_setopt(handle, CURLOPT_ACCEPT_ENCODING, "gzip");
    curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, receiveHeader);
    curl_easy_setopt(handle, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, receiveBody);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(handle, CURLOPT_PRIVATE, this);
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    // A second request waits for the first one's connection rather than open one beside it.
    curl_easy_setopt(handle, CURLOPT_PIPEWAIT, 1L);
    // A name that is still being looked up must not hold up the end of the program.
    curl_easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L);
    if (!options_.certificateFile.empty()) {
        curl_easy_setopt(handle, CURLOPT_CAINFO, options_.certificateFile.c_str());
        curl_easy_setopt(handle, CURLOPT_CAPATH, nullptr);
    }
    if (!options_.connectTo.empty()) {
        connectTo_.reset(curl_slist_append(nullptr, ("::" + options_.connectTo).c_str()));
        curl_easy_setopt(handle, CURLOPT_CONNECT_TO, connectTo_.get());
    }
    return handle;
}

URLTransfer::TimePoint URLTransfer::deadline() const {
    return std::min<TimePoint>(lastByte_ + options_.idleLimit, begun_ + timeLeft_);
}

URLTransfer::Outcome URLTransfer::end(bool isWhole) {
    const char* target = nullptr;
    curl_easy_getinfo(handle_.get(), CURLINFO_REDIRECT_URL, &target);
    const std::string redirectedTo = target ? target : "";
    handle_.reset();
    timeLeft_ -= options_.now() - begun_;
    if (!isWhole) {
        return Outcome::failed;
    }
    if (redirectedTo.empty()) {
        return Outcome::complete;
    }
    if (!mayGoTo(redirectedTo)) {
        return Outcome::failed;
    }
    address_ = redirectedTo;
    return Outcome::redirected;
}

bool URLTransfer::mayGoTo(const std::string& target) {
    return redirects_++ < options_.redirectLimit && isHttps(address_) && isHttps(target);
}

void URLTransfer::complete(Outcome outcome) {
    handler_(outcome == Outcome::complete ? std::optional(std::move(body_)) : std::nullopt);
}

std::size_t URLTransfer::receiveHeader(char* /*bytes*/, std::size_t size, std::size_t count,
                                       void* self) {
    auto& transfer = *static_cast<URLTransfer*>(self);
    transfer.lastByte_ = transfer.options_.now();
    transfer.headerBytes_ += size * count;
    return transfer.headerBytes_ > transfer.options_.byteLimit ? 0 : size * count;
}

std::size_t URLTransfer::receiveBody(char* bytes, std::size_t size, std::size_t count, void* self) {
    auto& transfer = *static_cast<URLTransfer*>(self);
    transfer.lastByte_ = transfer.options_.now();
    const auto* first = reinterpret_cast<const std::byte*>(bytes);
    if (transfer.body_.size() + size * count > transfer.options_.byteLimit) {
        return 0;
    }
    transfer.body_.insert(transfer.body_.end(), first, first + size * count);
    return size * count;
}

} // namespace platform
