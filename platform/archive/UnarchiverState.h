// SPDX-License-Identifier: MIT
#pragma once

#include "platform/archive/BinaryPropertyList.h"
#include "platform/archive/KeyedUnarchiver.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform {

/// The keys that records of one shape have, in the order of their fields.
class RecordLayout {
public:
    explicit RecordLayout(std::vector<std::string> keys)
        : keys_(std::move(keys)), classPlace_(find("$class")) {}

    [[nodiscard]] const std::string& key(std::size_t place) const { return keys_[place]; }
    /// The index of a field; of two equal keys the first one counts.
    [[nodiscard]] std::optional<std::size_t> find(std::string_view key) const;
    /// The index of the field that gives the object's class.
    [[nodiscard]] std::optional<std::size_t> classPlace() const { return classPlace_; }
    /// Like `find`, for the key of a factory's `turn`-th request, which is probably the one
    /// requested at that turn from the previous record.
    [[nodiscard]] std::optional<std::size_t> findUserKey(std::string_view key, std::size_t turn);

private:
    struct Guess {
        std::string key;
        std::optional<std::size_t> place;
    };
    std::vector<std::string> keys_;
    std::optional<std::size_t> classPlace_;
    std::vector<Guess> guesses_;
};

/// The state of reading one archive. The object table is read in place; only each slot's state is
/// stored, and the object made from it if sharing matters.
struct KeyedUnarchiver::State {
    enum class ClassKind : std::uint8_t {
        unknown,
        factory,
        text,
        data,
        date,
        url,
        uuid,
        null,
        array,
        mutableArray,
        set,
        mutableSet,
        dictionary,
        mutableDictionary,
    };
    struct ArchivedClass {
        ClassKind kind = ClassKind::unknown;
        const ClassTable::Factory* factory = nullptr;
        std::string name;
    };
    /// A dictionary of the list that is read as a record, and how far reading has come.
    struct Record {
        plist::Element fields;
        /// Null if the dictionary cannot be a record; it then has no fields.
        RecordLayout* layout = nullptr;
        /// The layout, if it is not one of those kept in `layouts`.
        std::unique_ptr<RecordLayout> ownLayout = nullptr;
        const ArchivedClass* archivedClass = nullptr;
        std::size_t place = 0;
        std::size_t turn = 0;
        std::size_t unkeyed = 0;
    };

    State(const plist::Reader& reader, const ClassTable& table);

    /// Checks the archive's top-level entries and makes the root object.
    void readRoot();

    /// Makes everything read as absent from now on. Only the first fault counts.
    void breakOff(std::string_view fault);
    void breakOffAt(std::uint64_t object);
    /// Counts the current field as misread.
    void misread(std::string_view reason);
    /// Deducts from one of the allowances; breaks off if that is too small. False once broken off.
    [[nodiscard]] bool take(std::uint64_t amount, std::uint64_t& allowance);

    /// One object of the list; breaks off if it is broken.
    [[nodiscard]] plist::Element element(std::uint64_t index) {
        const auto found = list.element(index);
        if (found.kind == plist::Kind::broken) {
            breakOffAt(index);
        }
        return found;
    }
    [[nodiscard]] std::string text(const plist::Element& element);
    [[nodiscard]] Record recordOf(const plist::Element& dictionary);
    /// The keys of a dictionary that may be a record.
    [[nodiscard]] std::optional<std::vector<std::string>> keysOf(const plist::Element& dictionary);
    /// The second form is also absent if the field is of another kind.
    [[nodiscard]] plist::Element field(Record& from, std::string_view key);
    [[nodiscard]] plist::Element field(Record& from, std::string_view key, plist::Kind kind);
    [[nodiscard]] plist::Element fieldAt(Record& from, std::size_t place);
    /// A field that a factory requests from the current record.
    [[nodiscard]] plist::Element userField(std::string_view key);
    [[nodiscard]] plist::Element unkeyedField();

    /// The values of such fields; 0, and counted as misread, if the field is of another kind.
    [[nodiscard]] std::int64_t integerIn(const plist::Element& field);
    [[nodiscard]] double realIn(const plist::Element& field);
    /// The slot that the field refers to. Slot 0 is the absent object.
    [[nodiscard]] std::uint32_t slotIn(const plist::Element& field);
    /// Slot 0 for anything but a UID.
    [[nodiscard]] std::uint32_t slotOf(const plist::Element& uid);
    [[nodiscard]] plist::Element slotElement(std::uint32_t slot);

    [[nodiscard]] const ArchivedClass& classOf(Record& object);
    [[nodiscard]] ArchivedClass readClass(const plist::Element& element);

    /// The object of a slot. Absent, and counted as misread, if it cannot be made.
    [[nodiscard]] Value object(std::uint32_t slot) { return object(slot, slotElement(slot)); }
    [[nodiscard]] Value object(std::uint32_t slot, const plist::Element& element);
    [[nodiscard]] Value recordObject(std::uint32_t slot, const plist::Element& element);
    /// Makes the object of the current record.
    [[nodiscard]] Value newObject();
    template <typename Container>
    [[nodiscard]] Value newList(bool isMutable);
    [[nodiscard]] Value newDictionary(bool isMutable);
    [[nodiscard]] Value newURL();

    plist::Reader list;
    const ClassTable& classTable;
    KeyedUnarchiver coder;
    Unarchived result;
    bool isBroken = false;

    /// The array of the object table.
    plist::Element table;
    /// For each slot, whether its object was made, and if so its index in `objects`.
    std::vector<std::uint32_t> slotStates;
    std::vector<Value> objects;
    /// Layouts by the bytes of their key references, up to a limit, and classes by their slots.
    std::map<std::string_view, RecordLayout> layouts;
    std::map<std::uint32_t, ArchivedClass> classes;
    Record record;
    int depth = 0;
    /// Allowances in proportion to the file size, because what many records share could otherwise
    /// multiply without end: for keys examined, for bytes of text and data, and for all other
    /// memory.
    std::uint64_t keysLeft;
    std::uint64_t contentLeft;
    std::uint64_t memoryLeft;
};

} // namespace platform
