// SPDX-License-Identifier: MIT
#include "slib/Identifiers.h"

#include "platform/values/HashIndex.h"
#include "slib/Random.h"

#include <mutex>
#include <vector>

namespace slib {
namespace {

class Registry {
public:
    std::mutex mutex;

    [[nodiscard]] bool contains(std::uint64_t identifier) const {
        return index_.find(platform::hashOf(identifier), [&](std::uint32_t number) {
            return issued_[number - 1] == identifier;
        }) != 0;
    }
    /// False when it was there.
    bool insert(std::uint64_t identifier) {
        if (contains(identifier)) {
            return false;
        }
        issued_.push_back(identifier);
        index_.insert(platform::hashOf(identifier), static_cast<std::uint32_t>(issued_.size()));
        return true;
    }

private:
    std::vector<std::uint64_t> issued_;
    platform::HashIndex index_;
};

Registry& registry() {
    static Registry shared;
    return shared;
}

} // namespace

std::uint64_t issueIdentifier(std::optional<std::uint64_t> kept) {
    auto& generator = randomGenerator();
    auto& issued = registry();
    const std::scoped_lock lock(issued.mutex);
    if (kept) {
        issued.insert(*kept);
        return *kept;
    }
    while (true) {
        const auto drawn = static_cast<std::uint32_t>(generator());
        if (issued.insert(drawn)) {
            return drawn;
        }
    }
}

bool wasIssued(std::uint64_t identifier) {
    auto& issued = registry();
    const std::scoped_lock lock(issued.mutex);
    return issued.contains(identifier);
}

} // namespace slib
