// SPDX-License-Identifier: MIT
#include "platform/net/URLTransfer.h"

#include "platform/host/Files.h"

#include <curl/curl.h>

#include <algorithm>
#include <utility>

namespace platform {
namespace {

/// One part of an address; empty if it has none.
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

/// The file of all certificate authorities that the system trusts; empty if there is none.
const std::string& systemAuthorities() {
    static const std::string file = [] {
        const char* built = curl_version_info(CURLVERSION_NOW)->cainfo;
        return built != nullptr && fileExists(built) ? std::string(built) : std::string();
    }();
    return file;
}

} // namespace

void URLTransfer::Free::operator()(void* handle) const {
    curl_easy_cleanup(handle);
}

void URLTransfer::FreeList::operator()(void* list) const {
    curl_slist_free_all(static_cast<curl_slist*>(list));
}

URLTransfer::URLTransfer(std::string address, const URLSessionOptions& options)
    : address_(std::move(address)),
      target_(address_),
      targetHost_(partOf(target_, CURLUPART_HOST)),
      options_(options),
      timeLeft_(options.totalLimit) {}

void URLTransfer::join(Asker asker) {
    revalidates_ |= asker.request.revalidates;
    known_ = asker.request.known;
    askers_.push_back(std::move(asker));
}

bool URLTransfer::isSuperseded() const {
    return std::ranges::all_of(askers_, [](const Asker& asker) {
        return asker.request.superseded && *asker.request.superseded;
    });
}

void* URLTransfer::begin() {
    begun_ = lastByte_ = options_.now();
    headerBytes_ = 0;
    reply_ = {};
    reply_.asked = options_.date();
    handle_.reset(curl_easy_init());
    CURL* handle = handle_.get();
    curl_easy_setopt(handle, CURLOPT_URL, target_.c_str());
    curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(handle, CURLOPT_USERAGENT, options_.userAgent.c_str());
    curl_easy_setopt(handle, CURLOPT_ACCEPT_ENCODING, "gzip");
    curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, receiveHeader);
    curl_easy_setopt(handle, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, receiveBody);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(handle, CURLOPT_PRIVATE, this);
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    // A second request waits for the first one's connection rather than open another.
    curl_easy_setopt(handle, CURLOPT_PIPEWAIT, 1L);
    // A pending name lookup must not delay the end of the program.
    curl_easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L);
    const std::string authorities =
        options_.certificateFile.empty() ? systemAuthorities() : options_.certificateFile;
    if (!authorities.empty()) {
        // Without a folder beside the file, all connections share what was read of it once. With
        // one, each would read the system's file anew: 20 ms and almost a mebibyte.
        curl_easy_setopt(handle, CURLOPT_CAINFO, authorities.c_str());
        curl_easy_setopt(handle, CURLOPT_CAPATH, nullptr);
    }
    if (!options_.connectTo.empty()) {
        connectTo_.reset(curl_slist_append(nullptr, ("::" + options_.connectTo).c_str()));
        curl_easy_setopt(handle, CURLOPT_CONNECT_TO, connectTo_.get());
    }
    setHeaderLines();
    return handle;
}

void URLTransfer::setHeaderLines() {
    std::vector<std::string> lines;
    if (kept_) {
        lines = HTTPCache::conditions(*kept_);
    } else if (known_ && HTTPCache::isEntityTag(known_->tag)) {
        lines.push_back("If-None-Match: " + known_->tag);
    } else if (known_ && known_->modified) {
        lines.push_back("If-Modified-Since: " + HTTPCache::textOfDate(*known_->modified));
    }
    if (revalidates_) {
        lines.emplace_back("Cache-Control: no-cache");
    }
    curl_slist* list = nullptr;
    for (const std::string& line : lines) {
        list = curl_slist_append(list, line.c_str());
    }
    headerLines_.reset(list);
    curl_easy_setopt(handle_.get(), CURLOPT_HTTPHEADER, list);
}

void URLTransfer::readHead() {
    curl_easy_getinfo(handle_.get(), CURLINFO_RESPONSE_CODE, &reply_.status);
    for (const char* name : HTTPCache::fieldNames) {
        curl_header* line = nullptr;
        for (std::size_t i = 0;
             curl_easy_header(handle_.get(), name, i, CURLH_HEADER, -1, &line) == CURLHE_OK; ++i) {
            std::string& value = reply_.fields[name];
            value += (i > 0 ? ", " : "") + std::string(line->value);
        }
    }
    reply_.received = options_.date();
}

URLTransfer::TimePoint URLTransfer::deadline() const {
    return std::min<TimePoint>(lastByte_ + options_.idleLimit, begun_ + timeLeft_);
}

URLTransfer::Outcome URLTransfer::end(bool isWhole) {
    const char* target = nullptr;
    curl_easy_getinfo(handle_.get(), CURLINFO_REDIRECT_URL, &target);
    const std::string redirectedTo = target ? target : "";
    readHead();
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
    target_ = redirectedTo;
    targetHost_ = partOf(target_, CURLUPART_HOST);
    kept_ = nullptr;
    return Outcome::redirected;
}

bool URLTransfer::mayGoTo(const std::string& target) {
    return redirects_++ < options_.redirectLimit && isHttps(target_) && isHttps(target);
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
    Data& body = transfer.reply_.body;
    if (body.size() + size * count > transfer.options_.byteLimit) {
        return 0;
    }
    body.insert(body.end(), first, first + size * count);
    for (const Asker& asker : transfer.askers_) {
        if (asker.request.arrived) {
            asker.request.arrived(body.size());
        }
    }
    return size * count;
}

} // namespace platform
