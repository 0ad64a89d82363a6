// SPDX-License-Identifier: MIT
#include "platform/URLSession.h"

#include "platform/RequestPacer.h"
#include "platform/URLTransfer.h"

#include <curl/curl.h>

#include <algorithm>
#include <atomic>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <variant>
#include <vector>

namespace platform {
namespace {

using Transfer = std::unique_ptr<URLTransfer>;
using TimePoint = URLTransfer::TimePoint;

} // namespace

struct CurlURLSessions::State {
    using Item = std::variant<Transfer, std::function<void()>>;

    State(NotificationCenter& itsCenter, URLSessionOptions itsOptions)
        : center(itsCenter), options(std::move(itsOptions)) {}

    NotificationCenter& center;
    const URLSessionOptions options;
    std::atomic<std::size_t> openRequests = 0;
    std::atomic<bool> isStopped = false;

    /// Guards the three that follow, and the stopping. The thread itself reads `multi` without it.
    std::mutex mutex;
    std::deque<Item> arriving;
    std::thread thread;
    CURLM* multi = nullptr;

    /// The thread's own, from here on.
    RequestPacer pacer{options.pacedPerMinute, options.pacedAtOnce};
    std::vector<Transfer> running;
    /// The newest last.
    std::vector<Transfer> waiting;

    void postOpenRequests() { center.post({URLSessions::openRequestsDidChange, {}, nullptr}); }

    void handOver(Item item) {
        const std::scoped_lock lock(mutex);
        if (isStopped) {
            return;
        }
        openRequests += std::holds_alternative<Transfer>(item) ? 1 : 0;
        arriving.push_back(std::move(item));
        if (!thread.joinable()) {
            thread = std::thread([this] { run(); });
        } else if (multi) {
            curl_multi_wakeup(multi);
        }
    }

    void run() {
        curl_global_init(CURL_GLOBAL_DEFAULT);
        {
            const std::scoped_lock lock(mutex);
            multi = curl_multi_init();
        }
        while (std::optional<std::deque<Item>> items = takeArriving()) {
            for (Item& item : *items) {
                if (auto* transfer = std::get_if<Transfer>(&item)) {
                    begin(std::move(*transfer));
                } else if (!isStopped) {
                    std::get<std::function<void()>>(item)();
                }
            }
            beginWaiting();
            int ignored = 0;
            curl_multi_perform(multi, &ignored);
            endDone();
            endLate();
            curl_multi_poll(multi, nullptr, 0, patience(), nullptr);
        }
        for (const Transfer& transfer : running) {
            curl_multi_remove_handle(multi, transfer->handle());
        }
        running.clear();
        waiting.clear();
        openRequests = 0;
        const std::scoped_lock lock(mutex);
        curl_multi_cleanup(std::exchange(multi, nullptr));
        curl_global_cleanup();
    }

    std::optional<std::deque<Item>> takeArriving() {
        const std::scoped_lock lock(mutex);
        return isStopped ? std::nullopt : std::optional(std::exchange(arriving, {}));
    }

    void begin(Transfer transfer) {
        if (transfer->isPaced() && !pacer.trySend(options.now())) {
            waiting.push_back(std::move(transfer));
            return;
        }
        running.push_back(std::move(transfer));
        if (curl_multi_add_handle(multi, running.back()->begin()) != CURLM_OK) {
            end(running.back().get(), false);
        }
    }

    void beginWaiting() {
        while (!waiting.empty() && pacer.nextChance() <= options.now()) {
            Transfer newest = std::move(waiting.back());
            waiting.pop_back();
            begin(std::move(newest));
        }
    }

    void endDone() {
        int ignored = 0;
        while (const CURLMsg* message = curl_multi_info_read(multi, &ignored)) {
            URLTransfer* transfer = nullptr;
            curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
            end(transfer, message->data.result == CURLE_OK);
        }
    }

    void endLate() {
        const TimePoint now = options.now();
        const auto isLate = [now](const Transfer& one) { return one->deadline() <= now; };
        for (auto late = std::ranges::find_if(running, isLate); late != running.end();
             late = std::ranges::find_if(running, isLate)) {
            end(late->get(), false);
        }
    }

    void end(URLTransfer* ended, bool isWhole) {
        const auto found = std::ranges::find(running, ended, &Transfer::get);
        Transfer transfer = std::move(*found);
        running.erase(found);
        if (transfer->isPaced()) {
            pacer.hasEnded();
        }
        curl_multi_remove_handle(multi, transfer->handle());
        const auto outcome = transfer->end(isWhole);
        if (outcome == URLTransfer::Outcome::redirected) {
            begin(std::move(transfer));
            return;
        }
        if (!isStopped) {
            transfer->complete(outcome);
            transfer.reset();
            --openRequests;
            postOpenRequests();
        }
    }

    /// How long, in milliseconds, nothing happens by itself.
    [[nodiscard]] int patience() const {
        TimePoint next = waiting.empty() ? TimePoint::max() : pacer.nextChance();
        for (const Transfer& transfer : running) {
            next = std::min(next, transfer->deadline());
        }
        const TimePoint now = options.now();
        const auto longest = std::chrono::hours(1);
        return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(
                                    std::clamp<TimePoint>(next, now, now + longest) - now)
                                    .count());
    }
};

CurlURLSessions::CurlURLSessions(NotificationCenter& center, URLSessionOptions options)
    : state_(std::make_unique<State>(center, std::move(options))) {}

CurlURLSessions::~CurlURLSessions() {
    stop();
}

void CurlURLSessions::startDataTask(const URL& address, CompletionHandler handler) {
    state_->handOver(std::make_unique<URLTransfer>(address, std::move(handler), state_->options));
    state_->postOpenRequests();
}

void CurlURLSessions::perform(std::function<void()> work) {
    state_->handOver(std::move(work));
}

std::size_t CurlURLSessions::openRequests() const {
    return state_->openRequests;
}

void CurlURLSessions::stop() {
    std::deque<State::Item> dropped;
    {
        const std::scoped_lock lock(state_->mutex);
        state_->isStopped = true;
        dropped = std::exchange(state_->arriving, {});
        if (state_->multi) {
            curl_multi_wakeup(state_->multi);
        }
    }
    if (state_->thread.joinable()) {
        state_->thread.join();
    }
}

} // namespace platform
