// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"
#include "reports/Store.h"

#include <functional>
#include <optional>
#include <string>

namespace reports {

/// URL sessions in front of the real ones: they hand every request and every reply on as they are,
/// and give the store what replies to questions for a station's reports bring, each read on its own
/// and before its handler is called. Any thread.
class Sessions final : public platform::URLSessions {
public:
    /// What the address asks for; nothing for any other address. Any thread.
    using QuestionIn = std::function<std::optional<Question>(const platform::URL& address)>;

    /// The sessions and the store are borrowed; both outlive this object, and the store outlives
    /// the sessions' thread.
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
