// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <optional>
#include <string>
#include <vector>

/// The user's favourites on disk: a keyed archive of ICAO identifiers, written at the end of a run.
/// Until then a second file beside it, the draft, holds the whole set as of the last change, so
/// that nothing is lost if the program is killed. Main thread only.
class FavoritesFile {
public:
    using Identifiers = std::vector<std::string>;

    /// The host must outlive it.
    explicit FavoritesFile(platform::Host& host) : host_(host) {}

    /// Reads the stored favourites: the draft if an earlier run was cut short, else the file. A
    /// file that is not a list of texts is renamed, not lost, with one line in the log. Nothing is
    /// written before this has been called.
    [[nodiscard]] Identifiers load();

    /// Writes the draft. Of failures in a row the first is logged, in one line.
    void keep(const Identifiers& identifiers);
    /// Whether the last change is on the disk.
    [[nodiscard]] bool isKept() const { return isKept_; }
    /// Writes the file and, if that succeeds, removes the draft.
    void save(const Identifiers& identifiers);

private:
    [[nodiscard]] std::string path(const char* name) const;
    /// Absent if the file does not exist or cannot be read.
    [[nodiscard]] std::optional<Identifiers> read(const std::string& path);
    void setAside(const std::string& path);

    platform::Host& host_;
    bool isLoaded_ = false;
    /// Set if an unreadable file could not be renamed, and so must not be overwritten.
    bool isBarred_ = false;
    bool isKept_ = true;
};
