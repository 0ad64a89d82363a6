// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/Suggestions.h"
#include "platform/host/Host.h"
#include "platform/host/OperationQueue.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace browser {

/// Finds what the text of the search field may mean, on a thread of its own, so that typing never
/// waits for it, however long the catalogue is. Main thread only.
class Suggester {
public:
    using Answer = std::function<void(const std::vector<catalogue::Suggestion>&)>;

    /// The main thread's queue must outlive it.
    explicit Suggester(platform::MainThread& mainThread) : mainThread_(mainThread) {}

    /// Calls `answer` later, on the main thread, unless something else is asked or `forget` is
    /// called before that. The catalogue, which may be null, stays alive until another one is asked
    /// about, and must not change.
    void ask(std::string text, std::shared_ptr<const AviationWeatherStationCollection> catalogue,
             Answer answer);
    /// Drops the answer that is still to come.
    void forget();

private:
    /// What the worker shares with the main thread.
    struct Shared {
        std::atomic<std::uint64_t> newest = 0;
        // The worker's own.
        std::shared_ptr<const AviationWeatherStationCollection> indexed;
        std::unique_ptr<catalogue::SuggestionIndex> index;
    };

    platform::MainThread& mainThread_;
    std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
    platform::OperationQueue queue_;
};

} // namespace browser
