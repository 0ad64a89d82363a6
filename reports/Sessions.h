// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"
#include "reports/Store.h"

#include <functional>
#include <optional>
#include <string>

namespace reports {

/// URL sessions that stand in front of the real ones and pass every request and every reply on
/// unchanged. They also read each reply to a question for stations' reports, and give the store
/// what it brings, with an answer for every station asked for, before the request's handler is
/// called. Any thread may use them.
class Sessions final : public platform::URLSessions {
public:
    /// What an address asks for; nothing if it does not ask for stations' reports. Called on any
    /// thread.
    using QuestionIn = std::function<std::optional<Question>(const platform::URL& address)>;

    /// The sessions and the store are borrowed. Both must outlive this object, and the store the
    /// sessions' thread as well.
    Sessions(platform::URLSessions& real, Store& store, QuestionIn questionIn);

    void startDataTask(const Request& request, CompletionHandler handler) override;
    void perform(std::function<void()> work) override { real_.perform(std::move(work)); }
    [[nodiscard]] std::size_t openRequests() const override { return real_.openRequests(); }

private:
    platform::URLSessions& real_;
    Store& store_;
    QuestionIn questionIn_;
};

} // namespace reports
