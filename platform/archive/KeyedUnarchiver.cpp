// SPDX-License-Identifier: MIT
#include "platform/archive/KeyedUnarchiver.h"

#include "platform/archive/UnarchiverState.h"
#include "platform/host/Files.h"

#include <new>
#include <utility>

namespace platform {

using plist::Kind;

static_assert(KeyedUnarchiver::sizeLimit == plist::sizeLimit);

namespace {

Unarchived outOfMemory() {
    Unarchived failed;
    // Short enough for the string to allocate nothing.
    failed.fault = "Out of memory.";
    return failed;
}

} // namespace

Unarchived KeyedUnarchiver::unarchive(std::span<const std::byte> bytes,
                                      const ClassTable& classes) try {
    Unarchived failed;
    const auto list = plist::Reader::open(bytes, failed.fault);
    if (!list) {
        return failed;
    }
    State state(*list, classes);
    state.readRoot();
    return std::move(state.result);
} catch (const std::bad_alloc&) {
    return outOfMemory();
}

Unarchived KeyedUnarchiver::unarchiveFile(const std::filesystem::path& path,
                                          const ClassTable& classes) try {
    if (const auto bytes = readFile(path, sizeLimit)) {
        return unarchive(*bytes, classes);
    }
    Unarchived failed;
    failed.fault =
        fileExists(path) ? "The file cannot be read or is too large." : "The file does not exist.";
    return failed;
} catch (const std::bad_alloc&) {
    return outOfMemory();
}

KeyedUnarchiver::KeyedUnarchiver(State& state) : state_(state) {}

Value KeyedUnarchiver::decodeObject(std::string_view key) {
    return state_.object(state_.slotIn(state_.userField(key)));
}

std::optional<std::string> KeyedUnarchiver::decodeText(std::string_view key) {
    const auto slot = state_.slotIn(state_.userField(key));
    const auto element = state_.slotElement(slot);
    if (element.isText()) {
        return state_.text(element);
    }
    auto value = state_.object(slot, element);
    if (auto* text = std::get_if<std::string>(&value)) {
        return std::move(*text);
    }
    if (!isAbsent(value)) {
        state_.misread("is not text");
    }
    return {};
}

std::optional<Number> KeyedUnarchiver::decodeNumber(std::string_view key) {
    const auto element = state_.slotElement(state_.slotIn(state_.userField(key)));
    const auto number = state_.list.number(element);
    if (!number && element.kind != Kind::absent) {
        state_.misread("is not a number of at most 64 bits");
    }
    return number;
}

std::int64_t KeyedUnarchiver::decodeInteger(std::string_view key) {
    return state_.integerIn(state_.userField(key));
}

std::int32_t KeyedUnarchiver::decodeInt32(std::string_view key) {
    const auto value = decodeInteger(key);
    if (value != static_cast<std::int32_t>(value)) {
        state_.misread("is beyond 32 bits");
        return 0;
    }
    return static_cast<std::int32_t>(value);
}

bool KeyedUnarchiver::decodeBool(std::string_view key) {
    const auto field = state_.userField(key);
    if (field.kind != Kind::boolean && field.kind != Kind::absent) {
        state_.misread("is not a boolean");
        return false;
    }
    return field.count != 0;
}

double KeyedUnarchiver::decodeDouble(std::string_view key) {
    return state_.realIn(state_.userField(key));
}

std::span<const std::byte> KeyedUnarchiver::decodeBytes(std::string_view key) {
    const auto field = state_.userField(key);
    if (field.kind == Kind::data) {
        return state_.list.data(field);
    }
    if (field.kind != Kind::absent) {
        state_.misread("is not data");
    }
    return {};
}

void KeyedUnarchiver::misread(std::string_view reason) {
    state_.misread(reason);
}

Value KeyedUnarchiver::decodeObject() {
    return state_.object(state_.slotIn(state_.unkeyedField()));
}

std::int64_t KeyedUnarchiver::decodeInteger() {
    return state_.integerIn(state_.unkeyedField());
}

} // namespace platform
