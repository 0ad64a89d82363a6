// SPDX-License-Identifier: MIT
#pragma once

#include "platform/archive/Archivable.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

namespace platform {

/// Writes an object graph as a keyed archive in a binary property list. Each object, array, set
/// and dictionary is written once however often it is referenced; equal strings and numbers share
/// a slot; a mutable container never shares its slot with another one. Absent elements, which no
/// archive holds, are left out of their container. Text that is not UTF-8 gets U+FFFD.
///
/// An archivable object gets the archiver in `encodeWithCoder` and writes its own fields. A key
/// that begins with "$" is stored behind one more "$". Writing a key twice keeps the later value.
class KeyedArchiver {
public:
    /// The archive of `root`, or nothing when the root is absent or the graph is one that
    /// `KeyedUnarchiver` would refuse: over 2 GiB, nested beyond its depth, a record of more keys
    /// than it takes, so many repetitions of long texts that each reader's copies of them come to
    /// more than 32 MiB and twice the file, or of containers' elements that they come to more
    /// than its memory. Nothing as well where memory runs out.
    [[nodiscard]] static std::optional<Data> archivedData(const Value& root);
    /// Writes the archive to a new file and renames it over `path`. False when nothing was
    /// written; a file that stood there is then untouched.
    static bool archiveRootObject(const Value& root, const std::filesystem::path& path);

    KeyedArchiver(const KeyedArchiver&) = delete;
    KeyedArchiver& operator=(const KeyedArchiver&) = delete;

    /// Absent values are written too, as the empty reference.
    void encodeObject(const Value& value, std::string_view key);
    void encodeText(const std::optional<std::string>& text, std::string_view key);
    void encodeInteger(std::int64_t value, std::string_view key);
    void encodeBool(bool value, std::string_view key);
    void encodeDouble(double value, std::string_view key);
    void encodeBytes(std::span<const std::byte> bytes, std::string_view key);

    /// Without a key a value goes under the record's next free number: "$0", "$1", ...
    void encodeObject(const Value& value);
    void encodeInteger(std::int64_t value);

private:
    struct State;
    explicit KeyedArchiver(State& state);
    State& state_;
};

} // namespace platform
