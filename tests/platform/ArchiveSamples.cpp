// SPDX-License-Identifier: MIT
#include "tests/platform/ArchiveSamples.h"

#include "platform/KeyedArchiver.h"

#include <fmt/format.h>

#include <algorithm>

namespace samples {

using namespace platform;

const ClassNames& Beacon::archivedClass() const {
    static const ClassNames names{"Beacon", "NSObject"};
    return names;
}

void Beacon::encodeWithCoder(KeyedArchiver& coder) const {
    coder.encodeText(name, "name");
    coder.encodeObject(code ? Value(*code) : Value(), "code");
    coder.encodeInteger(height, "height");
    coder.encodeInteger(channel, "channel");
    coder.encodeBool(isLit, "isLit");
    coder.encodeFloat(range, "range");
    coder.encodeDouble(latitude, "latitude");
    coder.encodeBytes(signal, "signal");
    coder.encodeObject(price, "$price");
    coder.encodeObject(Null(), "other");
    // The later value of a key counts.
    coder.encodeObject(other, "other");
    coder.encodeObject(loose);
    coder.encodeInteger(looseNumber);
}

std::shared_ptr<Archivable> Beacon::initWithCoder(KeyedUnarchiver& coder) {
    const auto beacon = std::make_shared<Beacon>();
    beacon->name = coder.decodeText("name");
    beacon->code = coder.decodeNumber("code");
    beacon->loose = coder.decodeObject();
    beacon->looseNumber = coder.decodeInteger();
    beacon->height = coder.decodeInteger("height");
    beacon->channel = coder.decodeInt32("channel");
    beacon->isLit = coder.decodeBool("isLit");
    beacon->range = coder.decodeFloat("range");
    beacon->latitude = coder.decodeDouble("latitude");
    const auto signal = coder.decodeBytes("signal");
    beacon->signal.assign(signal.begin(), signal.end());
    beacon->price = coder.decodeObject("$price");
    beacon->other = coder.decodeObject("other");
    return beacon;
}

const ClassTable& classes() {
    static const ClassTable table = [] {
        ClassTable classTable;
        classTable.add("Beacon", Beacon::initWithCoder);
        return classTable;
    }();
    return table;
}

Unarchived unarchived(const std::optional<Data>& archive) {
    return archive ? KeyedUnarchiver::unarchive(*archive, classes()) : Unarchived{};
}

std::shared_ptr<Array> arrayOf(std::vector<Value> elements, bool isMutable) {
    return std::make_shared<Array>(Array{isMutable, std::move(elements)});
}

Value nestedArrays(int depth) {
    Value value = arrayOf({});
    for (int i = 1; i < depth; ++i) {
        value = arrayOf({value});
    }
    return value;
}

Data hex(std::string_view digits) {
    Data bytes;
    std::string clean(digits);
    std::erase(clean, ' ');
    for (std::size_t i = 0; i + 1 < clean.size(); i += 2) {
        bytes.push_back(static_cast<std::byte>(std::stoi(clean.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

namespace {

std::string shownBytes(std::span<const std::byte> bytes) {
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
        // The place in the variant tells the kind.
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
        add("range", fmt::to_string(beacon.range), "0");
        add("latitude", fmt::to_string(beacon.latitude), "0");
        add("signal", shownBytes(beacon.signal), "");
        add("price", shown(beacon.price), "-");
        add("other", shown(beacon.other), "-");
        add("loose", shown(beacon.loose), "-");
        add("looseNumber", fmt::to_string(beacon.looseNumber), "0");
        return "Beacon(" + text + ")";
    }
};

} // namespace

std::string shown(const Value& value) {
    return std::visit(Shower(), value);
}

Forger::Forger() : slots{list.text("$null")}, beaconClass(addClass({"Beacon", "NSObject"})) {}

Forger::Ref Forger::uids(const std::vector<std::uint32_t>& uidSlots) {
    std::vector<Ref> references(uidSlots.size());
    std::ranges::transform(uidSlots, references.begin(), [this](auto slot) { return uid(slot); });
    return list.array(references);
}

Forger::Ref Forger::dictionary(const Fields& fields) {
    std::vector<Ref> keys(fields.size());
    std::vector<Ref> values(fields.size());
    std::ranges::transform(fields, keys.begin(), [this](auto& field) { return text(field.first); });
    std::ranges::transform(fields, values.begin(), &Fields::value_type::second);
    return list.dictionary(keys, values);
}

Forger::Ref Forger::record(Fields fields, std::uint32_t classSlot) {
    fields.emplace_back("$class", list.uid(classSlot ? classSlot : beaconClass));
    return dictionary(fields);
}

std::uint32_t Forger::addSlot(Ref object) {
    slots.push_back(object);
    return static_cast<std::uint32_t>(slots.size() - 1);
}

std::uint32_t Forger::addClass(const std::vector<std::string>& names) {
    std::vector<Ref> chain(names.size());
    std::ranges::transform(names, chain.begin(), [this](auto& name) { return text(name); });
    return addSlot(dictionary({{"$classname", chain.front()}, {"$classes", list.array(chain)}}));
}

Data Forger::finish(std::uint32_t rootSlot) {
    Fields entries{{"$version", integer(100000)},
                   {"$archiver", text("NSKeyedArchiver")},
                   {"$top", dictionary({{"root", uid(rootSlot)}})},
                   {"$objects", array(slots)}};
    std::vector<Ref> keys;
    std::vector<Ref> values;
    for (auto [key, value] : entries) {
        const auto replaced = std::ranges::find(frame, key, &Fields::value_type::first);
        value = replaced == frame.end() ? value : replaced->second;
        if (value != 0) {
            keys.push_back(text(key));
            values.push_back(value);
        }
    }
    return list.finish(keys, values).value();
}

} // namespace samples
