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

/// Names an object of the list that is being written; valid in that list only.
using Ref = std::uint32_t;

/// Puts a list together, object by object. Equal texts and numbers become one object, unless a
/// number is added as a lone one; containers, data and UIDs never.
class Writer {
public:
    Writer();

    /// Text that is not UTF-8 is written with U+FFFD in it.
    Ref text(std::string_view utf8);
    Ref number(const Number& number);
    /// For what hardly repeats, such as positions: looking for an equal one costs more than it
    /// saves.
    Ref loneNumber(const Number& number);
    Ref data(std::span<const std::byte> bytes);
    Ref uid(std::uint32_t value);
    Ref array(std::span<const Ref> elements);
    /// As many keys as values.
    Ref dictionary(std::span<const Ref> keys, std::span<const Ref> values);

    /// The list whose top object is the dictionary of these keys and values; nothing when it would
    /// exceed `sizeLimit`. The writer is spent then.
    [[nodiscard]] std::optional<Data> finish(std::span<const Ref> keys,
                                             std::span<const Ref> values);

private:
    [[nodiscard]] std::span<const std::byte> draftOf(Ref ref) const;
    std::byte* room(std::size_t size);
    void putNumber(const Number& number);
    /// Completes the object that was put at the draft's end; or, the shared one, takes it off again
    /// and answers an equal one.
    Ref object();
    Ref sharedObject();

    /// All objects as they will stand in the file, but references take four bytes in here and
    /// containers have no count yet: both depend on the number of objects.
    Data draft_;
    /// Where each object begins in the draft, and the next one will.
    std::vector<std::uint32_t> starts_{0};
    bool overflown_ = false;
    HashIndex shared_;
    std::uint64_t seed_;
};

} // namespace platform::plist
