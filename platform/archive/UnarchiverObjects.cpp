// SPDX-License-Identifier: MIT
#include "platform/archive/UnarchiverState.h"

#include "platform/archive/ArchiveCosts.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

using plist::Element;
using plist::Kind;

namespace {

/// A slot's state. From `firstObject` on, values are indices into the made objects, plus
/// `firstObject`.
enum SlotState : std::uint32_t { untouched, beingMade, unreadable, firstObject };

/// Whether the object has an identity, so that there must not be two of it.
bool isShared(const Value& value) {
    return std::visit(
        [](const auto& held) {
            return requires {
                held.use_count();
            };
        },
        value);
}

/// Absent for NaN and for seconds beyond the range of a date.
Value dateAfter(double seconds) {
    constexpr double limit = 9e12;
    if (!(std::abs(seconds) < limit)) {
        return {};
    }
    return plist::referenceDate + std::chrono::microseconds(std::llround(seconds * 1e6));
}

} // namespace

Value KeyedUnarchiver::State::object(std::uint32_t slot, const Element& element) {
    Value value;
    switch (element.kind) {
    case Kind::absent:
    case Kind::broken:
        return {};
    case Kind::dictionary:
        return recordObject(slot, element);
    case Kind::ascii:
    case Kind::utf16:
        return text(element);
    case Kind::data:
        if (take(element.count, contentLeft)) {
            const auto bytes = list.data(element);
            value = Data(bytes.begin(), bytes.end());
        }
        break;
    case Kind::date:
        value = dateAfter(list.seconds(element));
        break;
    case Kind::boolean:
    case Kind::integer:
    case Kind::real:
        if (const auto number = list.number(element)) {
            value = *number;
        }
        break;
    case Kind::null:
    case Kind::uid:
    case Kind::array:
        break;
    }
    if (isAbsent(value)) {
        misread("is a value that no object can have");
    }
    return value;
}

Value KeyedUnarchiver::State::recordObject(std::uint32_t slot, const Element& element) {
    auto& state = slotStates[slot];
    if (state >= firstObject) {
        return objects[state - firstObject];
    }
    if (state == beingMade || depth == depthLimit) {
        misread(state == beingMade ? "contains itself" : "is nested too deeply");
        return {};
    }
    Record inner = recordOf(element);
    Value value;
    if (inner.layout && state != unreadable) {
        inner.archivedClass = &classOf(inner);
        state = beingMade;
        ++depth;
        std::swap(record, inner);
        value = newObject();
        std::swap(record, inner);
        --depth;
    }
    if (isAbsent(value)) {
        state = unreadable;
        misread(inner.archivedClass
                    ? fmt::format("is an object of the class \"{}\" that cannot be read",
                                  inner.archivedClass->name)
                    : "is an object that cannot be read");
    } else if (isShared(value)) {
        state = static_cast<std::uint32_t>(objects.size()) + firstObject;
        objects.push_back(value);
    } else {
        state = untouched;
    }
    return value;
}

Value KeyedUnarchiver::State::newObject() {
    const auto kind = record.archivedClass->kind;
    switch (kind) {
    case ClassKind::unknown:
        return {};
    case ClassKind::factory: {
        if (!take(costs::object, memoryLeft)) {
            return {};
        }
        auto made = (*record.archivedClass->factory)(coder);
        return made ? Value(std::move(made)) : Value();
    }
    case ClassKind::text: {
        const auto inlineText = field(record, "NS.string");
        return inlineText.isText() ? Value(text(inlineText)) : Value();
    }
    case ClassKind::data: {
        return object(0, field(record, "NS.data", Kind::data));
    }
    case ClassKind::date: {
        const auto seconds = field(record, "NS.time");
        const auto number = list.number(seconds);
        return number && seconds.kind != Kind::boolean ? dateAfter(number->doubleValue()) : Value();
    }
    case ClassKind::url:
        return newURL();
    case ClassKind::uuid: {
        UUID uuid;
        const auto bytes = field(record, "NS.uuidbytes", Kind::data);
        if (bytes.count != uuid.bytes.size()) {
            return {};
        }
        std::ranges::copy(list.data(bytes), uuid.bytes.begin());
        return uuid;
    }
    case ClassKind::null:
        return Null();
    case ClassKind::array:
    case ClassKind::mutableArray:
        return newList<Array>(kind == ClassKind::mutableArray);
    case ClassKind::set:
    case ClassKind::mutableSet:
        return newList<Set>(kind == ClassKind::mutableSet);
    case ClassKind::dictionary:
    case ClassKind::mutableDictionary:
        return newDictionary(kind == ClassKind::mutableDictionary);
    }
    return {};
}

Value KeyedUnarchiver::State::newURL() {
    const auto relative = object(slotOf(field(record, "NS.relative")));
    const auto* text = std::get_if<std::string>(&relative);
    const auto baseSlot = slotOf(field(record, "NS.base"));
    if (!text || slotElement(baseSlot).kind == Kind::absent) {
        return text ? Value(URL{*text}) : Value();
    }
    const auto base = object(baseSlot);
    const auto* baseURL = std::get_if<URL>(&base);
    return baseURL ? Value(URL{*text}.relativeTo(*baseURL)) : Value();
}

template <typename Container>
Value KeyedUnarchiver::State::newList(bool isMutable) {
    const auto uids = field(record, "NS.objects", Kind::array);
    if (uids.kind == Kind::absent ||
        !take(costs::container + costs::element * uids.count, memoryLeft)) {
        return {};
    }
    auto container = std::make_shared<Container>();
    container->isMutable = isMutable;
    container->elements.reserve(uids.count);
    for (std::size_t i = 0; i < uids.count; ++i) {
        const auto slot = slotOf(element(list.reference(uids, i)));
        const auto held = slotElement(slot);
        // No list holds absent objects; one that claims to is not trusted at all.
        if (held.kind == Kind::absent) {
            return {};
        }
        if (auto value = object(slot, held); !isAbsent(value)) {
            container->elements.push_back(std::move(value));
        }
    }
    return container;
}

Value KeyedUnarchiver::State::newDictionary(bool isMutable) {
    const auto keys = field(record, "NS.keys", Kind::array);
    const auto values = field(record, "NS.objects", Kind::array);
    if (keys.kind != values.kind || keys.kind == Kind::absent || keys.count != values.count ||
        !take(costs::container + costs::entry * keys.count, memoryLeft)) {
        return {};
    }
    auto dictionary = std::make_shared<Dictionary>();
    dictionary->isMutable = isMutable;
    for (std::size_t i = 0; i < keys.count; ++i) {
        const auto key = object(slotOf(element(list.reference(keys, i))));
        const auto* text = std::get_if<std::string>(&key);
        const auto slot = slotOf(element(list.reference(values, i)));
        const auto held = slotElement(slot);
        if (!text || held.kind == Kind::absent) {
            return {};
        }
        if (auto value = object(slot, held); !isAbsent(value)) {
            dictionary->entries.try_emplace(*text, std::move(value));
        }
    }
    return dictionary;
}

} // namespace platform
