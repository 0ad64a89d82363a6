// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// The layer below keyed archives: property lists in binary form, "bplist00". All numbers are
/// big-endian; objects refer to each other by their index in a table of offsets at the end.
namespace platform::plist {

/// A file consists of this signature and a version digit, the objects, the table of their offsets,
/// and a trailer. Files beyond the limit are neither read nor written.
inline constexpr std::string_view signature = "bplist0";
inline constexpr std::size_t headerSize = 8;
inline constexpr std::size_t trailerSize = 32;
inline constexpr std::uint64_t sizeLimit = std::uint64_t{2} << 30;

/// How many bytes of text and data may be copied out of a file: a small one may refer to the same
/// long text a million times, and every owner gets a copy.
[[nodiscard]] constexpr std::uint64_t contentLimit(std::uint64_t fileSize) {
    return (std::uint64_t{64} << 20) + 4 * fileSize;
}

/// The instant that dates are counted from, in seconds.
inline constexpr Date referenceDate = std::chrono::sys_days{std::chrono::year{2001} / 1 / 1};

/// The high four bits of the marker byte at the start of an object; the low four give a size or
/// count.
enum Type : unsigned {
    simpleType = 0,
    integerType = 1,
    realType = 2,
    dateType = 3,
    dataType = 4,
    asciiType = 5,
    utf16Type = 6,
    uidType = 8,
    arrayType = 10,
    dictionaryType = 13,
};
/// As the low bits: the count follows in an integer object.
inline constexpr unsigned countFollows = 15;

/// The kind of an object, or `broken` if it cannot be read. `absent` is for a missing field and is
/// no object's kind.
enum class Kind : std::uint32_t {
    absent,
    broken,
    null,
    boolean,
    integer,
    real,
    date,
    data,
    ascii,
    utf16,
    uid,
    array,
    dictionary,
};

/// Where one object of a list is. Nothing is decoded in advance: a container's elements are looked
/// up one by one, on request.
struct Element {
    /// Where the payload begins in the file; it is wholly inside the object area.
    std::size_t position = 0;
    Kind kind = Kind::absent;
    /// The value of a boolean; the size in bytes of a number or UID; otherwise the number of
    /// elements, characters, UTF-16 units or bytes.
    std::uint32_t count = 0;

    [[nodiscard]] bool isText() const { return kind == Kind::ascii || kind == Kind::utf16; }
};
// An element of this size is passed in registers, which reading depends on for its speed.
static_assert(sizeof(Element) == 2 * sizeof(std::size_t));

/// A list in borrowed bytes. Trusts no number in them and holds no memory of its own.
class Reader {
public:
    /// Absent if the header or trailer is broken, with the reason in `fault`.
    [[nodiscard]] static std::optional<Reader> open(std::span<const std::byte> bytes,
                                                    std::string& fault);

    [[nodiscard]] std::uint64_t topObject() const { return top_; }
    [[nodiscard]] std::uint64_t byteCount() const { return bytes_.size(); }
    /// Broken for an index beyond the table, an offset or payload outside the object area, or an
    /// unknown marker.
    [[nodiscard]] Element element(std::uint64_t index) const;

    /// The index of an array's element, or of a dictionary's key; the values follow the keys.
    [[nodiscard]] std::uint64_t reference(const Element& container, std::size_t place) const {
        return numberAt(container.position + place * referenceWidth_, referenceWidth_);
    }
    /// The bytes of all references of an array, or of all key references of a dictionary.
    [[nodiscard]] std::string_view referenceBytes(const Element& container) const;

    /// A boolean, integer or real; absent for any other kind and for an integer beyond 64 bits.
    [[nodiscard]] std::optional<Number> number(const Element& element) const;
    /// A date in seconds since `referenceDate`.
    [[nodiscard]] double seconds(const Element& element) const;
    [[nodiscard]] std::uint64_t uid(const Element& element) const {
        return numberAt(element.position, element.count);
    }
    [[nodiscard]] std::span<const std::byte> data(const Element& element) const;
    /// Either kind of text as UTF-8. Lone surrogates and bytes beyond ASCII become U+FFFD.
    [[nodiscard]] std::string text(const Element& element) const;
    /// Whether the element is text and equals `ascii`.
    [[nodiscard]] bool isText(const Element& element, std::string_view ascii) const {
        return element.count == ascii.size() && element.isText() && text(element) == ascii;
    }

private:
    Reader() = default;
    /// Reads eight bytes whatever the width, which is safe because a trailer follows every
    /// position.
    [[nodiscard]] std::uint64_t numberAt(std::size_t position, std::size_t width) const {
        std::uint64_t value = 0;
        std::memcpy(&value, bytes_.data() + position, sizeof value);
        if constexpr (std::endian::native == std::endian::little) {
            value = __builtin_bswap64(value);
        }
        return value >> (64 - 8 * width);
    }

    std::span<const std::byte> bytes_;
    std::size_t table_ = 0;
    std::size_t offsetWidth_ = 0;
    std::size_t referenceWidth_ = 0;
    std::uint64_t objectCount_ = 0;
    std::uint64_t top_ = 0;
};

} // namespace platform::plist
