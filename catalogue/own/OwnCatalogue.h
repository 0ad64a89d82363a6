// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"
#include "platform/host/Host.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace catalogue {

/// The user's own catalogue: a package in the program's data folder that takes the place of the
/// shipped one, which is never written. Any thread, but one that writes at a time.
class OwnCatalogue {
public:
    /// The host is borrowed.
    explicit OwnCatalogue(platform::Host& host) : host_(host) {}

    [[nodiscard]] bool isThere() const;
    /// Its path if `name` is that of the shipped catalogue and the own one can be read. One that
    /// cannot is set aside with one log line.
    [[nodiscard]] std::optional<std::string> replacementOf(std::string_view name) const;
    /// The catalogue that the program starts with, own or shipped; null if there is none.
    [[nodiscard]] std::shared_ptr<AviationWeatherStationCollection> inUse() const;
    [[nodiscard]] std::shared_ptr<AviationWeatherStationCollection> shipped() const;

    /// Writes a collection as the own catalogue, without the user's marks, which the favourites
    /// file keeps. Returns false if it cannot be written; the one before then stays.
    [[nodiscard]] bool keep(const AviationWeatherStationCollection& collection) const;
    /// Removes it; true also if there is none.
    [[nodiscard]] bool remove() const;

private:
    /// Without the file's name; empty if there is no data folder.
    [[nodiscard]] std::string folder() const;
    [[nodiscard]] std::string path() const;

    platform::Host& host_;
};

} // namespace catalogue
