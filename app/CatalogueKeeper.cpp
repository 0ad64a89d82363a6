// SPDX-License-Identifier: MIT
#include "app/CatalogueKeeper.h"

#include "catalogue/own/TableUpdate.h"
#include "weather/DataServerRequests.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace app {

namespace {

constexpr int notModified = 304;
constexpr int whole = 200;
constexpr const char* staysAsItIs = "The catalogue stays as it is.";

} // namespace

struct CatalogueKeeper::Update {
    platform::URL address;
    /// The edition of the own catalogue, if that was made from this address.
    std::optional<platform::Date> since;
    int status = 0;
    platform::Date changed;
    platform::Data table;
    catalogue::TableUpdate result;
};

std::shared_ptr<CatalogueKeeper> CatalogueKeeper::make(platform::Host& host, Use use) {
    return std::make_shared<CatalogueKeeper>(Private{}, host, std::move(use));
}

CatalogueKeeper::CatalogueKeeper(Private, platform::Host& host, Use use)
    : host_(host), use_(std::move(use)), own_(host) {}

CatalogueKeeper::~CatalogueKeeper() = default;

void CatalogueKeeper::tell(std::string words) {
    words_ = std::move(words);
    if (changed) {
        changed();
    }
}

void CatalogueKeeper::update() {
    if (update_) {
        use_.say();
        return;
    }
    offered_ = nullptr;
    const auto update = update_ = std::make_shared<Update>();
    update->address = weather::stationTableRequest(host_);
    platform::URLSessions::Request request{update->address};
    if (const auto own = hasOwn() ? own_.inUse() : nullptr;
        own && own->fromURL == update->address) {
        update->since = own->lastUpdated;
    }
    // Without an own catalogue the table is new, whenever it was changed.
    request.known = {{update->since, {}}};
    request.arrived = [this, &host = host_, weak = weak_from_this(), update](std::size_t bytes) {
        host.mainThread.perform(weak, [this, update, bytes] {
            if (update == update_) {
                tell(fmt::format("Fetching the table of stations: {} KB…", bytes / 1024));
            }
        });
    };
    request.ended = [this, &host = host_, weak = weak_from_this(), update](const auto& ending) {
        update->status = ending.status;
        if (ending.status == whole) {
            update->changed = ending.version.modified.value_or(ending.asked);
            update->table = *ending.data;
        }
        host.mainThread.perform(weak, [this, update] { take(update); });
    };
    host_.urlSessions.startDataTask(request, [](const auto&) {});
    tell("Asking the weather service for its table of stations…");
    use_.say();
}

void CatalogueKeeper::stop() {
    if (std::exchange(update_, nullptr)) {
        tell(fmt::format("Stopped. {}", staysAsItIs));
    }
}

void CatalogueKeeper::take(const std::shared_ptr<Update>& update) {
    if (update != update_) {
        return;
    }
    const bool isNewer =
        update->status == whole && (!update->since || update->changed > *update->since);
    if (isNewer) {
        tell("Making the catalogue…");
        queue_.addWork([this, weak = weak_from_this(), update] {
            const auto present = own_.inUse();
            update->result = catalogue::updateFromTable(update->table, update->changed,
                                                        present.get(), host_.log);
            host_.mainThread.perform(weak, [this, update] { finish(update); });
        });
        return;
    }
    update_ = nullptr;
    if (update->since && (update->status == notModified || update->status == whole)) {
        tell(fmt::format("There is no newer table of stations than that of {}.",
                         catalogue::dayInWords(*update->since)));
    } else if (update->status == 0) {
        tell(fmt::format("The weather service cannot be reached, or did not send its table whole. "
                         "{}",
                         staysAsItIs));
    } else {
        tell(fmt::format("The weather service has no table of stations (status {}). {}",
                         update->status, staysAsItIs));
    }
    use_.say();
}

void CatalogueKeeper::finish(const std::shared_ptr<Update>& update) {
    if (update != update_) {
        return;
    }
    update_ = nullptr;
    const auto& [collection, words] = update->result;
    if (!collection) {
        tell(words);
    } else {
        collection->fromURL = update->address;
        if (own_.keep(*collection)) {
            showAndTell(collection, words);
        } else {
            tell(fmt::format("The new catalogue cannot be written. {}", staysAsItIs));
        }
    }
    use_.say();
}

void CatalogueKeeper::showAndTell(
    const std::shared_ptr<AviationWeatherStationCollection>& collection, const std::string& words) {
    StationArray gone = use_.favorites();
    std::erase_if(gone, [&](const auto& station) {
        return collection->stationWithICAOID(station->ICAO) != nullptr;
    });
    use_.show(collection);
    tell(gone.empty() ? words
                      : fmt::format("{} It lacks these favorites, which are kept for when it has "
                                    "them again: {}.",
                                    words, catalogue::namesInWords(gone)));
}

void CatalogueKeeper::offerToKeep(std::shared_ptr<AviationWeatherStationCollection> collection) {
    update_ = nullptr;
    offered_ = std::move(collection);
    if (offered_) {
        tell(
            fmt::format("Use the opened list as your catalogue? Nosig then shows its stations ({}) "
                        "whenever it starts, until you update the catalogue or choose Use Shipped "
                        "Catalogue.",
                        offered_->stations ? offered_->stations->size() : 0));
        use_.say();
    }
}

void CatalogueKeeper::agree() {
    if (const auto collection = std::exchange(offered_, nullptr)) {
        tell(own_.keep(*collection)
                 ? "These stations are your catalogue now."
                 : fmt::format("The catalogue cannot be written. {}", staysAsItIs));
    }
}

void CatalogueKeeper::useShipped() {
    update_ = nullptr;
    offered_ = nullptr;
    const auto shipped = own_.shipped();
    if (!shipped || !own_.remove()) {
        tell(fmt::format("{} {}",
                         shipped ? "Your own catalogue cannot be removed."
                                 : "The shipped catalogue cannot be read.",
                         staysAsItIs));
    } else {
        showAndTell(shipped, "The catalogue that came with Nosig is in use again.");
    }
    use_.say();
}

} // namespace app
