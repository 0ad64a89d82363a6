// SPDX-License-Identifier: MIT
#pragma once

#include "platform/archive/BinaryPropertyListWriter.h"
#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

/// What the tests of keyed archives write, and helpers that show what they read.
namespace samples {

using namespace platform;

/// An object with a field of each kind.
struct Beacon final : Archivable {
    std::optional<std::string> name;
    std::optional<Number> code;
    std::int64_t height = 0;
    std::int32_t channel = 0;
    bool isLit = false;
    double latitude = 0;
    Data signal;
    Value price;
    Value other;
    Value loose;
    std::int64_t looseNumber = 0;

    [[nodiscard]] const ClassNames& archivedClass() const override {
        static const ClassNames names{"Beacon", "NSObject"};
        return names;
    }
    void encodeWithCoder(KeyedArchiver& coder) const override {
        coder.encodeText(name, "name");
        coder.encodeObject(code ? Value(*code) : Value(), "code");
        coder.encodeInteger(height, "height");
        coder.encodeInteger(channel, "channel");
        coder.encodeBool(isLit, "isLit");
        coder.encodeDouble(latitude, "latitude");
        coder.encodeBytes(signal, "signal");
        coder.encodeObject(price, "$price");
        coder.encodeObject(Null(), "other");
        // A later value of the same key replaces the earlier one.
        coder.encodeObject(other, "other");
        coder.encodeObject(loose);
        coder.encodeInteger(looseNumber);
    }
    [[nodiscard]] static std::shared_ptr<Archivable> initWithCoder(KeyedUnarchiver& coder) {
        const auto beacon = std::make_shared<Beacon>();
        beacon->name = coder.decodeText("name");
        beacon->code = coder.decodeNumber("code");
        beacon->loose = coder.decodeObject();
        beacon->looseNumber = coder.decodeInteger();
        beacon->height = coder.decodeInteger("height");
        beacon->channel = coder.decodeInt32("channel");
        beacon->isLit = coder.decodeBool("isLit");
        beacon->latitude = coder.decodeDouble("latitude");
        const auto signal = coder.decodeBytes("signal");
        beacon->signal.assign(signal.begin(), signal.end());
        beacon->price = coder.decodeObject("$price");
        beacon->other = coder.decodeObject("other");
        return beacon;
    }
};

/// A table that knows the class "Beacon".
[[nodiscard]] inline const ClassTable& classes() {
    static const ClassTable table = [] {
        ClassTable classTable;
        classTable.add("Beacon", Beacon::initWithCoder);
        return classTable;
    }();
    return table;
}

[[nodiscard]] inline Unarchived unarchived(const std::optional<Data>& archive) {
    return archive ? KeyedUnarchiver::unarchive(*archive, classes()) : Unarchived{};
}

/// Empty if nothing was misread.
[[nodiscard]] inline std::string firstMisreading(const Unarchived& result) {
    return result.misreadings.empty() ? "" : result.misreadings.front();
}

[[nodiscard]] inline std::shared_ptr<Array> arrayOf(std::vector<Value> elements,
                                                    bool isMutable = true) {
    return std::make_shared<Array>(Array{isMutable, std::move(elements)});
}

[[nodiscard]] inline std::shared_ptr<Dictionary>
dictionaryOf(std::map<std::string, Value, std::less<>> entries, bool isMutable = true) {
    return std::make_shared<Dictionary>(Dictionary{isMutable, std::move(entries)});
}

/// A beacon with no empty field.
[[nodiscard]] inline std::shared_ptr<Beacon> richBeacon() {
    auto beacon = std::make_shared<Beacon>();
    beacon->name = "Årø";
    beacon->code = Number(true);
    beacon->height = std::numeric_limits<std::int64_t>::min();
    beacon->channel = -7;
    beacon->isLit = true;
    beacon->latitude = 40;
    beacon->signal = {std::byte{0}, std::byte{0xff}, std::byte{0x80}};
    beacon->price = dictionaryOf({{"", Number(1)}, {"$null", std::string("$null")}});
    UUID uuid;
    std::ranges::copy(std::as_bytes(std::span("0123456789abcdef", 16)), uuid.bytes.begin());
    beacon->other = uuid;
    beacon->loose = std::string("loose");
    beacon->looseNumber = 65536;
    return beacon;
}

/// A value and all its contents as text that distinguishes kinds, mutability and classes: [mutable
/// array], (array), {mutable=dictionary}, <other kinds>, and "-" for an absent value. Objects show
/// only fields that are not empty.
[[nodiscard]] std::string shown(const Value& value);

inline std::string shownBytes(std::span<const std::byte> bytes) {
    std::string text;
    for (const std::byte byte : bytes) {
        text += fmt::format("{:02x}", std::to_integer<unsigned>(byte));
    }
    return text;
}

template <typename Elements>
std::string joined(const Elements& elements) {
    std::string text;
    for (const auto& element : elements) {
        text += (text.empty() ? "" : ",") + shown(element);
    }
    return text;
}

struct Shower {
    std::string operator()(std::monostate) const { return "-"; }
    std::string operator()(Null) const { return "<null>"; }
    std::string operator()(const std::string& text) const { return '"' + text + '"'; }
    std::string operator()(const Number& number) const {
        // The index in the variant says which kind of number it is.
        return std::visit(
            [&](auto value) {
                return fmt::format("{}{}", "biufd"[number.storage().index()], value);
            },
            number.storage());
    }
    std::string operator()(const Data& data) const { return "<data " + shownBytes(data) + ">"; }
    std::string operator()(Date date) const {
        return fmt::format("<date {}>", date.time_since_epoch().count());
    }
    std::string operator()(const URL& url) const { return "<" + url.text + ">"; }
    std::string operator()(const UUID& uuid) const {
        return "<uuid " + shownBytes(uuid.bytes) + ">";
    }
    std::string operator()(const std::shared_ptr<Array>& array) const {
        const auto elements = joined(array->elements);
        return array->isMutable ? "[" + elements + "]" : "(" + elements + ")";
    }
    std::string operator()(const std::shared_ptr<Set>& set) const {
        return fmt::format("<{}set {}>", set->isMutable ? "mutable " : "", joined(set->elements));
    }
    std::string operator()(const std::shared_ptr<Dictionary>& dictionary) const {
        std::string text;
        for (const auto& [key, value] : dictionary->entries) {
            text += (text.empty() ? "" : ",") + key + "=" + shown(value);
        }
        return dictionary->isMutable ? "{" + text + "}" : "<" + text + ">";
    }
    std::string operator()(const std::shared_ptr<Archivable>& object) const {
        const auto& beacon = dynamic_cast<const Beacon&>(*object);
        std::string text;
        const auto add = [&](const char* key, const std::string& field, const char* empty) {
            if (field != empty) {
                text += fmt::format("{}{}={}", text.empty() ? "" : " ", key, field);
            }
        };
        add("name", shown(beacon.name ? Value(*beacon.name) : Value()), "-");
        add("code", shown(beacon.code ? Value(*beacon.code) : Value()), "-");
        add("height", fmt::to_string(beacon.height), "0");
        add("channel", fmt::to_string(beacon.channel), "0");
        add("isLit", fmt::to_string(beacon.isLit), "false");
        add("latitude", fmt::to_string(beacon.latitude), "0");
        add("signal", shownBytes(beacon.signal), "");
        add("price", shown(beacon.price), "-");
        add("other", shown(beacon.other), "-");
        add("loose", shown(beacon.loose), "-");
        add("looseNumber", fmt::to_string(beacon.looseNumber), "0");
        return "Beacon(" + text + ")";
    }
};

inline std::string shown(const Value& value) {
    return std::visit(Shower(), value);
}

/// Makes archives that `KeyedArchiver` would not write. Objects are given in a notation: 'text',
/// <data>, true, 5, 5.0, [array elements], [one*1000], {key=value key=value}. #5 refers to slot 5,
/// @object to a new slot with that object, [&object*1000] to a thousand of these;
/// Name:Ancestor{key=value} is a record of a class.
class Forger {
public:
    /// An archive whose next slots hold these objects. The first of them is the root.
    [[nodiscard]] Data archive(const std::vector<std::string>& objects) {
        const auto root = slots_.size();
        slots_.resize(root + objects.size());
        for (std::size_t i = 0; i < objects.size(); ++i) {
            const Ref object = made(objects[i]);
            slots_[root + i] = object;
        }
        frame.insert({{"$version", "100000"},
                      {"$archiver", "'NSKeyedArchiver'"},
                      {"$top", "{root=#" + std::to_string(root) + "}"}});
        std::vector<Ref> keys;
        std::vector<Ref> values;
        for (const auto& [key, value] : frame) {
            if (!value.empty()) {
                keys.push_back(list.text(key));
                values.push_back(made(value));
            }
        }
        if (!frame.contains("$objects")) {
            keys.push_back(list.text("$objects"));
            values.push_back(list.array(slots_));
        }
        return list.finish(keys, values).value();
    }
    [[nodiscard]] Unarchived read(const std::vector<std::string>& objects) {
        return unarchived(archive(objects));
    }

    plist::Writer list;
    /// Entries that replace those of the archive's frame; an empty text leaves the entry out.
    std::map<std::string, std::string> frame;

private:
    using Ref = plist::Ref;

    /// Takes one object from the beginning of a notation.
    Ref next(std::string_view& rest) {
        const auto upTo = [&](std::string_view ends) {
            std::string word(rest.substr(0, rest.find_first_of(ends)));
            rest.remove_prefix(word.size());
            return word;
        };
        const auto take = [&](char one) {
            const bool isThere = rest.starts_with(one);
            rest.remove_prefix(isThere ? 1 : 0);
            return isThere;
        };
        const auto quoted = [&](char end) {
            std::string inside = upTo({&end, 1});
            take(end);
            return inside;
        };
        if (take('\'')) {
            return list.text(quoted('\''));
        }
        if (take('<')) {
            return list.data(std::as_bytes(std::span<const char>(quoted('>'))));
        }
        if (take('#')) {
            return list.uid(static_cast<std::uint32_t>(std::stoul(upTo(" ]}*"))));
        }
        if (take('@')) {
            return list.uid(addSlot(next(rest)));
        }
        std::vector<Ref> keys;
        std::vector<Ref> values;
        if (take('[')) {
            for (; !take(']'); take(' ')) {
                const bool hasOwnSlots = take('&');
                const Ref element = next(rest);
                for (auto times = take('*') ? std::stoul(upTo(" ]")) : 1; times > 0; --times) {
                    values.push_back(hasOwnSlots ? list.uid(addSlot(element)) : element);
                }
            }
            return list.array(values);
        }
        const std::string word = upTo(" ]}{");
        if (take('{')) {
            for (; !take('}'); take(' ')) {
                keys.push_back(list.text(upTo("=")));
                take('=');
                values.push_back(next(rest));
            }
            if (!word.empty()) {
                keys.push_back(list.text("$class"));
                values.push_back(list.uid(classSlot(word)));
            }
            return list.dictionary(keys, values);
        }
        if (word == "true") {
            return list.number(Number(true));
        }
        return list.number(word.find_first_of(".ni") != word.npos ? Number(std::stod(word))
                           : word.starts_with('-') ? Number(std::int64_t{std::stoll(word)})
                                                   : Number(std::uint64_t{std::stoull(word)}));
    }
    Ref made(std::string_view notation) { return next(notation); }
    std::uint32_t addSlot(Ref object) {
        slots_.push_back(object);
        return static_cast<std::uint32_t>(slots_.size() - 1);
    }
    std::uint32_t classSlot(const std::string& names) {
        auto& slot = classes_[names];
        if (slot == 0) {
            slot =
                addSlot(made("{$classname='" + names.substr(0, names.find(':')) + "' $classes=['" +
                             std::regex_replace(names, std::regex(":"), "' '") + "']}"));
        }
        return slot;
    }

    std::vector<Ref> slots_{list.text("$null")};
    std::map<std::string, std::uint32_t> classes_;
};

} // namespace samples
