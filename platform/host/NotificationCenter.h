// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"

#include <functional>
#include <memory>
#include <string>

namespace platform {

struct Notification {
    std::string name;
    Value object;
    std::shared_ptr<const Dictionary> userInfo;
};

/// Delivers a notification to all observers of its name, in the order in which they were added. May
/// be used on any thread. Observers run on the posting thread without a lock held: they may post,
/// observe and drop tokens themselves.
class NotificationCenter {
public:
    using Observer = std::function<void(const Notification&)>;

    /// Keeps an observer registered while it lives. Dropping it waits for any call of that observer
    /// on another thread; after that the observer is never called again. It may outlive the centre.
    class Token {
    public:
        Token() = default;
        Token(Token&&) noexcept = default;
        Token& operator=(Token&& other) noexcept;
        ~Token();

    private:
        friend class NotificationCenter;
        struct Registration;
        explicit Token(std::shared_ptr<Registration> registration);
        std::shared_ptr<Registration> registration_;
    };

    NotificationCenter();
    ~NotificationCenter();
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;

    [[nodiscard]] Token addObserver(std::string name, Observer observer);
    void post(const Notification& notification);

private:
    struct State;
    std::shared_ptr<State> state_;
};

} // namespace platform
