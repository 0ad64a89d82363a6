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

    /// False if it was there already.
    bool insert(std::uint32_t identifier) {
        const auto hash = platform::hashOf(identifier);
        const auto isSame = [&](std::uint32_t number) { return issued_[number - 1] == identifier; };
        if (index_.find(hash, isSame) != 0) {
            return false;
        }
        issued_.push_back(identifier);
        index_.insert(hash, static_cast<std::uint32_t>(issued_.size()));
        return true;
    }

private:
    std::vector<std::uint32_t> issued_;
    platform::HashIndex index_;
};

Registry& registry() {
    static Registry shared;
    return shared;
}

} // namespace

std::uint64_t issueIdentifier() {
    auto& generator = randomGenerator();
    auto& issued = registry();
    const std::scoped_lock lock(issued.mutex);
    while (true) {
        const auto drawn = static_cast<std::uint32_t>(generator());
        if (issued.insert(drawn)) {
            return drawn;
        }
    }
}

} // namespace slib
