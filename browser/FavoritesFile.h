// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <optional>
#include <string>
#include <vector>

/// The user's favourites on the disk: a keyed archive of ICAO identifiers. It is written at the end
/// of a run; until then a second file beside it, the draft, holds the whole set as of the last
/// change, so that a program that is killed loses nothing. Main thread only.
class FavoritesFile {
public:
    using Identifiers = std::vector<std::string>;

    /// The host outlives it.
    explicit FavoritesFile(platform::Host& host) : host_(host) {}

    /// Reads what was kept: the draft where a run before did not come to its end, else the file.
    /// One that is no list of texts is renamed, not lost, with one line in the log. Nothing is
    /// written before this was called.
    [[nodiscard]] Identifiers load();

    /// Writes the draft. The first time that fails one line is in the log.
    void keep(const Identifiers& identifiers);
    /// Writes the file, and removes the draft once that is done.
    void save(const Identifiers& identifiers);

private:
    [[nodiscard]] std::string path(const char* name) const;
    /// Nothing when there is no such file, or none that can be read.
    [[nodiscard]] std::optional<Identifiers> read(const std::string& path);
    void setAside(const std::string& path);

    platform::Host& host_;
    bool isLoaded_ = false;
    /// Whether a file that could not be read is still in its place.
    bool isBarred_ = false;
    bool hasFailedToKeep_ = false;
};
