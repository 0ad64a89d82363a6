// SPDX-License-Identifier: MIT
#pragma once

#include "platform/archive/Archivable.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// The result of reading an archive.
struct Unarchived {
    /// The root object; absent if the file as a whole is broken or the root's class is unknown.
    Value root;
    /// Why the root is absent, in words for a log; empty if it is present.
    std::string fault;
    /// How many fields were present but unfit for what was requested, so that they read as empty;
    /// and in words what was wrong with the first thousand of them, each wording once.
    std::size_t misreadFields = 0;
    std::vector<std::string> misreadings;
};

/// Reads keyed archives in binary property lists, written by any program, and trusts no number in
/// them. Time is bounded by the file size; memory, besides the file itself, by 192 MiB plus twelve
/// times that size, of which the files of real programs take about a third. A file that would take
/// more than that, or more memory than there is, or that is broken as a whole, gives nothing at
/// all. A field that is absent or unfit for what is requested reads as empty (0, false, absent),
/// and the rest of the object is still read.
///
/// Each slot's object is made once, so that sharing survives. An object that contains itself reads
/// as absent at that point. Malformed text gets U+FFFD. Elements that cannot be read are left out
/// of their container; a dictionary with a key that is not text is itself absent.
///
/// An integer may be stored as a boolean or as a whole real, and a real as an integer; no other
/// kind may replace another.
class KeyedUnarchiver {
public:
    /// Files beyond this size are refused.
    static constexpr std::uint64_t sizeLimit = std::uint64_t{2} << 30;
    /// Objects nested deeper than this read as absent.
    static constexpr int depthLimit = 256;
    /// Records with more keys than this are refused.
    static constexpr int keyLimit = 256;

    [[nodiscard]] static Unarchived unarchive(std::span<const std::byte> bytes,
                                              const ClassTable& classes);
    /// Reads the file at `path`; a missing or unreadable one gives a fault.
    [[nodiscard]] static Unarchived unarchiveFile(const std::filesystem::path& path,
                                                  const ClassTable& classes);

    KeyedUnarchiver(const KeyedUnarchiver&) = delete;
    KeyedUnarchiver& operator=(const KeyedUnarchiver&) = delete;

    [[nodiscard]] Value decodeObject(std::string_view key);
    /// Like `decodeObject`, but for one kind only and more directly.
    [[nodiscard]] std::optional<std::string> decodeText(std::string_view key);
    [[nodiscard]] std::optional<Number> decodeNumber(std::string_view key);
    [[nodiscard]] std::int64_t decodeInteger(std::string_view key);
    /// 0 if the stored integer does not fit.
    [[nodiscard]] std::int32_t decodeInt32(std::string_view key);
    [[nodiscard]] bool decodeBool(std::string_view key);
    [[nodiscard]] double decodeDouble(std::string_view key);
    /// A view of the archive's bytes, valid while it is read; empty if there are none.
    [[nodiscard]] std::span<const std::byte> decodeBytes(std::string_view key);

    /// Counts the field decoded last as misread: its value is of no use to the class, which carries
    /// on without it. `reason` follows the field's name in a sentence, such as "is no date".
    void misread(std::string_view reason);

    /// The next value written without a key, in the order of writing.
    [[nodiscard]] Value decodeObject();
    [[nodiscard]] std::int64_t decodeInteger();

private:
    struct State;
    explicit KeyedUnarchiver(State& state);
    State& state_;
};

} // namespace platform
