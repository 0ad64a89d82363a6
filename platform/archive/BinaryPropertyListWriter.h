// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/HashIndex.h"
#include "platform/values/Value.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace platform::plist {

/// Identifies an object of the list being written; valid in that list only.
using Ref = std::uint32_t;

/// Assembles a list object by object. Equal texts and numbers become one object, except numbers
/// added as lone ones; containers, data and UIDs never do.
class Writer {
public:
    Writer();

    /// Malformed UTF-8 is written as U+FFFD.
    Ref text(std::string_view utf8);
    Ref number(const Number& number);
    /// For numbers that hardly repeat, such as positions: looking for an equal one costs more than
    /// it saves.
    Ref loneNumber(const Number& number);
    Ref data(std::span<const std::byte> bytes);
    Ref uid(std::uint32_t value);
    Ref array(std::span<const Ref> elements);
    /// There must be as many keys as values.
    Ref dictionary(std::span<const Ref> keys, std::span<const Ref> values);

    /// Returns the list whose top object is the dictionary of these keys and values; absent if it
    /// would exceed `sizeLimit`. The writer must not be used afterwards.
    [[nodiscard]] std::optional<Data> finish(std::span<const Ref> keys,
                                             std::span<const Ref> values);

private:
    [[nodiscard]] std::span<const std::byte> draftOf(Ref ref) const;
    std::byte* room(std::size_t size);
    void putNumber(const Number& number);
    /// Completes the object at the end of the draft. If an equal one exists, `sharedObject` removes
    /// the new one and returns that.
    Ref object();
    Ref sharedObject();

    /// All objects as they will be in the file, except that references take four bytes, since their
    /// final width depends on the number of objects, and that containers have no count yet.
    Data draft_;
    /// Where each object begins in the draft, and where the next one will.
    std::vector<std::uint32_t> starts_{0};
    bool overflown_ = false;
    HashIndex shared_;
    std::uint64_t seed_;
};

} // namespace platform::plist
