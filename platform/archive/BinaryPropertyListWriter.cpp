// SPDX-License-Identifier: MIT
#include "platform/archive/BinaryPropertyListWriter.h"

#include "platform/text/Text.h"

#include "platform/archive/BinaryPropertyList.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <type_traits>

namespace platform::plist {

namespace {

constexpr std::uint64_t draftLimit = std::numeric_limits<std::uint32_t>::max();

std::byte* putBig(std::byte* at, std::uint64_t value, std::size_t width) {
    for (std::size_t i = width; i-- > 0; value >>= 8) {
        at[i] = static_cast<std::byte>(value);
    }
    return at + width;
}

std::byte* putBytes(std::byte* at, std::span<const std::byte> bytes) {
    if (!bytes.empty()) {
        std::memcpy(at, bytes.data(), bytes.size());
    }
    return at + bytes.size();
}

/// The width of a non-negative integer; 8 for the bits of a negative one.
std::size_t widthOf(std::uint64_t value) {
    return value < 1U << 8 ? 1 : value < 1U << 16 ? 2 : value < std::uint64_t{1} << 32 ? 4 : 8;
}

std::byte marker(Type type, std::size_t low) {
    return static_cast<std::byte>(type << 4 | low);
}

std::byte integerMarker(std::size_t width) {
    return marker(integerType, static_cast<std::size_t>(std::countr_zero(width)));
}

std::size_t headSize(std::uint64_t count) {
    return count < countFollows ? 1 : 2 + widthOf(count);
}

std::byte* putHead(std::byte* at, Type type, std::uint64_t count) {
    if (count < countFollows) {
        *at = marker(type, count);
        return at + 1;
    }
    at[0] = marker(type, countFollows);
    at[1] = integerMarker(widthOf(count));
    return putBig(at + 2, count, widthOf(count));
}

/// A drafted object as it will be in the file. A container's draft has a marker without a count,
/// and references of four bytes.
class Drafted {
public:
    explicit Drafted(std::span<const std::byte> draft) : draft_(draft) {
        const auto type = std::to_integer<unsigned>(draft[0]) >> 4;
        if (type == arrayType || type == dictionaryType) {
            type_ = static_cast<Type>(type);
            references_ = (draft.size() - 1) / sizeof(Ref);
            count_ = type == arrayType ? references_ : references_ / 2;
        }
    }

    [[nodiscard]] std::uint64_t finalSize(std::size_t referenceWidth) const {
        return type_ == simpleType ? draft_.size()
                                   : headSize(count_) + references_ * referenceWidth;
    }

    std::byte* put(std::byte* at, std::size_t referenceWidth) const {
        if (type_ == simpleType) {
            return putBytes(at, draft_);
        }
        at = putHead(at, type_, count_);
        for (std::size_t i = 0; i < references_; ++i) {
            Ref reference = 0;
            std::memcpy(&reference, &draft_[1 + i * sizeof reference], sizeof reference);
            at = putBig(at, reference, referenceWidth);
        }
        return at;
    }

private:
    std::span<const std::byte> draft_;
    /// `simpleType` for everything but a container.
    Type type_ = simpleType;
    std::size_t references_ = 0;
    std::size_t count_ = 0;
};

std::u16string utf16Of(std::string_view utf8) {
    std::u16string units;
    units.reserve(utf8.size());
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(utf8.data());
    for (std::size_t i = 0; i < utf8.size();) {
        UChar32 code = 0;
        U8_NEXT_OR_FFFD(bytes, i, utf8.size(), code);
        if (U_IS_BMP(code)) {
            units += static_cast<char16_t>(code);
        } else {
            units += static_cast<char16_t>(U16_LEAD(code));
            units += static_cast<char16_t>(U16_TRAIL(code));
        }
    }
    return units;
}

std::uint32_t hashOf(std::span<const std::byte> bytes, std::uint64_t seed) {
    std::uint64_t hash = seed ^ bytes.size();
    std::uint64_t block = 0;
    const auto mix = [&] {
        hash = (hash ^ block) * hashFactor;
        hash ^= hash >> 32;
    };
    for (; bytes.size() >= sizeof block; bytes = bytes.subspan(sizeof block)) {
        std::memcpy(&block, bytes.data(), sizeof block);
        mix();
    }
    block = 0;
    for (const std::byte byte : bytes) {
        block = block << 8 | std::to_integer<std::uint64_t>(byte);
    }
    mix();
    return static_cast<std::uint32_t>(hash);
}

} // namespace

// The seed prevents the author of a list's texts from making them collide.
Writer::Writer() : seed_(std::random_device{}()) {}

std::byte* Writer::room(std::size_t size) {
    const auto begin = draft_.size();
    draft_.resize(begin + size);
    return draft_.data() + begin;
}

Ref Writer::object() {
    if (draft_.size() > draftLimit) {
        overflown_ = true;
    }
    if (overflown_) {
        draft_.resize(starts_.back());
        return 0;
    }
    starts_.push_back(static_cast<std::uint32_t>(draft_.size()));
    return static_cast<Ref>(starts_.size() - 1);
}

std::span<const std::byte> Writer::draftOf(Ref ref) const {
    return {draft_.data() + starts_[ref - 1], starts_[ref] - starts_[ref - 1]};
}

Ref Writer::sharedObject() {
    const auto drafted = std::span<const std::byte>(draft_).subspan(starts_.back());
    const auto hash = hashOf(drafted, seed_);
    const auto isSame = [&](Ref ref) {
        const auto known = draftOf(ref);
        return known.size() == drafted.size() &&
               std::memcmp(known.data(), drafted.data(), known.size()) == 0;
    };
    if (const Ref earlier = shared_.find(hash, isSame)) {
        draft_.resize(starts_.back());
        return earlier;
    }
    const Ref ref = object();
    if (ref != 0) {
        shared_.insert(hash, ref);
    }
    return ref;
}

Ref Writer::text(std::string_view utf8) {
    if (isAscii(utf8)) {
        auto* at = room(headSize(utf8.size()) + utf8.size());
        putBytes(putHead(at, asciiType, utf8.size()), std::as_bytes(std::span(utf8)));
    } else {
        const auto units = utf16Of(utf8);
        auto* at = room(headSize(units.size()) + 2 * units.size());
        at = putHead(at, utf16Type, units.size());
        for (const char16_t unit : units) {
            at = putBig(at, unit, 2);
        }
    }
    return sharedObject();
}

Ref Writer::number(const Number& number) {
    putNumber(number);
    return sharedObject();
}

Ref Writer::loneNumber(const Number& number) {
    putNumber(number);
    return object();
}

void Writer::putNumber(const Number& number) {
    std::visit(
        [this](auto value) {
            using Stored = decltype(value);
            if constexpr (std::is_same_v<Stored, bool>) {
                *room(1) = marker(simpleType, value ? 9 : 8);
            } else if constexpr (std::is_same_v<Stored, float>) {
                auto* at = room(5);
                *at = marker(realType, 2);
                putBig(at + 1, std::bit_cast<std::uint32_t>(value), 4);
            } else if constexpr (std::is_same_v<Stored, double>) {
                auto* at = room(9);
                *at = marker(realType, 3);
                putBig(at + 1, std::bit_cast<std::uint64_t>(value), 8);
            } else if constexpr (std::is_same_v<Stored, std::uint64_t>) {
                // Integers of eight bytes are signed, so this one takes sixteen.
                auto* at = room(17);
                *at = integerMarker(16);
                putBig(at + 9, value, 8);
            } else {
                const auto bits = static_cast<std::uint64_t>(value);
                auto* at = room(1 + widthOf(bits));
                *at = integerMarker(widthOf(bits));
                putBig(at + 1, bits, widthOf(bits));
            }
        },
        number.storage());
}

Ref Writer::data(std::span<const std::byte> bytes) {
    auto* at = room(headSize(bytes.size()) + bytes.size());
    putBytes(putHead(at, dataType, bytes.size()), bytes);
    return object();
}

Ref Writer::uid(std::uint32_t value) {
    const auto width = widthOf(value);
    auto* at = room(1 + width);
    *at = marker(uidType, width - 1);
    putBig(at + 1, value, width);
    return object();
}

Ref Writer::array(std::span<const Ref> elements) {
    const auto references = std::as_bytes(elements);
    auto* at = room(1 + references.size());
    *at = marker(arrayType, 0);
    putBytes(at + 1, references);
    return object();
}

Ref Writer::dictionary(std::span<const Ref> keys, std::span<const Ref> values) {
    const auto keyBytes = std::as_bytes(keys);
    const auto valueBytes = std::as_bytes(values);
    auto* at = room(1 + keyBytes.size() + valueBytes.size());
    *at = marker(dictionaryType, 0);
    putBytes(putBytes(at + 1, keyBytes), valueBytes);
    return object();
}

std::optional<Data> Writer::finish(std::span<const Ref> keys, std::span<const Ref> values) {
    const Ref top = dictionary(keys, values);
    if (overflown_) {
        return {};
    }
    // A Ref is already its object's index in the file, because the top object has index 0.
    const std::uint64_t objectCount = top;
    const auto referenceWidth = widthOf(objectCount);
    std::uint64_t table = headerSize;
    for (Ref ref = 1; ref <= top; ++ref) {
        table += Drafted(draftOf(ref)).finalSize(referenceWidth);
    }
    const auto offsetWidth = widthOf(table);
    const auto size = table + objectCount * offsetWidth + trailerSize;
    if (size > sizeLimit) {
        return {};
    }

    std::optional<Data> file(std::in_place, size);
    auto* const begin = file->data();
    auto* at = putBytes(begin, std::as_bytes(std::span("bplist00", headerSize)));
    auto* entry = begin + table;
    for (Ref place = 0; place < objectCount; ++place) {
        entry = putBig(entry, static_cast<std::uint64_t>(at - begin), offsetWidth);
        at = Drafted(draftOf(place == 0 ? top : place)).put(at, referenceWidth);
    }
    // Six unused bytes and the top object's index stay 0.
    entry[6] = static_cast<std::byte>(offsetWidth);
    entry[7] = static_cast<std::byte>(referenceWidth);
    putBig(entry + 8, objectCount, 8);
    putBig(entry + 24, table, 8);
    return file;
}

} // namespace platform::plist
