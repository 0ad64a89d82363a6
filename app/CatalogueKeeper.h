// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"
#include "catalogue/own/OwnCatalogue.h"
#include "platform/host/Host.h"
#include "platform/host/OperationQueue.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace app {

/// Which catalogue the program has: the one that ships with it, or one of the user's own, made from
/// the weather service's table of stations or from an opened list. What it does, asks and has to
/// say appears in a small window of its own. Main thread only.
class CatalogueKeeper : public std::enable_shared_from_this<CatalogueKeeper> {
public:
    /// What the catalogue is for.
    struct Use {
        /// Shows a catalogue in place of the present one.
        std::function<void(const std::shared_ptr<AviationWeatherStationCollection>&)> show;
        /// The favourites of the catalogue that is shown.
        std::function<StationArray()> favorites;
        /// Brings up the small window.
        std::function<void()> say;
    };

    [[nodiscard]] static std::shared_ptr<CatalogueKeeper> make(platform::Host& host, Use use);

    /// Asks the service for its table, unless that is under way; asks for one that is newer than
    /// the own catalogue, if that was made from the service's. The table becomes the own catalogue
    /// and is shown. What fails changes nothing.
    void update();
    /// Whatever of an update has not happened yet will not.
    void stop();
    /// Asks whether a collection is to become the own catalogue.
    void offerToKeep(std::shared_ptr<AviationWeatherStationCollection> collection);
    /// The user's yes to the question.
    void agree();
    /// Removes the own catalogue and shows the shipped one.
    void useShipped();

    [[nodiscard]] bool hasOwn() const { return own_.isThere(); }
    [[nodiscard]] bool isUpdating() const { return update_ != nullptr; }
    [[nodiscard]] bool isAsking() const { return offered_ != nullptr; }
    /// What is going on, was asked, or became of it.
    [[nodiscard]] const std::string& words() const { return words_; }

    /// Called after each change of these; set by the window.
    std::function<void()> changed;

private:
    /// Only the factory makes keepers.
    struct Private {};
    /// One update; that it is still the present one shows that it was not stopped.
    struct Update;

public:
    CatalogueKeeper(Private, platform::Host& host, Use use);
    ~CatalogueKeeper();

private:
    void tell(std::string words);
    void take(const std::shared_ptr<Update>& update);
    void finish(const std::shared_ptr<Update>& update);
    void showAndTell(const std::shared_ptr<AviationWeatherStationCollection>& collection,
                     const std::string& words);

    platform::Host& host_;
    Use use_;
    catalogue::OwnCatalogue own_;
    std::string words_;
    std::shared_ptr<Update> update_;
    std::shared_ptr<AviationWeatherStationCollection> offered_;
    platform::OperationQueue queue_;
};

} // namespace app
