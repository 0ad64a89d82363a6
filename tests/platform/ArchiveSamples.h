// SPDX-License-Identifier: MIT
#pragma once

#include "platform/BinaryPropertyListWriter.h"
#include "platform/KeyedUnarchiver.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What the tests of keyed archives archive, and how they look at it.
namespace samples {

/// An object with a field of each kind.
struct Beacon final : platform::Archivable {
    std::optional<std::string> name;
    std::optional<platform::Number> code;
    std::int64_t height = 0;
    std::int32_t channel = 0;
    bool isLit = false;
    float range = 0;
    double latitude = 0;
    platform::Data signal;
    platform::Value price;
    platform::Value other;
    platform::Value loose;
    std::int64_t looseNumber = 0;

    [[nodiscard]] const platform::ClassNames& archivedClass() const override;
    void encodeWithCoder(platform::KeyedArchiver& coder) const override;
    [[nodiscard]] static std::shared_ptr<platform::Archivable>
    initWithCoder(platform::KeyedUnarchiver& coder);
};

/// With "Beacon" in it.
[[nodiscard]] const platform::ClassTable& classes();
[[nodiscard]] platform::Unarchived unarchived(const std::optional<platform::Data>& archive);

[[nodiscard]] std::shared_ptr<platform::Array> arrayOf(std::vector<platform::Value> elements,
                                                       bool isMutable = true);
/// An array within an array and so on, `depth` in all.
[[nodiscard]] platform::Value nestedArrays(int depth);
/// Bytes written as hexadecimal digits, blanks between them at will.
[[nodiscard]] platform::Data hex(std::string_view digits);

/// A value and all it holds as text that tells kinds, mutability and classes apart: [mutable
/// array], (array), {mutable=dictionary}, <other kinds>, and "-" for an absent value. Of an object
/// only the fields that are not empty.
[[nodiscard]] std::string shown(const platform::Value& value);

/// Puts together archives that `KeyedArchiver` would not write.
struct Forger {
    using Ref = platform::plist::Ref;
    using Fields = std::vector<std::pair<std::string, Ref>>;

    Forger();

    Ref text(std::string_view text) { return list.text(text); }
    Ref integer(std::int64_t value) { return list.number(platform::Number(value)); }
    Ref real(double value) { return list.number(platform::Number(value)); }
    Ref uid(std::uint32_t slot) { return list.uid(slot); }
    Ref array(const std::vector<Ref>& elements) { return list.array(elements); }
    Ref uids(const std::vector<std::uint32_t>& slots);
    Ref dictionary(const Fields& fields);
    /// A record whose class is "Beacon" or the one of a slot.
    Ref record(Fields fields, std::uint32_t classSlot = 0);
    std::uint32_t addSlot(Ref object);
    std::uint32_t addClass(const std::vector<std::string>& names);
    [[nodiscard]] platform::Data finish(std::uint32_t rootSlot);

    platform::plist::Writer list;
    std::vector<Ref> slots;
    std::uint32_t beaconClass = 0;
    /// Entries that replace those of the archive's frame; 0 leaves one out.
    Fields frame;
};

} // namespace samples
