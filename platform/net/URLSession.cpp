// SPDX-License-Identifier: MIT
#include "platform/net/URLSession.h"

#include "platform/net/HTTPCache.h"
#include "platform/net/RequestPacer.h"
#include "platform/net/URLTransfer.h"
#include "platform/text/Text.h"

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
using Rank = RequestPacer::Rank;

/// A request, also on its way to the background thread.
using Task = URLTransfer::Asker;

Rank rankOf(const URLTransfer& transfer) {
    return transfer.isSuperseded() ? Rank::superseded : Rank::current;
}

} // namespace

struct CurlURLSessions::State {
    using Item = std::variant<Task, std::function<void()>>;

    State(NotificationCenter& itsCenter, URLSessionOptions itsOptions)
        : center(itsCenter), options(std::move(itsOptions)) {
        for (const HostLimit& limit : options.hostLimits) {
            pacers.emplace_back(limit.perMinute, limit.atOnce);
        }
    }

    NotificationCenter& center;
    const URLSessionOptions options;
    std::atomic<std::size_t> openRequests = 0;
    std::atomic<bool> isStopped = false;

    /// Guards `arriving`, `thread`, `multi` and stopping. The background thread, which alone sets
    /// `multi`, reads it without the lock.
    std::mutex mutex;
    std::deque<Item> arriving;
    std::thread thread;
    CURLM* multi = nullptr;

    /// From here on, members belong to the background thread.
    /// One pacer for each of the options' limits, in their order.
    std::vector<RequestPacer> pacers;
    std::vector<Transfer> running;
    /// The newest last.
    std::vector<Transfer> waiting;
    HTTPCache cache{options.cacheBytes};

    void postOpenRequests() { center.post({URLSessions::openRequestsDidChange, {}, nullptr}); }

    void handOver(Item item) {
        const std::scoped_lock lock(mutex);
        if (isStopped) {
            return;
        }
        openRequests += std::holds_alternative<Task>(item) ? 1 : 0;
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
                if (auto* task = std::get_if<Task>(&item)) {
                    take(std::move(*task));
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

    void take(Task task) {
        const URL& asked = task.request.address;
        const std::string address = options.successor ? options.successor(asked).text : asked.text;
        const auto& known = task.request.known;
        if (URLTransfer* shared = transferOf(address, known)) {
            shared->join(std::move(task));
            return;
        }
        HTTPCache::Kept kept = known ? nullptr : cache.find(address);
        if (kept && !task.request.revalidates && HTTPCache::isFresh(*kept, options.date())) {
            complete(std::move(task),
                     {static_cast<int>(kept->status), kept->asked, kept->body, versionOf(*kept)});
            return;
        }
        auto transfer = std::make_unique<URLTransfer>(address, options);
        transfer->join(std::move(task));
        transfer->setKept(std::move(kept));
        begin(std::move(transfer));
    }

    /// The transfer of an address under the same condition, waiting, in which case it becomes the
    /// newest, or running; or null.
    URLTransfer* transferOf(const std::string& address, const std::optional<Version>& known) {
        const auto isIt = [&](const Transfer& one) {
            return one->address() == address && one->known() == known;
        };
        if (const auto found = std::ranges::find_if(waiting, isIt); found != waiting.end()) {
            std::rotate(found, found + 1, waiting.end());
            return waiting.back().get();
        }
        const auto found = std::ranges::find_if(running, isIt);
        return found == running.end() ? nullptr : found->get();
    }

    /// The pacer of the transfer's target host; null if that host is not paced.
    RequestPacer* pacerOf(const URLTransfer& transfer) {
        for (std::size_t i = 0; i < pacers.size(); ++i) {
            if (equalIgnoringCase(transfer.targetHost(), options.hostLimits[i].host)) {
                return &pacers[i];
            }
        }
        return nullptr;
    }

    void begin(Transfer transfer) {
        RequestPacer* const pacer = pacerOf(*transfer);
        // A superseded transfer must not overtake any that wait.
        if (pacer && (rankOf(*transfer) == Rank::superseded ||
                      !pacer->trySend(options.now(), Rank::current))) {
            waiting.push_back(std::move(transfer));
        } else {
            send(std::move(transfer));
        }
    }

    void send(Transfer transfer) {
        running.push_back(std::move(transfer));
        if (curl_multi_add_handle(multi, running.back()->begin()) != CURLM_OK) {
            end(running.back().get(), false);
        }
    }

    void beginWaiting() {
        for (const Rank rank : {Rank::current, Rank::superseded}) {
            for (std::size_t i = waiting.size(); i-- > 0;) {
                if (rankOf(*waiting[i]) == rank &&
                    pacerOf(*waiting[i])->trySend(options.now(), rank)) {
                    Transfer newest = std::move(waiting[i]);
                    waiting.erase(waiting.begin() + static_cast<std::ptrdiff_t>(i));
                    send(std::move(newest));
                }
            }
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
        if (RequestPacer* const pacer = pacerOf(*transfer)) {
            pacer->hasEnded();
        }
        curl_multi_remove_handle(multi, transfer->handle());
        Taken taken;
        switch (transfer->end(isWhole)) {
        case URLTransfer::Outcome::redirected:
            cache.remove(transfer->address());
            begin(std::move(transfer));
            return;
        case URLTransfer::Outcome::complete:
            if (!takeReply(*transfer, taken)) {
                begin(std::move(transfer));
                return;
            }
            break;
        case URLTransfer::Outcome::failed:
            break;
        }
        const Ending ending{taken.data ? static_cast<int>(transfer->reply().status) : 0,
                            transfer->reply().asked, taken.data, taken.version};
        std::vector<Task> askers = transfer->takeAskers();
        transfer.reset();
        for (Task& asker : askers) {
            complete(std::move(asker), ending);
        }
    }

    /// What a reply brings.
    struct Taken {
        std::optional<Data> data;
        Version version;
    };

    [[nodiscard]] static Version versionOf(const HTTPReply& reply) {
        return {HTTPCache::modifiedDate(reply), HTTPCache::entityTag(reply)};
    }

    /// Takes what a complete transfer brings, and puts its reply into the cache if that is allowed.
    /// Returns false if the transfer must begin again, unconditionally.
    bool takeReply(URLTransfer& transfer, Taken& taken) {
        constexpr long notModified = 304;
        HTTPReply& reply = transfer.reply();
        if (transfer.kept() && reply.status == notModified) {
            const auto kept = cache.freshened(transfer.address(), *transfer.kept(), reply);
            transfer.setKept(nullptr);
            if (kept) {
                taken.data = kept->body;
                taken.version = versionOf(*kept);
                reply.status = kept->status;
            }
            return kept != nullptr;
        }
        taken.data = reply.body;
        taken.version = versionOf(reply);
        if (!transfer.isRedirected() && !transfer.known()) {
            cache.keep(transfer.address(), std::move(reply));
        }
        return true;
    }

    void complete(Task task, const Ending& ending) {
        if (!isStopped) {
            if (task.request.ended) {
                task.request.ended(ending);
            }
            task.handler(ending.data);
            // Whatever the handler holds must be released before its end is announced.
            task = {};
            --openRequests;
            postOpenRequests();
        }
    }

    /// How long, in milliseconds, the thread may sleep unless something arrives.
    [[nodiscard]] int patience() {
        TimePoint next = TimePoint::max();
        for (const Transfer& transfer : waiting) {
            next = std::min(next, pacerOf(*transfer)->nextChance(rankOf(*transfer)));
        }
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

void CurlURLSessions::startDataTask(const Request& request, CompletionHandler handler) {
    state_->handOver(Task{request, std::move(handler)});
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
