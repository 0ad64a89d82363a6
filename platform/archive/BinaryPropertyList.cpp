// SPDX-License-Identifier: MIT
#include "platform/archive/BinaryPropertyList.h"

#include "platform/text/Text.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <bit>

namespace platform::plist {

namespace {

constexpr UChar32 replacementCode = 0xFFFD;

void appendUtf8(std::string& text, UChar32 code) {
    char units[U8_MAX_LENGTH];
    std::size_t length = 0;
    U8_APPEND_UNSAFE(units, length, code);
    text.append(units, length);
}

} // namespace

std::optional<Reader> Reader::open(std::span<const std::byte> bytes, std::string& fault) {
    const std::string_view start(reinterpret_cast<const char*>(bytes.data()),
                                 std::min(bytes.size(), headerSize));
    if (start.empty()) {
        fault = "The file is empty.";
        return {};
    }
    if (!start.starts_with(signature)) {
        fault = start.starts_with("<?xml") || start.starts_with("<!DOCTYP") ||
                        start.starts_with("<plist")
                    ? "The file is a property list in XML form; only the binary form is read."
                    : "The file is not a binary property list.";
        return {};
    }
    // Header, one object, one offset, trailer.
    if (bytes.size() < headerSize + 1 + 1 + trailerSize) {
        fault = "The property list is cut short.";
        return {};
    }
    if (bytes.size() > sizeLimit) {
        fault = "The property list is too large.";
        return {};
    }
    Reader reader;
    reader.bytes_ = bytes;
    const std::size_t tableEnd = bytes.size() - trailerSize;
    reader.offsetWidth_ = reader.numberAt(tableEnd + 6, 1);
    reader.referenceWidth_ = reader.numberAt(tableEnd + 7, 1);
    reader.objectCount_ = reader.numberAt(tableEnd + 8, 8);
    reader.top_ = reader.numberAt(tableEnd + 16, 8);
    reader.table_ = reader.numberAt(tableEnd + 24, 8);
    const auto isWidth = [](std::size_t width) { return width >= 1 && width <= 8; };
    if (!isWidth(reader.offsetWidth_) || !isWidth(reader.referenceWidth_) ||
        reader.objectCount_ == 0 || reader.table_ <= headerSize || reader.table_ >= tableEnd ||
        reader.objectCount_ > (tableEnd - reader.table_) / reader.offsetWidth_ ||
        reader.top_ >= reader.objectCount_) {
        fault = "The property list has a broken trailer; it may be cut short.";
        return {};
    }
    return reader;
}

Element Reader::element(std::uint64_t index) const {
    constexpr Element broken{0, Kind::broken, 0};
    if (index >= objectCount_) {
        return broken;
    }
    const auto offset = numberAt(table_ + index * offsetWidth_, offsetWidth_);
    if (offset < headerSize || offset >= table_) {
        return broken;
    }
    std::size_t position = offset + 1;
    const auto marker = static_cast<unsigned>(numberAt(offset, 1));
    const unsigned low = marker & 15;
    Kind kind = Kind::broken;
    std::uint64_t count = low;
    std::size_t width = 1;
    switch (marker >> 4) {
    case simpleType:
        kind = low == 0 ? Kind::null : low == 8 || low == 9 ? Kind::boolean : Kind::broken;
        return {position, kind, low & 1};
    case integerType:
        kind = low <= 4 ? Kind::integer : Kind::broken;
        count = 1U << low;
        break;
    case realType:
        kind = low == 2 || low == 3 ? Kind::real : Kind::broken;
        count = 1U << low;
        break;
    case dateType:
        kind = low == 3 ? Kind::date : Kind::broken;
        count = 8;
        break;
    case uidType:
        kind = low < 8 ? Kind::uid : Kind::broken;
        count = low + 1;
        break;
    case dataType:
        kind = Kind::data;
        break;
    case asciiType:
        kind = Kind::ascii;
        break;
    case utf16Type:
        kind = Kind::utf16;
        width = 2;
        break;
    case arrayType:
        kind = Kind::array;
        width = referenceWidth_;
        break;
    case dictionaryType:
        kind = Kind::dictionary;
        width = 2 * referenceWidth_;
        break;
    default:
        break;
    }
    if (kind == Kind::broken) {
        return broken;
    }
    if (low == countFollows) {
        const auto head = position < table_ ? numberAt(position, 1) : 0;
        const std::size_t size = std::size_t{1} << (head & 15);
        if (head >> 4 != integerType || size > 8 || size > table_ - position - 1) {
            return broken;
        }
        count = numberAt(position + 1, size);
        position += 1 + size;
    }
    // The count alone is compared first, so that the product cannot overflow.
    const auto room = table_ - position;
    return count <= room && count * width <= room
               ? Element{position, kind, static_cast<std::uint32_t>(count)}
               : broken;
}

std::string_view Reader::referenceBytes(const Element& container) const {
    return {reinterpret_cast<const char*>(bytes_.data()) + container.position,
            container.count * referenceWidth_};
}

std::optional<Number> Reader::number(const Element& element) const {
    switch (element.kind) {
    case Kind::boolean:
        return Number(element.count != 0);
    case Kind::integer:
        if (element.count < 8) {
            return Number(static_cast<std::int64_t>(numberAt(element.position, element.count)));
        }
        if (element.count == 8) {
            return Number(static_cast<std::int64_t>(numberAt(element.position, 8)));
        }
        return numberAt(element.position, 8) == 0
                   ? std::optional(Number(numberAt(element.position + 8, 8)))
                   : std::nullopt;
    case Kind::real:
        return element.count == 4 ? Number(std::bit_cast<float>(
                                        static_cast<std::uint32_t>(numberAt(element.position, 4))))
                                  : Number(std::bit_cast<double>(numberAt(element.position, 8)));
    default:
        return {};
    }
}

double Reader::seconds(const Element& element) const {
    return std::bit_cast<double>(numberAt(element.position, 8));
}

std::span<const std::byte> Reader::data(const Element& element) const {
    return bytes_.subspan(element.position, element.count);
}

std::string Reader::text(const Element& element) const {
    if (element.kind == Kind::ascii) {
        const std::string_view raw(reinterpret_cast<const char*>(bytes_.data()) + element.position,
                                   element.count);
        if (isAscii(raw)) {
            return std::string(raw);
        }
        std::string text;
        for (const char unit : raw) {
            appendUtf8(text, isAscii(unit) ? unit : replacementCode);
        }
        return text;
    }
    std::string text;
    const auto unitAt = [&](std::size_t index) {
        return static_cast<UChar32>(numberAt(element.position + 2 * index, 2));
    };
    for (std::size_t i = 0; i < element.count; ++i) {
        UChar32 code = unitAt(i);
        if (U16_IS_LEAD(code) && i + 1 < element.count && U16_IS_TRAIL(unitAt(i + 1))) {
            code = U16_GET_SUPPLEMENTARY(code, unitAt(++i));
        }
        appendUtf8(text, U_IS_SURROGATE(code) ? replacementCode : code);
    }
    return text;
}

} // namespace platform::plist
