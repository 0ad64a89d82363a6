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

/// What reading an archive gave.
struct Unarchived {
    /// The root object; absent when the file is broken as a file, or the root is of no known class.
    Value root;
    /// Why the root is absent, in words for a log; empty when it is present.
    std::string fault;
    /// How many present fields could not be what was asked for and read as empty instead, and in
    /// words what was wrong with them: each wording once, of the first thousand fields.
    std::size_t misreadFields = 0;
    std::vector<std::string> misreadings;
};

/// Reads keyed archives in binary property lists, written by any program, and trusts no number in
/// them: time is bounded by the size of the file, and memory beside the file itself by 192 MiB and
/// twelve times that size, of which what programs write takes about a third. A file that would
/// take more, or more than there is, or that is broken as a file gives nothing at all; a field that
/// is absent, or of a kind that cannot be what is asked for, reads as empty (0, false, nothing) and
/// the rest of the object is still read.
///
/// Each slot's object is made once, so that sharing survives. An object that contains itself reads
/// as absent at that point. Bytes that are not valid text become U+FFFD. Elements that cannot be
/// read are left out of their container; a dictionary with a key that is no text is itself absent.
///
/// An integer may be stored as a boolean or as a whole real, a real as an integer; no other kind
/// stands in for another.
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
    /// Reads the file at `path`; one that is missing or unreadable gives a fault.
    [[nodiscard]] static Unarchived unarchiveFile(const std::filesystem::path& path,
                                                  const ClassTable& classes);

    KeyedUnarchiver(const KeyedUnarchiver&) = delete;
    KeyedUnarchiver& operator=(const KeyedUnarchiver&) = delete;

    [[nodiscard]] Value decodeObject(std::string_view key);
    /// The same as `decodeObject` for the kind that the name tells, without the detour.
    [[nodiscard]] std::optional<std::string> decodeText(std::string_view key);
    [[nodiscard]] std::optional<Number> decodeNumber(std::string_view key);
    [[nodiscard]] std::int64_t decodeInteger(std::string_view key);
    /// 0 when the stored integer does not fit.
    [[nodiscard]] std::int32_t decodeInt32(std::string_view key);
    [[nodiscard]] bool decodeBool(std::string_view key);
    [[nodiscard]] double decodeDouble(std::string_view key);
    /// Bytes of the archive itself, valid while it is read; empty when there are none.
    [[nodiscard]] std::span<const std::byte> decodeBytes(std::string_view key);

    /// Counts the field that was decoded last as misread: its value is of no use to the class,
    /// which goes on without it. `reason` follows the field's name in a sentence, such as "is no
    /// date".
    void misread(std::string_view reason);

    /// The next value that was written without a key, in order of writing.
    [[nodiscard]] Value decodeObject();
    [[nodiscard]] std::int64_t decodeInteger();

private:
    struct State;
    explicit KeyedUnarchiver(State& state);
    State& state_;
};

} // namespace platform
