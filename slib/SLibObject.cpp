// SPDX-License-Identifier: MIT
#include "slib/SLibObject.h"

#include "platform/text/Text.h"
#include "slib/Identifiers.h"
#include "slib/Random.h"
#include "slib/SupportLibCat.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace {

constexpr GRACompare nameOnly{unitTypeOf("????")};

std::optional<slibTextBlock> blockOf(const SLibObject::Text& text) {
    return text ? std::optional<slibTextBlock>(*text) : std::nullopt;
}

SLibObject::Text textOf(const std::optional<slibTextBlock>& block) {
    return block ? SLibObject::Text(block->text()) : std::nullopt;
}

} // namespace

SLibObject::SLibObject(const Compare& compare, const Text& name, const Text& description,
                       platform::Value related)
    : slibID(std::make_unique<slibItemID>()),
      thing(std::move(related)),
      slibNewUID(slib::randomUUID()) {
    slibID->GRACompare = compare.value_or(GRACompare{});
    takeNewIdentifier();
    slibID->name.emplace(name.value_or(" "));
    slibID->description.emplace(description.value_or(" "));
}

void SLibObject::takeNewIdentifier() {
    slibUniqueID = slib::issueIdentifier();
    slibID->GRACompare.compare3 = slibUniqueID;
}

std::shared_ptr<SLibObject> SLibObject::init() {
    return initWithGRA(std::nullopt);
}

std::shared_ptr<SLibObject> SLibObject::initWithGRA(const Compare& compare) {
    return initWithGRA_andThing(compare, {});
}

std::shared_ptr<SLibObject> SLibObject::initWithGRA_andThing(const Compare& compare,
                                                             platform::Value thing) {
    return initWithGRAAndNameAndThing_nameIn_andThing(compare, std::nullopt, std::move(thing));
}

std::shared_ptr<SLibObject> SLibObject::initWithGRAValues_one_two_three(std::uint32_t unitType,
                                                                        std::uint32_t one,
                                                                        std::uint32_t two,
                                                                        std::uint32_t three) {
    return initWithGRA(GRACompare{unitType, one, two, three});
}

std::shared_ptr<SLibObject> SLibObject::initWithGRAValuesAndThing_one_two_three_andThing(
    std::uint32_t unitType, std::uint32_t one, std::uint32_t two, std::uint32_t three,
    platform::Value thing) {
    return initWithGRA_andThing(GRACompare{unitType, one, two, three}, std::move(thing));
}

std::shared_ptr<SLibObject> SLibObject::initWithName(const Text& name) {
    return initWithNameAndThing_andThing(name, {});
}

std::shared_ptr<SLibObject> SLibObject::initWithNameAndThing_andThing(const Text& name,
                                                                      platform::Value thing) {
    return initWithGRAAndNameAndThing_nameIn_andThing(nameOnly, name, std::move(thing));
}

std::shared_ptr<SLibObject> SLibObject::initWithGRAAndNames_nameIn_descIn(const Compare& compare,
                                                                          const Text& name,
                                                                          const Text& description) {
    return std::shared_ptr<SLibObject>(new SLibObject(compare, name, description));
}

std::shared_ptr<SLibObject>
SLibObject::initWithGRAAndNameAndThing_nameIn_andThing(const Compare& compare, const Text& name,
                                                       platform::Value thing) {
    return std::shared_ptr<SLibObject>(
        new SLibObject(compare, name, std::nullopt, std::move(thing)));
}

SLibObject::Text SLibObject::name() const {
    return textOf(slibID->name);
}

void SLibObject::setSLIBName(const Text& name) {
    slibID->name = blockOf(name);
}

SLibObject::Text SLibObject::description() const {
    return textOf(slibID->description);
}

void SLibObject::setDescription(const Text& description) {
    slibID->description = blockOf(description);
}

bool SLibObject::nameDuplicated_ofThing_inHere(
    const Text& name, const SLibObject* thing,
    const std::vector<std::shared_ptr<SLibObject>>& objects) {
    return name && std::ranges::any_of(objects, [&](const auto& object) {
               return object && object.get() != thing && object->slibID->name &&
                      platform::equalIgnoringCase(object->slibID->name->text(), *name);
           });
}

void SLibObject::reset() {
    setSLIBName("Untitled");
    setDescription("");
    thing = {};
    refCount = 0;
    locked = false;
    dirty = false;
}

std::optional<platform::URL> SLibObject::urlToFileTracker(const platform::Value& url) const {
    return SupportLibCat::urlToFileTracker(url);
}

std::optional<platform::URL>
SLibObject::simpleGetFile_ofThese(platform::Host& host, const std::vector<std::string>& types) {
    return SupportLibCat::simpleGetFile_ofThese(host, types);
}

std::optional<platform::URL>
SLibObject::simplerGetFile_ofThese(platform::Host& host, const std::vector<std::string>& types) {
    return simpleGetFile_ofThese(host, types);
}

std::optional<platform::URL> SLibObject::getAPuttingURL(platform::Host& host) {
    return SupportLibCat::getAPuttingURL(host);
}

platform::ViewAnimation SLibObject::prepViewAnimationRectMove_start_dest_howLong_andRamp(
    platform::View& view, const platform::Rect& start, const platform::Rect& destination,
    double seconds, platform::AnimationCurve curve) {
    // With the arguments in this order, NaN gives 0.
    return {{{&view, start, destination}}, std::max(0.0, seconds), curve};
}

void SLibObject::logRect(platform::Host& host, const platform::Rect& rect) {
    host.log.line(fmt::format("Rect origin x {:f} y {:f}   size width {:f} size height {:f}",
                              rect.x, rect.y, rect.width, rect.height));
}

void SLibObject::logPoint(platform::Host& host, platform::Point point) {
    host.log.line(fmt::format(" origin x {:f} y {:f}   ", point.x, point.y));
}

void SLibObject::logInteger(platform::Host& host, std::int64_t number) {
    host.log.line(fmt::format(" int {}   ", number));
}

void SLibObject::logTruncated(platform::Host& host, double number) {
    host.log.line(fmt::format("{}", platform::wholeNumber32(number)));
}
