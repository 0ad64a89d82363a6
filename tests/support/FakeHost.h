// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <deque>
#include <map>
#include <mutex>
#include <span>
#include <utility>

/// Simple fakes of what lies outside the process. Only the test may use their public members, and
/// only while no other thread uses the fake. Everything else is as thread-safe as the service
/// promises.
namespace support {

class FakeUserDefaults final : public platform::UserDefaults {
public:
    [[nodiscard]] platform::Value objectForKey(std::string_view key) const override {
        const std::scoped_lock lock(mutex_);
        const auto found = values_.find(key);
        return found == values_.end() ? platform::Value() : found->second;
    }
    void setObject(const platform::Value& value, std::string_view key) override {
        const std::scoped_lock lock(mutex_);
        values_[std::string(key)] = value;
    }

private:
    mutable std::mutex mutex_;
    std::map<std::string, platform::Value, std::less<>> values_;
};

class FakeSearchPaths final : public platform::SearchPaths {
public:
    [[nodiscard]] std::vector<std::string> paths(int kind, int domainMask) const override {
        const auto found = known.find({kind, domainMask});
        return found == known.end() ? std::vector<std::string>() : found->second;
    }

    std::map<std::pair<int, int>, std::vector<std::string>> known;
};

class FakeBundle final : public platform::Bundle {
public:
    [[nodiscard]] std::string resourcePath() const override { return resources; }
    [[nodiscard]] std::optional<std::string> infoValue(std::string_view key) const override {
        const auto found = info.find(key);
        return found == info.end() ? std::nullopt : std::optional(found->second);
    }

    [[nodiscard]] std::optional<std::string> replacementOf(std::string_view name) const override {
        return replacement ? replacement(name) : std::nullopt;
    }

    std::function<std::optional<std::string>(std::string_view name)> replacement;
    std::string resources;
    std::map<std::string, std::string, std::less<>> info;
};

/// Takes its answers from a queue; once that is empty, every panel is cancelled.
class FakePanels final : public platform::Panels {
public:
    [[nodiscard]] std::optional<platform::URL>
    openPanel(const std::vector<std::string>& types) override {
        askedTypes = types;
        return next();
    }
    [[nodiscard]] std::optional<platform::URL>
    savePanel(const std::function<std::string(const std::string&)>& writtenPath) override {
        askedWrittenPath = writtenPath;
        if (whileAsked) {
            whileAsked();
        }
        return next();
    }

    std::deque<std::optional<platform::URL>> answers;
    int timesAsked = 0;
    std::vector<std::string> askedTypes;
    std::function<std::string(const std::string&)> askedWrittenPath;
    /// Called while a save panel is open.
    std::function<void()> whileAsked;

private:
    std::optional<platform::URL> next() {
        ++timesAsked;
        if (answers.empty()) {
            return std::nullopt;
        }
        std::optional<platform::URL> answer = std::move(answers.front());
        answers.pop_front();
        return answer;
    }
};

/// Timers that fire only when the test says so.
class FakeTimers final : public platform::Timers {
public:
    [[nodiscard]] std::unique_ptr<platform::Timer>
    scheduleRepeating(std::chrono::milliseconds interval, std::function<void()> action) override {
        auto running = std::make_unique<Running>();
        running->entry = std::make_shared<Entry>(Entry{interval, std::move(action)});
        entries_.push_back(running->entry);
        return running;
    }

    /// Fires every running timer once.
    void fire() {
        for (const std::weak_ptr<Entry>& timer : std::vector(entries_)) {
            if (const std::shared_ptr<Entry> entry = timer.lock()) {
                entry->action();
            }
        }
    }
    [[nodiscard]] std::vector<std::chrono::milliseconds> runningIntervals() const {
        std::vector<std::chrono::milliseconds> intervals;
        for (const std::weak_ptr<Entry>& timer : entries_) {
            if (const std::shared_ptr<Entry> entry = timer.lock()) {
                intervals.push_back(entry->interval);
            }
        }
        return intervals;
    }

private:
    struct Entry {
        std::chrono::milliseconds interval;
        std::function<void()> action;
    };
    struct Running final : platform::Timer {
        std::shared_ptr<Entry> entry;
    };

    std::vector<std::weak_ptr<Entry>> entries_;
};

/// Work that may be queued on any thread, and runs only when the test says so.
class QueuedWork {
public:
    void push(std::function<void()> work) {
        const std::scoped_lock lock(mutex_);
        queue_.push_back(std::move(work));
    }
    /// Runs the queued work, and what that queues in turn, until nothing is left.
    void run() {
        while (const std::function<void()> work = next()) {
            work();
        }
    }
    [[nodiscard]] std::size_t queued() const {
        const std::scoped_lock lock(mutex_);
        return queue_.size();
    }

private:
    std::function<void()> next() {
        const std::scoped_lock lock(mutex_);
        if (queue_.empty()) {
            return nullptr;
        }
        std::function<void()> work = std::move(queue_.front());
        queue_.pop_front();
        return work;
    }

    mutable std::mutex mutex_;
    std::deque<std::function<void()>> queue_;
};

class FakeMainThread final : public platform::MainThread, public QueuedWork {
public:
    void perform(std::weak_ptr<void> target, std::function<void()> work) override {
        push([target = std::move(target), work = std::move(work)] {
            if (const std::shared_ptr<void> alive = target.lock()) {
                work();
            }
        });
    }
};

struct FakeClock final : platform::Clock {
    [[nodiscard]] platform::Date now() const override { return time; }

    std::atomic<platform::Date> time =
        platform::Date(std::chrono::sys_days(std::chrono::year(2024) / 3 / 1));
};

class FakeLog final : public platform::Log {
public:
    void line(std::string_view text) override {
        const std::scoped_lock lock(mutex_);
        lines_.emplace_back(text);
    }
    [[nodiscard]] std::vector<std::string> lines() const {
        const std::scoped_lock lock(mutex_);
        return lines_;
    }

private:
    mutable std::mutex mutex_;
    std::vector<std::string> lines_;
};

struct FakeWorkspace final : platform::Workspace {
    void openURL(const platform::URL& address) override { opened.push_back(address.text); }
    std::vector<std::string> opened;
};

struct FakeEvents final : platform::Events {
    [[nodiscard]] Event currentEvent() const override { return event; }
    [[nodiscard]] double doubleClickInterval() const override { return 0.5; }
    Event event;
};

/// A service for notices that is there unless the test says otherwise, and shows nothing.
class FakeNotices final : public platform::Notices {
public:
    explicit FakeNotices(platform::NotificationCenter& center) : center_(center) {}

    void prepare() override {
        isPrepared_ = true;
        setThere(isThere_);
    }
    [[nodiscard]] std::optional<bool> canShow() const override { return canShow_; }
    void show(const Notice& notice) override {
        prepare();
        if (isThere_) {
            shown.push_back(notice);
        }
    }

    void setThere(bool isThere) {
        isThere_ = isThere;
        if (isPrepared_ && canShow_ != isThere) {
            canShow_ = isThere;
            center_.post({didChange, {}, nullptr});
        }
    }
    /// The user chooses a notice.
    void choose(std::size_t number) {
        if (const auto chosen = std::exchange(shown.at(number).chosen, {})) {
            chosen();
        }
    }

    std::vector<Notice> shown;

private:
    platform::NotificationCenter& center_;
    bool isPrepared_ = false;
    bool isThere_ = true;
    std::optional<bool> canShow_;
};

/// Sessions whose requests the test answers. Handlers run inside `answer`, other work inside
/// `runWork`. Replies carry no headers, so none is ever reused.
class FakeURLSessions final : public platform::URLSessions {
public:
    FakeURLSessions(platform::NotificationCenter& center, const platform::Clock& clock)
        : center_(center), clock_(clock) {}

    void startDataTask(const Request& request, CompletionHandler handler) override {
        {
            const std::scoped_lock lock(mutex_);
            open_.push_back({request, std::move(handler)});
        }
        center_.post({openRequestsDidChange, {}, nullptr});
    }
    void perform(std::function<void()> work) override { work_.push(std::move(work)); }
    [[nodiscard]] std::size_t openRequests() const override {
        const std::scoped_lock lock(mutex_);
        return open_.size() + answered_;
    }

    /// The requests that wait for an answer, oldest first.
    [[nodiscard]] std::vector<Request> requests() const {
        const std::scoped_lock lock(mutex_);
        std::vector<Request> requests;
        for (const Open& one : open_) {
            requests.push_back(one.request);
        }
        return requests;
    }
    /// The addresses of `requests()`.
    [[nodiscard]] std::vector<std::string> addresses() const {
        std::vector<std::string> texts;
        for (const Request& request : requests()) {
            texts.push_back(request.address.text);
        }
        return texts;
    }
    /// Answers the oldest request whose address contains `part`, and every other request for the
    /// same address. Without a body there is no data. Returns false if no address contains `part`.
    bool answer(std::string_view part, const std::optional<std::string_view>& body) {
        const std::vector<Open> asked = take(part);
        std::optional<platform::Data> data;
        if (body) {
            const auto bytes = std::as_bytes(std::span(*body));
            data.emplace(bytes.begin(), bytes.end());
        }
        for (const Open& one : asked) {
            if (one.request.ended) {
                one.request.ended({data ? 200 : 0, clock_.now(), data});
            }
            one.handler(data);
            --answered_;
            center_.post({openRequestsDidChange, {}, nullptr});
        }
        return !asked.empty();
    }
    void runWork() { work_.run(); }

private:
    struct Open {
        Request request;
        CompletionHandler handler;
    };

    /// Those who asked for one transfer. They count as open until their handlers have returned.
    std::vector<Open> take(std::string_view part) {
        const std::scoped_lock lock(mutex_);
        std::vector<Open> asked;
        const auto found = std::ranges::find_if(open_, [part](const Open& one) {
            return one.request.address.text.find(part) != std::string::npos;
        });
        if (found != open_.end()) {
            const platform::URL address = found->request.address;
            const auto same =
                std::stable_partition(open_.begin(), open_.end(), [&](const Open& one) {
                    return one.request.address != address;
                });
            asked.assign(same, open_.end());
            open_.erase(same, open_.end());
            answered_ += asked.size();
        }
        return asked;
    }

    platform::NotificationCenter& center_;
    const platform::Clock& clock_;
    mutable std::mutex mutex_;
    std::deque<Open> open_;
    std::atomic<std::size_t> answered_ = 0;
    QueuedWork work_;
};

/// A host for one test. Its documents, support and resource folders exist; its destructor removes
/// them.
struct FakeHost {
    FakeHost() {
        using platform::SearchPaths;
        const auto made = [this](std::string_view name) {
            const std::filesystem::path path = folder / name;
            std::filesystem::create_directory(path);
            return path.string();
        };
        searchPaths.known[{SearchPaths::documents, SearchPaths::userDomain}] = {made("documents")};
        searchPaths.known[{SearchPaths::applicationSupport, SearchPaths::userDomain}] = {
            made("support")};
        bundle.resources = made("resources");
        bundle.info["CFBundleExecutable"] = "nosig";
    }
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;

    /// This host with the given services in place of its fake sessions and events.
    [[nodiscard]] platform::Host hostWith(platform::URLSessions& sessions,
                                          platform::Events& watched) {
        return {notificationCenter,
                userDefaults,
                searchPaths,
                bundle,
                panels,
                timers,
                mainThread,
                clock,
                log,
                sessions,
                workspace,
                watched,
                notices};
    }

    TemporaryFolder folder;
    platform::NotificationCenter notificationCenter;
    FakeUserDefaults userDefaults;
    FakeSearchPaths searchPaths;
    FakeBundle bundle;
    FakePanels panels;
    FakeTimers timers;
    FakeMainThread mainThread;
    FakeClock clock;
    FakeLog log;
    FakeURLSessions urlSessions{notificationCenter, clock};
    FakeWorkspace workspace;
    FakeEvents events;
    FakeNotices notices{notificationCenter};
    platform::Host host = hostWith(urlSessions, events);
};

} // namespace support
