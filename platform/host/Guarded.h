// SPDX-License-Identifier: MIT
#pragma once

#include <mutex>
#include <utility>

namespace platform {

/// A value that one thread may read while another replaces it.
template <typename T>
class Guarded {
public:
    [[nodiscard]] T load() const {
        const std::scoped_lock lock(mutex_);
        return value_;
    }

    /// The old value is destroyed outside the lock.
    void store(T value) {
        const std::scoped_lock lock(mutex_);
        std::swap(value_, value);
    }

private:
    mutable std::mutex mutex_;
    T value_{};
};

} // namespace platform
