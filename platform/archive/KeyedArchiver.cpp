// SPDX-License-Identifier: MIT
#include "platform/archive/KeyedArchiver.h"

#include "platform/archive/ArchiveCosts.h"
#include "platform/archive/BinaryPropertyList.h"
#include "platform/archive/BinaryPropertyListWriter.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "platform/host/Files.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <new>
#include <utility>

namespace platform {

namespace {

using plist::Ref;

const ClassNames mutableStringClass{"NSMutableString", "NSString", "NSObject"};
const ClassNames dateClass{"NSDate", "NSObject"};
const ClassNames urlClass{"NSURL", "NSObject"};
const ClassNames uuidClass{"NSUUID", "NSObject"};
const ClassNames nullClass{"NSNull", "NSObject"};
const ClassNames arrayClass{"NSArray", "NSObject"};
const ClassNames mutableArrayClass{"NSMutableArray", "NSArray", "NSObject"};
const ClassNames setClass{"NSSet", "NSObject"};
const ClassNames mutableSetClass{"NSMutableSet", "NSSet", "NSObject"};
const ClassNames dictionaryClass{"NSDictionary", "NSObject"};
const ClassNames mutableDictionaryClass{"NSMutableDictionary", "NSDictionary", "NSObject"};

double secondsSinceReference(Date date) {
    // Subtracted as doubles, since the difference of the most distant dates would overflow an
    // integer.
    const auto microseconds = [](Date instant) {
        return static_cast<double>(instant.time_since_epoch().count());
    };
    return (microseconds(date) - microseconds(plist::referenceDate)) / 1e6;
}

/// A slot that holds this text itself reads as an absent object.
constexpr std::string_view nullText = "$null";

} // namespace

struct KeyedArchiver::State {
    /// A class met so far, with the keys of its last record: the n-th key of its next record is
    /// probably the same.
    struct KnownClass {
        const ClassNames* names;
        std::uint32_t slot = 0;
        std::vector<std::pair<std::string, Ref>> lastKeys;
    };
    /// The record being written; its fields are those in `keys` and `values` from `firstField` on.
    struct Record {
        std::size_t firstField = 0;
        std::size_t knownClass = 0;
        std::size_t unkeyed = 0;
    };

    plist::Writer list;
    /// The object table: which object of the list each slot holds.
    std::vector<Ref> slots{list.text(nullText)};
    /// The UID object of each slot and the slot of each text or number; 0 where there is none yet.
    std::vector<Ref> uids;
    std::vector<std::uint32_t> scalarSlots;
    /// The objects that have a slot. They are kept alive, lest another object take over the address
    /// of a temporary one and be mistaken for it.
    HashIndex identityIndex;
    std::vector<std::pair<std::uint32_t, std::shared_ptr<const void>>> identities;

    std::vector<KnownClass> classes;
    std::vector<Ref> keys;
    std::vector<Ref> values;
    Record record;
    /// The element UIDs of the containers being written, stacked from the outermost to the
    /// innermost.
    std::vector<Ref> elements;
    int depth = 0;
    std::uint64_t textBytes = 0;
    std::uint64_t readersCost = 0;
    bool isRefused = false;

    std::uint32_t newSlot() {
        slots.push_back(0);
        return static_cast<std::uint32_t>(slots.size() - 1);
    }

    template <typename T>
    static T& at(std::vector<T>& table, std::size_t index) {
        if (index >= table.size()) {
            table.resize(index + 1);
        }
        return table[index];
    }

    Ref uid(std::uint32_t slot) {
        auto& ref = at(uids, slot);
        if (ref == 0) {
            ref = list.uid(slot);
        }
        return ref;
    }

    std::uint32_t slotOfScalar(Ref scalar) {
        auto& slot = at(scalarSlots, scalar);
        if (slot == 0) {
            slot = newSlot();
            slots[slot] = scalar;
        }
        return slot;
    }

    std::uint32_t slotOfText(std::string_view text) {
        textBytes += text.size();
        if (text == nullText) {
            return newRecord(mutableStringClass, [&] { add("NS.string", list.text(text)); });
        }
        return slotOfScalar(list.text(text));
    }

    /// Returns the object's slot, calling `write(slot)` if that is new; 0 for null.
    template <typename Write>
    std::uint32_t shared(std::shared_ptr<const void> object, Write write) {
        if (!object) {
            return 0;
        }
        const auto address = reinterpret_cast<std::uintptr_t>(object.get());
        const auto hash = hashOf(address);
        const auto number = identityIndex.find(
            hash, [&](std::uint32_t known) { return identities[known - 1].second == object; });
        if (number != 0) {
            return identities[number - 1].first;
        }
        const auto slot = newSlot();
        identities.emplace_back(slot, std::move(object));
        identityIndex.insert(hash, static_cast<std::uint32_t>(identities.size()));
        write(slot);
        return slot;
    }

    template <typename Fields>
    std::uint32_t newRecord(const ClassNames& names, Fields fields) {
        const auto slot = newSlot();
        writeRecord(slot, names, fields);
        return slot;
    }

    /// Calls `fields` to add the record's fields.
    template <typename Fields>
    void writeRecord(std::uint32_t slot, const ClassNames& names, Fields fields) {
        if (names.empty() || depth == KeyedUnarchiver::depthLimit || isRefused) {
            isRefused = true;
            return;
        }
        const Record outer = std::exchange(record, {keys.size(), knownClass(names), 0});
        ++depth;
        fields();
        --depth;
        add("$class", uid(classSlot(record.knownClass)));
        const auto first = static_cast<std::ptrdiff_t>(record.firstField);
        const auto count = keys.size() - record.firstField;
        isRefused = isRefused || count > KeyedUnarchiver::keyLimit;
        slots[slot] = list.dictionary(std::span(keys).last(count), std::span(values).last(count));
        keys.erase(keys.begin() + first, keys.end());
        values.erase(values.begin() + first, values.end());
        record = outer;
    }

    std::size_t knownClass(const ClassNames& names) {
        const auto known = std::ranges::find(classes, &names, &KnownClass::names);
        if (known == classes.end()) {
            classes.push_back({&names, 0, {}});
            return classes.size() - 1;
        }
        return static_cast<std::size_t>(known - classes.begin());
    }

    /// A class gets its slot once its first object is complete.
    std::uint32_t classSlot(std::size_t knownClass) {
        auto& known = classes[knownClass];
        if (known.slot == 0) {
            std::vector<Ref> names;
            for (const auto& name : *known.names) {
                names.push_back(list.text(name));
            }
            const std::array recordKeys{list.text("$classname"), list.text("$classes")};
            const std::array recordValues{names.front(), list.array(names)};
            known.slot = newSlot();
            slots[known.slot] = list.dictionary(recordKeys, recordValues);
        }
        return known.slot;
    }

    Ref keyRef(std::string_view key) {
        auto& lastKeys = classes[record.knownClass].lastKeys;
        const auto place = keys.size() - record.firstField;
        if (place < lastKeys.size() && lastKeys[place].first == key) {
            return lastKeys[place].second;
        }
        const Ref ref = list.text(key);
        if (place < KeyedUnarchiver::keyLimit) {
            at(lastKeys, place) = {std::string(key), ref};
        }
        return ref;
    }

    void add(std::string_view key, Ref value) {
        const Ref ref = keyRef(key);
        const auto first = keys.begin() + static_cast<std::ptrdiff_t>(record.firstField);
        const auto same = std::find(first, keys.end(), ref);
        if (same != keys.end()) {
            values[static_cast<std::size_t>(same - keys.begin())] = value;
            return;
        }
        keys.push_back(ref);
        values.push_back(value);
    }

    /// The archive's own keys begin with "$"; a caller's that does gets one more, to be set apart.
    void addUserField(std::string_view key, Ref value) {
        key.starts_with('$') ? add("$" + std::string(key), value) : add(key, value);
    }

    void addUnkeyed(Ref value) { add("$" + std::to_string(record.unkeyed++), value); }

    /// An array of the slot that `slotOfElement` returns for each element. Absent elements are left
    /// out, since no container holds them.
    template <typename Elements, typename SlotOfElement>
    Ref uidArray(const Elements& contents, SlotOfElement slotOfElement) {
        const auto first = elements.size();
        for (const auto& element : contents) {
            if (const auto slot = slotOfElement(element)) {
                elements.push_back(uid(slot));
            }
        }
        const Ref array = list.array(std::span(elements).subspan(first));
        elements.resize(first);
        return array;
    }

    template <typename Container>
    std::uint32_t slotOfList(const std::shared_ptr<Container>& container, const ClassNames& names) {
        return shared(container, [&](std::uint32_t slot) {
            readersCost += costs::container + costs::element * container->elements.size();
            writeRecord(slot, names, [&] {
                add("NS.objects", uidArray(container->elements,
                                           [this](const Value& value) { return slotOf(value); }));
            });
        });
    }

    std::uint32_t slotOf(const Value& value) {
        return std::visit([this](const auto& held) { return slotOfHeld(held); }, value);
    }

    [[nodiscard]] std::uint32_t slotOfHeld(std::monostate) const { return 0; }
    std::uint32_t slotOfHeld(Null) {
        return newRecord(nullClass, [] {});
    }
    std::uint32_t slotOfHeld(const std::string& text) { return slotOfText(text); }
    std::uint32_t slotOfHeld(const Number& number) { return slotOfScalar(list.number(number)); }
    std::uint32_t slotOfHeld(const Data& data) {
        const auto slot = newSlot();
        slots[slot] = list.data(data);
        return slot;
    }
    std::uint32_t slotOfHeld(Date date) {
        return newRecord(dateClass, [&] {
            add("NS.time", list.loneNumber(Number(secondsSinceReference(date))));
        });
    }
    std::uint32_t slotOfHeld(const URL& url) {
        return newRecord(urlClass, [&] {
            add("NS.base", uid(0));
            add("NS.relative", uid(slotOfText(url.text)));
        });
    }
    std::uint32_t slotOfHeld(const UUID& uuid) {
        return newRecord(uuidClass, [&] { add("NS.uuidbytes", list.data(uuid.bytes)); });
    }
    std::uint32_t slotOfHeld(const std::shared_ptr<Array>& array) {
        return slotOfList(array, array && array->isMutable ? mutableArrayClass : arrayClass);
    }
    std::uint32_t slotOfHeld(const std::shared_ptr<Set>& set) {
        return slotOfList(set, set && set->isMutable ? mutableSetClass : setClass);
    }
    std::uint32_t slotOfHeld(const std::shared_ptr<Dictionary>& dictionary) {
        return shared(dictionary, [&](std::uint32_t slot) {
            readersCost += costs::container + costs::entry * dictionary->entries.size();
            const auto& names = dictionary->isMutable ? mutableDictionaryClass : dictionaryClass;
            writeRecord(slot, names, [&] {
                add("NS.keys", uidArray(dictionary->entries, [this](const auto& entry) {
                        return isAbsent(entry.second) ? 0 : slotOfText(entry.first);
                    }));
                add("NS.objects", uidArray(dictionary->entries, [this](const auto& entry) {
                        return slotOf(entry.second);
                    }));
            });
        });
    }
    std::uint32_t slotOfHeld(const std::shared_ptr<Archivable>& object) {
        return shared(object, [&](std::uint32_t slot) {
            readersCost += costs::object;
            writeRecord(slot, object->archivedClass(), [&] {
                KeyedArchiver coder(*this);
                object->encodeWithCoder(coder);
            });
        });
    }
};

KeyedArchiver::KeyedArchiver(State& state) : state_(state) {}

std::optional<Data> KeyedArchiver::archivedData(const Value& root) try {
    State state;
    auto& list = state.list;
    const auto slot = state.slotOf(root);
    if (slot == 0 || state.isRefused) {
        return {};
    }
    const std::array topKeys{list.text("root")};
    const std::array topValues{state.uid(slot)};
    const Ref top = list.dictionary(topKeys, topValues);
    const Ref objects = list.array(state.slots);
    // Braces fix the order of evaluation, and with it the order of the objects in the file.
    const std::array entries{list.text("$version"),  list.number(Number(100000)),
                             list.text("$archiver"), list.text("NSKeyedArchiver"),
                             list.text("$top"),      list.text("$objects")};
    const std::array keys{entries[0], entries[2], entries[4], entries[5]};
    const std::array values{entries[1], entries[3], top, objects};
    auto data = list.finish(keys, values);
    // A reader counts each text once per reference, and at up to twice its length.
    const auto readersCost = state.readersCost + costs::slot * state.slots.size() +
                             costs::archivedClass * state.classes.size();
    if (!data || 2 * state.textBytes > plist::contentLimit(data->size()) ||
        readersCost > costs::limit(data->size())) {
        return {};
    }
    return data;
} catch (const std::bad_alloc&) {
    return {};
}

bool KeyedArchiver::archiveRootObject(const Value& root, const std::filesystem::path& path) try {
    const auto data = archivedData(root);
    return data && !replaceFile(path, *data);
} catch (const std::bad_alloc&) {
    return false;
}

void KeyedArchiver::encodeObject(const Value& value, std::string_view key) {
    state_.addUserField(key, state_.uid(state_.slotOf(value)));
}

void KeyedArchiver::encodeText(const std::optional<std::string>& text, std::string_view key) {
    state_.addUserField(key, state_.uid(text ? state_.slotOfText(*text) : 0));
}

void KeyedArchiver::encodeInteger(std::int64_t value, std::string_view key) {
    state_.addUserField(key, state_.list.number(Number(value)));
}

void KeyedArchiver::encodeBool(bool value, std::string_view key) {
    state_.addUserField(key, state_.list.number(Number(value)));
}

void KeyedArchiver::encodeDouble(double value, std::string_view key) {
    state_.addUserField(key, state_.list.loneNumber(Number(value)));
}

void KeyedArchiver::encodeBytes(std::span<const std::byte> bytes, std::string_view key) {
    state_.addUserField(key, state_.list.data(bytes));
}

void KeyedArchiver::encodeObject(const Value& value) {
    state_.addUnkeyed(state_.uid(state_.slotOf(value)));
}

void KeyedArchiver::encodeInteger(std::int64_t value) {
    state_.addUnkeyed(state_.list.number(Number(value)));
}

} // namespace platform
