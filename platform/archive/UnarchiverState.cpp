// SPDX-License-Identifier: MIT
#include "platform/archive/UnarchiverState.h"

#include "platform/archive/ArchiveCosts.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

using plist::Element;
using plist::Kind;

std::optional<std::size_t> RecordLayout::find(std::string_view key) const {
    const auto found = std::ranges::find(keys_, key);
    return found == keys_.end() ? std::nullopt : std::optional(found - keys_.begin());
}

std::optional<std::size_t> RecordLayout::findUserKey(std::string_view key, std::size_t turn) {
    if (turn < guesses_.size() && guesses_[turn].key == key) {
        return guesses_[turn].place;
    }
    // The archive's own keys begin with "$"; a caller's that does has one more, to be set apart.
    const auto place = key.starts_with('$') ? find("$" + std::string(key)) : find(key);
    if (turn < KeyedUnarchiver::keyLimit) {
        guesses_.resize(std::max(guesses_.size(), turn + 1));
        guesses_[turn] = {std::string(key), place};
    }
    return place;
}

KeyedUnarchiver::State::State(const plist::Reader& reader, const ClassTable& known)
    : list(reader),
      classTable(known),
      coder(*this),
      keysLeft(reader.byteCount() + 65536),
      contentLeft(plist::contentLimit(reader.byteCount())),
      memoryLeft(costs::limit(reader.byteCount())) {}

void KeyedUnarchiver::State::readRoot() {
    Record top = recordOf(element(list.topObject()));
    const auto version = field(top, "$version", Kind::integer);
    const auto archiver = field(top, "$archiver");
    const auto roots = field(top, "$top", Kind::dictionary);
    const auto slots = field(top, "$objects", Kind::array);
    if (version.kind == Kind::absent || archiver.kind == Kind::absent ||
        roots.kind == Kind::absent || slots.kind == Kind::absent) {
        return breakOff("The property list is not a keyed archive: its top entries are missing.");
    }
    if (list.number(version) != Number(100000)) {
        return breakOff("The archive is of an unknown version.");
    }
    if (!list.isText(archiver, "NSKeyedArchiver")) {
        return breakOff("The archive was made by an unknown archiver.");
    }
    table = slots;
    if (table.count == 0 || !list.isText(element(list.reference(table, 0)), "$null")) {
        return breakOff("The archive's object table is empty or does not begin with \"$null\".");
    }
    Record rootKeys = recordOf(roots);
    const auto root = field(rootKeys, "root", Kind::uid);
    if (root.kind == Kind::absent) {
        return breakOff("The archive names no root object.");
    }
    if (!take(costs::slot * table.count, memoryLeft)) {
        return;
    }
    slotStates.resize(table.count);
    result.root = object(slotOf(root));
    if (isBroken) {
        result.root = {};
    } else if (isAbsent(result.root)) {
        breakOff(result.misreadings.empty() ? "The archive's root object is absent."
                                            : result.misreadings.front());
    }
}

void KeyedUnarchiver::State::breakOff(std::string_view fault) {
    if (!isBroken) {
        isBroken = true;
        result.fault = fault;
    }
}

void KeyedUnarchiver::State::misread(std::string_view reason) {
    if (isBroken) {
        return;
    }
    constexpr std::size_t mostWorded = 1000;
    if (result.misreadFields++ < mostWorded) {
        auto words = record.archivedClass
                         ? fmt::format("\"{}\" of {} {}.", record.layout->key(record.place),
                                       record.archivedClass->name, reason)
                         : fmt::format("The root object {}.", reason);
        if (std::ranges::find(result.misreadings, words) == result.misreadings.end()) {
            result.misreadings.push_back(std::move(words));
        }
    }
}

bool KeyedUnarchiver::State::take(std::uint64_t amount, std::uint64_t& allowance) {
    if (amount > allowance) {
        breakOff("The archive holds the same contents more often than a file of its size should.");
        return false;
    }
    allowance -= amount;
    return !isBroken;
}

void KeyedUnarchiver::State::breakOffAt(std::uint64_t object) {
    breakOff(fmt::format("The property list's object {} is broken or missing.", object));
}

std::string KeyedUnarchiver::State::text(const Element& element) {
    const std::uint64_t size =
        element.kind == Kind::utf16 ? 2 * std::uint64_t{element.count} : element.count;
    return take(size, contentLeft) ? list.text(element) : std::string();
}

KeyedUnarchiver::State::Record KeyedUnarchiver::State::recordOf(const Element& dictionary) {
    constexpr std::size_t mostKept = 1024;
    Record made{dictionary};
    if (dictionary.kind != Kind::dictionary || dictionary.count > keyLimit) {
        return made;
    }
    const auto bytes = list.referenceBytes(dictionary);
    if (const auto known = layouts.find(bytes); known != layouts.end()) {
        made.layout = &known->second;
    } else if (auto keys = keysOf(dictionary)) {
        if (layouts.size() < mostKept) {
            made.layout = &layouts.emplace(bytes, std::move(*keys)).first->second;
        } else {
            made.ownLayout = std::make_unique<RecordLayout>(std::move(*keys));
            made.layout = made.ownLayout.get();
        }
    }
    return made;
}

std::optional<std::vector<std::string>> KeyedUnarchiver::State::keysOf(const Element& dictionary) {
    // Even a record without keys takes time to look at, and may take very few bytes of the file.
    if (!take(dictionary.count + 16, keysLeft)) {
        return {};
    }
    std::vector<std::string> keys;
    for (std::size_t i = 0; i < dictionary.count; ++i) {
        const Element key = element(list.reference(dictionary, i));
        if (!key.isText()) {
            breakOff("The property list has a dictionary whose keys are not text.");
            return {};
        }
        keys.push_back(text(key));
    }
    return keys;
}

Element KeyedUnarchiver::State::field(Record& from, std::string_view key) {
    const auto place = from.layout ? from.layout->find(key) : std::nullopt;
    return place ? fieldAt(from, *place) : Element();
}

Element KeyedUnarchiver::State::field(Record& from, std::string_view key, Kind kind) {
    const auto element = field(from, key);
    return element.kind == kind ? element : Element();
}

Element KeyedUnarchiver::State::fieldAt(Record& from, std::size_t place) {
    from.place = place;
    // A dictionary's values follow its keys.
    return element(list.reference(from.fields, from.fields.count + place));
}

Element KeyedUnarchiver::State::userField(std::string_view key) {
    const auto place =
        record.layout ? record.layout->findUserKey(key, record.turn++) : std::nullopt;
    return place ? fieldAt(record, *place) : Element();
}

Element KeyedUnarchiver::State::unkeyedField() {
    return field(record, fmt::format("${}", record.unkeyed++));
}

std::int64_t KeyedUnarchiver::State::integerIn(const Element& field) {
    const auto number = list.number(field);
    if (number && !std::holds_alternative<std::uint64_t>(number->storage())) {
        // A real counts as an integer only if the conversion is exact.
        const auto real = number->doubleValue();
        if (!number->isReal() || (std::trunc(real) == real && std::abs(real) < 0x1p63)) {
            return number->integerValue();
        }
    }
    if (field.kind != Kind::absent) {
        misread("is not an integer of 64 bits");
    }
    return 0;
}

double KeyedUnarchiver::State::realIn(const Element& field) {
    const auto number = list.number(field);
    if (number && field.kind != Kind::boolean) {
        return number->doubleValue();
    }
    if (field.kind != Kind::absent) {
        misread("is not a real number");
    }
    return 0;
}

std::uint32_t KeyedUnarchiver::State::slotIn(const Element& field) {
    if (field.kind != Kind::uid && field.kind != Kind::absent) {
        misread("is not a reference to an object");
    }
    return slotOf(field);
}

std::uint32_t KeyedUnarchiver::State::slotOf(const Element& uid) {
    const auto slot = uid.kind == Kind::uid ? list.uid(uid) : 0;
    if (slot >= table.count) {
        breakOff("The archive refers to an object beyond its object table.");
    }
    return isBroken ? 0 : static_cast<std::uint32_t>(slot);
}

Element KeyedUnarchiver::State::slotElement(std::uint32_t slot) {
    const auto held = slot == 0 ? Element() : element(list.reference(table, slot));
    return list.isText(held, "$null") ? Element() : held;
}

const KeyedUnarchiver::State::ArchivedClass& KeyedUnarchiver::State::classOf(Record& object) {
    const auto place = object.layout->classPlace();
    const auto slot = place ? slotOf(fieldAt(object, *place)) : 0;
    const auto known = classes.find(slot);
    if (known != classes.end()) {
        return known->second;
    }
    static const ArchivedClass unknown;
    return take(costs::archivedClass, memoryLeft)
               ? classes.emplace(slot, readClass(slotElement(slot))).first->second
               : unknown;
}

KeyedUnarchiver::State::ArchivedClass KeyedUnarchiver::State::readClass(const Element& element) {
    using OwnClass = std::pair<std::string_view, ClassKind>;
    static constexpr OwnClass ownClasses[] = {
        {"NSString", ClassKind::text},
        {"NSMutableString", ClassKind::text},
        {"NSData", ClassKind::data},
        {"NSMutableData", ClassKind::data},
        {"NSDate", ClassKind::date},
        {"NSURL", ClassKind::url},
        {"NSUUID", ClassKind::uuid},
        {"NSNull", ClassKind::null},
        {"NSArray", ClassKind::array},
        {"NSMutableArray", ClassKind::mutableArray},
        {"NSSet", ClassKind::set},
        {"NSMutableSet", ClassKind::mutableSet},
        {"NSDictionary", ClassKind::dictionary},
        {"NSMutableDictionary", ClassKind::mutableDictionary},
    };
    ArchivedClass found;
    const auto recognise = [&](const Element& name) {
        const auto text = this->text(name);
        if (found.name.empty()) {
            found.name = wholeCharacterPrefix(text, 64);
        }
        if ((found.factory = classTable.find(text))) {
            found.kind = ClassKind::factory;
        } else if (const auto* own = std::ranges::find(ownClasses, text, &OwnClass::first);
                   own != std::end(ownClasses)) {
            found.kind = own->second;
        }
        return found.kind != ClassKind::unknown;
    };
    Record classRecord = recordOf(element);
    const auto name = field(classRecord, "$classname");
    if (name.isText() && recognise(name)) {
        return found;
    }
    const auto names = field(classRecord, "$classes", Kind::array);
    if (names.kind == Kind::array && take(names.count, keysLeft)) {
        for (std::size_t i = 0; i < names.count; ++i) {
            const Element ancestor = this->element(list.reference(names, i));
            if (ancestor.isText() && recognise(ancestor)) {
                break;
            }
        }
    }
    return found;
}

} // namespace platform
