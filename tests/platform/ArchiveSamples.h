// SPDX-License-Identifier: MIT
#pragma once

#include "platform/archive/BinaryPropertyListWriter.h"
#include "platform/archive/KeyedUnarchiver.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What the tests of keyed archives write, and helpers that show what they read.
namespace samples {

/// An object with a field of each kind.
struct Beacon final : platform::Archivable {
    std::optional<std::string> name;
    std::optional<platform::Number> code;
    std::int64_t height = 0;
    std::int32_t channel = 0;
    bool isLit = false;
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

/// A table that knows the class "Beacon".
[[nodiscard]] const platform::ClassTable& classes();
[[nodiscard]] platform::Unarchived unarchived(const std::optional<platform::Data>& archive);
/// Empty if nothing was misread.
[[nodiscard]] std::string firstMisreading(const platform::Unarchived& result);

[[nodiscard]] std::shared_ptr<platform::Array> arrayOf(std::vector<platform::Value> elements,
                                                       bool isMutable = true);
[[nodiscard]] std::shared_ptr<platform::Dictionary>
dictionaryOf(std::map<std::string, platform::Value, std::less<>> entries, bool isMutable = true);
/// A beacon with no empty field.
[[nodiscard]] std::shared_ptr<Beacon> richBeacon();
/// The bytes of hexadecimal digits; blanks between digits are ignored.
[[nodiscard]] platform::Data hex(std::string_view digits);

/// A value and all its contents as text that distinguishes kinds, mutability and classes: [mutable
/// array], (array), {mutable=dictionary}, <other kinds>, and "-" for an absent value. Objects show
/// only fields that are not empty.
[[nodiscard]] std::string shown(const platform::Value& value);

/// Makes archives that `KeyedArchiver` would not write. Objects are given in a notation: 'text',
/// <data>, true, 5, 5.0, [array elements], [one*1000], {key=value key=value}. #5 refers to slot 5,
/// @object to a new slot with that object; Name:Ancestor{key=value} is a record of a class.
class Forger {
public:
    using Ref = platform::plist::Ref;

    Ref object(std::string_view notation);
    std::uint32_t addSlot(Ref object);
    /// An archive whose next slots hold these objects. The first of them is the root.
    [[nodiscard]] platform::Data archive(const std::vector<std::string>& objects);
    [[nodiscard]] platform::Unarchived read(const std::vector<std::string>& objects) {
        return unarchived(archive(objects));
    }

    platform::plist::Writer list;
    /// Entries that replace those of the archive's frame; an empty text leaves the entry out.
    std::map<std::string, std::string> frame;

private:
    Ref next(std::string_view& rest);
    std::uint32_t classSlot(const std::string& names);

    std::vector<Ref> slots_{list.text("$null")};
    std::map<std::string, std::uint32_t> classes_;
};

} // namespace samples
