// SPDX-License-Identifier: MIT
#include "browser/Suggester.h"

#include <utility>

namespace browser {

void Suggester::ask(std::string text,
                    std::shared_ptr<const AviationWeatherStationCollection> catalogue,
                    Answer answer) {
    const std::uint64_t number = ++shared_->newest;
    queue_.addWork([&mainThread = mainThread_, &shared = *shared_, alive = std::weak_ptr(shared_),
                    number, text = std::move(text), catalogue = std::move(catalogue),
                    answer = std::move(answer)] {
        // Somebody who types fast asks faster than a long catalogue answers.
        if (number != shared.newest) {
            return;
        }
        if (!shared.index || shared.indexed != catalogue) {
            shared.index = std::make_unique<catalogue::SuggestionIndex>(catalogue.get());
            shared.indexed = catalogue;
        }
        mainThread.perform(alive, [&shared, number, answer, found = shared.index->find(text)] {
            if (number == shared.newest) {
                answer(found);
            }
        });
    });
}

void Suggester::forget() {
    ++shared_->newest;
}

} // namespace browser
