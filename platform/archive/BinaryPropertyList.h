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

/// A file is this signature and a version digit, the objects, the table of their offsets, and a
/// trailer. Files beyond the limit are neither read nor written.
inline constexpr std::string_view signature = "bplist0";
inline constexpr std::size_t headerSize = 8;
inline constexpr std::size_t trailerSize = 32;
inline constexpr std::uint64_t sizeLimit = std::uint64_t{2} << 30;

/// How many bytes of text and data are handed out of a file: a small one may list the same long
/// text a million times, and every owner gets a copy.
[[nodiscard]] constexpr std::uint64_t contentLimit(std::uint64_t fileSize) {
    return (std::uint64_t{64} << 20) + 4 * fileSize;
}

/// The instant that dates are counted from, in seconds.
inline constexpr Date referenceDate = std::chrono::sys_days{std::chrono::year{2001} / 1 / 1};

/// The high four bits of the marker that an object begins with; the low ones tell a size or count.
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
/// In the low bits: the count stands in an integer object that follows.
inline constexpr unsigned countFollows = 15;

/// What an object turned out to be: broken, or of one of the kinds of objects. `absent` is for a
/// field that is not there, and is no object's kind.
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

/// Where one object of a list stands. Nothing in it is unfolded: a container's elements are found
/// one by one, on request.
struct Element {
    /// Where the payload begins in the file; it lies wholly inside the object area.
    std::size_t position = 0;
    Kind kind = Kind::absent;
    /// Of a boolean its value; of a number or UID its bytes; of the others their elements,
    /// characters, UTF-16 units or bytes.
    std::uint32_t count = 0;

    [[nodiscard]] bool isText() const { return kind == Kind::ascii || kind == Kind::utf16; }
};
// Passed in registers that way, which the speed of reading rests upon.
static_assert(sizeof(Element) == 2 * sizeof(std::size_t));

/// A list over bytes that it borrows. Trusts none of their numbers; takes no memory.
class Reader {
public:
    /// Nothing when the frame is broken, with the reason in `fault`.
    [[nodiscard]] static std::optional<Reader> open(std::span<const std::byte> bytes,
                                                    std::string& fault);

    [[nodiscard]] std::uint64_t topObject() const { return top_; }
    [[nodiscard]] std::uint64_t byteCount() const { return bytes_.size(); }
    /// Broken for an index beyond the table, an offset or payload outside the object area and an
    /// unknown marker.
    [[nodiscard]] Element element(std::uint64_t index) const;

    /// The index of an array's element, or of a dictionary's key; its values follow its keys.
    [[nodiscard]] std::uint64_t reference(const Element& container, std::size_t place) const {
        return numberAt(container.position + place * referenceWidth_, referenceWidth_);
    }
    /// The bytes of all of an array's references, or of a dictionary's key references.
    [[nodiscard]] std::string_view referenceBytes(const Element& container) const;

    /// A boolean, integer or real; nothing for another kind and for an integer beyond 64 bits.
    [[nodiscard]] std::optional<Number> number(const Element& element) const;
    /// Seconds since 2001 of a date.
    [[nodiscard]] double seconds(const Element& element) const;
    [[nodiscard]] std::uint64_t uid(const Element& element) const {
        return numberAt(element.position, element.count);
    }
    [[nodiscard]] std::span<const std::byte> data(const Element& element) const;
    /// Both kinds of text as UTF-8. Lone surrogates and bytes beyond ASCII become U+FFFD.
    [[nodiscard]] std::string text(const Element& element) const;
    /// Whether the element is text and equals `ascii`.
    [[nodiscard]] bool isText(const Element& element, std::string_view ascii) const {
        return element.count == ascii.size() && element.isText() && text(element) == ascii;
    }

private:
    Reader() = default;
    /// A trailer follows everything that has a position, so that eight bytes can be read there.
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
