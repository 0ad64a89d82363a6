// SPDX-License-Identifier: MIT
#pragma once

#include "platform/archive/Archivable.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

namespace platform {

/// Writes an object graph as a keyed archive in a binary property list. Each object, array, set and
/// dictionary is written once however often it is referenced; equal strings and numbers share a
/// slot; a mutable container never shares its slot with another one. Absent elements, which no
/// archive holds, are left out of their container. Malformed UTF-8 is written as U+FFFD.
///
/// An archivable object is given the archiver in `encodeWithCoder` and writes its own fields. A key
/// that begins with "$" is stored with one more "$" in front. Writing a key twice keeps the later
/// value.
class KeyedArchiver {
public:
    /// The archive of `root`. Absent if the root is absent, if memory runs out, or if the graph is
    /// one that `KeyedUnarchiver` would refuse: over 2 GiB, nested too deeply, with a record of too
    /// many keys, with so many references to long texts that a reader's copies of them exceed 32
    /// MiB plus twice the file size, or with so many container elements that they exceed its memory
    /// limit.
    [[nodiscard]] static std::optional<Data> archivedData(const Value& root);
    /// Writes the archive to a new file and renames it over `path`. Returns false if nothing was
    /// written; an existing file is then untouched.
    static bool archiveRootObject(const Value& root, const std::filesystem::path& path);

    KeyedArchiver(const KeyedArchiver&) = delete;
    KeyedArchiver& operator=(const KeyedArchiver&) = delete;

    /// Absent values are written too, as the null reference.
    void encodeObject(const Value& value, std::string_view key);
    void encodeText(const std::optional<std::string>& text, std::string_view key);
    void encodeInteger(std::int64_t value, std::string_view key);
    void encodeBool(bool value, std::string_view key);
    void encodeDouble(double value, std::string_view key);
    void encodeBytes(std::span<const std::byte> bytes, std::string_view key);

    /// Values without a key are stored under the record's next free number: "$0", "$1", ...
    void encodeObject(const Value& value);
    void encodeInteger(std::int64_t value);

private:
    struct State;
    explicit KeyedArchiver(State& state);
    State& state_;
};

} // namespace platform
