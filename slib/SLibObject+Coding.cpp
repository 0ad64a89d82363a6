// SPDX-License-Identifier: MIT
#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "slib/SLibObject.h"

#include <fmt/format.h>

#include <variant>

namespace {

constexpr const char* unitTypeKey = "UnitType";
constexpr const char* compare1Key = "compare1";
constexpr const char* compare2Key = "compare2";
constexpr const char* compare3Key = "compare3";
constexpr const char* thingKey = "the object";
constexpr const char* nameKey = "Name";
constexpr const char* descriptionKey = "Description";
constexpr const char* lockedKey = "locked";
constexpr const char* objectVersionKey = "slibversion";
constexpr const char* versionKey = "subclassversion";
constexpr const char* uuidKey = "nsuinque";

std::string idValKey(std::size_t index) {
    return fmt::format("idVal{}", index);
}

std::uint64_t decodeUnsigned(platform::KeyedUnarchiver& coder, const char* key) {
    return static_cast<std::uint64_t>(coder.decodeInteger(key));
}

void encodeUnsigned(platform::KeyedArchiver& coder, std::uint64_t value, const char* key) {
    coder.encodeInteger(static_cast<std::int64_t>(value), key);
}

std::optional<platform::UUID> decodeUUID(platform::KeyedUnarchiver& coder, const char* key) {
    const platform::Value value = coder.decodeObject(key);
    const auto* uuid = std::get_if<platform::UUID>(&value);
    return uuid ? std::optional(*uuid) : std::nullopt;
}

} // namespace

std::shared_ptr<SLibObject> SLibObject::initWithCoder(platform::KeyedUnarchiver& coder) {
    return std::shared_ptr<SLibObject>(new SLibObject(coder));
}

SLibObject::SLibObject(platform::KeyedUnarchiver& coder) : slibID(std::make_unique<slibItemID>()) {
    slibObjectVersion = coder.decodeInteger(objectVersionKey);
    version = coder.decodeInteger(versionKey);
    slibID->GRACompare.unitType = decodeUnsigned(coder, unitTypeKey);
    slibID->GRACompare.compare1 = decodeUnsigned(coder, compare1Key);
    slibID->GRACompare.compare2 = decodeUnsigned(coder, compare2Key);
    takeNewIdentifier();
    slibNewUID = decodeUUID(coder, uuidKey);
    locked = coder.decodeBool(lockedKey);
    thing = coder.decodeObject(thingKey);
    for (std::size_t i = 0; i < slibID->idVal.size(); ++i) {
        slibID->idVal[i] = static_cast<std::uint32_t>(coder.decodeInt32(idValKey(i)));
    }
    setSLIBName(coder.decodeText(nameKey));
    setDescription(coder.decodeText(descriptionKey));
}

const platform::ClassNames& SLibObject::archivedClass() const {
    static const platform::ClassNames names{"SLibObject", "NSObject"};
    return names;
}

void SLibObject::encodeWithCoder(platform::KeyedArchiver& coder) const {
    if (!slibID->name) {
        slibID->name.emplace("untitled");
    }
    encodeUnsigned(coder, slibID->GRACompare.unitType, unitTypeKey);
    encodeUnsigned(coder, slibID->GRACompare.compare1, compare1Key);
    encodeUnsigned(coder, slibID->GRACompare.compare2, compare2Key);
    encodeUnsigned(coder, slibID->GRACompare.compare3, compare3Key);
    if (!platform::isAbsent(thing)) {
        coder.encodeObject(thing, thingKey);
    }
    for (std::size_t i = 0; i < slibID->idVal.size(); ++i) {
        // Signed, because readers of the field ask for a value that fits into a signed 32-bit
        // integer.
        coder.encodeInteger(static_cast<std::int32_t>(slibID->idVal[i]), idValKey(i));
    }
    coder.encodeText(name(), nameKey);
    coder.encodeText(description().value_or(" "), descriptionKey);
    coder.encodeBool(locked, lockedKey);
    coder.encodeInteger(slibObjectVersion, objectVersionKey);
    coder.encodeInteger(version, versionKey);
    coder.encodeObject(slibNewUID ? platform::Value(*slibNewUID) : platform::Value(), uuidKey);
}
