// SPDX-License-Identifier: MIT
#pragma once

#include "platform/archive/KeyedArchiver.h"

#include <functional>
#include <utility>

namespace support {

/// An object with any class name, whose fields the test writes.
struct Record final : platform::Archivable {
    explicit Record(
        const char* name, std::function<void(platform::KeyedArchiver&)> writer = [](auto&) {})
        : names{name}, write(std::move(writer)) {}
    [[nodiscard]] const platform::ClassNames& archivedClass() const override { return names; }
    void encodeWithCoder(platform::KeyedArchiver& coder) const override { write(coder); }

    platform::ClassNames names;
    std::function<void(platform::KeyedArchiver&)> write;
};

} // namespace support
