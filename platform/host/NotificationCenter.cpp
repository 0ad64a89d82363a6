// SPDX-License-Identifier: MIT
#include "platform/host/NotificationCenter.h"

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace platform {

struct NotificationCenter::State {
    std::mutex mutex;
    std::map<std::string, std::vector<std::shared_ptr<Token::Registration>>, std::less<>> observers;
};

struct NotificationCenter::Token::Registration {
    std::string name;
    Observer observer;
    std::weak_ptr<State> center;

    std::mutex mutex;
    std::condition_variable callEnded;
    std::vector<std::thread::id> callers;
    bool isDropped = false;

    void call(const Notification& notification) {
        const auto self = std::this_thread::get_id();
        {
            const std::scoped_lock lock(mutex);
            if (isDropped) {
                return;
            }
            callers.push_back(self);
        }
        observer(notification);
        {
            const std::scoped_lock lock(mutex);
            callers.erase(std::ranges::find(callers, self));
        }
        callEnded.notify_all();
    }

    void drop() {
        if (const auto state = center.lock()) {
            const std::scoped_lock lock(state->mutex);
            const auto found = state->observers.find(name);
            if (found != state->observers.end()) {
                std::erase_if(found->second, [this](const auto& one) { return one.get() == this; });
            }
        }
        std::unique_lock lock(mutex);
        isDropped = true;
        // A call on this thread is one that drops its own observer: waiting for it would never end.
        callEnded.wait(lock, [this, self = std::this_thread::get_id()] {
            return std::ranges::all_of(callers, [self](auto caller) { return caller == self; });
        });
    }
};

NotificationCenter::Token::Token(std::shared_ptr<Registration> registration)
    : registration_(std::move(registration)) {}

NotificationCenter::Token& NotificationCenter::Token::operator=(Token&& other) noexcept {
    if (this != &other) {
        const Token dropped(std::exchange(registration_, std::move(other.registration_)));
    }
    return *this;
}

NotificationCenter::Token::~Token() {
    if (registration_) {
        registration_->drop();
    }
}

NotificationCenter::NotificationCenter() : state_(std::make_shared<State>()) {}
NotificationCenter::~NotificationCenter() = default;

NotificationCenter::Token NotificationCenter::addObserver(std::string name, Observer observer) {
    auto registration = std::make_shared<Token::Registration>();
    registration->name = std::move(name);
    registration->observer = std::move(observer);
    registration->center = state_;
    const std::scoped_lock lock(state_->mutex);
    state_->observers[registration->name].push_back(registration);
    return Token(std::move(registration));
}

void NotificationCenter::post(const Notification& notification) {
    std::vector<std::shared_ptr<Token::Registration>> observers;
    {
        const std::scoped_lock lock(state_->mutex);
        const auto found = state_->observers.find(notification.name);
        if (found != state_->observers.end()) {
            observers = found->second;
        }
    }
    for (const auto& observer : observers) {
        observer->call(notification);
    }
}

} // namespace platform
