// SPDX-License-Identifier: MIT
#pragma once

#include "platform/archive/Archivable.h"
#include "platform/host/Host.h"
#include "platform/views/ViewAnimation.h"
#include "slib/slibItemID.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The base class of the library's model objects: an identity that is unique in this process, a
/// name and a description, a related object and an archived form. One thread at a time may use an
/// object; any thread may create one.
///
/// Kept: programs distinguish objects by the fourth comparison value. Whatever an initialiser is
/// given for it, the object gets an identifier of its own. An absent comparison record means zeros,
/// an absent name or description a single blank. Initialisers that take a name but no comparison
/// record set the unit type to "????".
///
/// To read objects back, add each class's `initWithCoder` to a `platform::ClassTable` under the
/// class's name.
class SLibObject : public platform::Archivable {
public:
    using Text = std::optional<std::string>;
    using Compare = std::optional<GRACompare>;

    [[nodiscard]] static std::shared_ptr<SLibObject> init();
    [[nodiscard]] static std::shared_ptr<SLibObject> initWithGRA(const Compare& compare);
    [[nodiscard]] static std::shared_ptr<SLibObject> initWithGRA_andThing(const Compare& compare,
                                                                          platform::Value thing);
    [[nodiscard]] static std::shared_ptr<SLibObject>
    initWithGRAValues_one_two_three(std::uint32_t unitType, std::uint32_t one, std::uint32_t two,
                                    std::uint32_t three);
    [[nodiscard]] static std::shared_ptr<SLibObject>
    initWithGRAValuesAndThing_one_two_three_andThing(std::uint32_t unitType, std::uint32_t one,
                                                     std::uint32_t two, std::uint32_t three,
                                                     platform::Value thing);
    [[nodiscard]] static std::shared_ptr<SLibObject> initWithName(const Text& name);
    [[nodiscard]] static std::shared_ptr<SLibObject>
    initWithNameAndThing_andThing(const Text& name, platform::Value thing);
    [[nodiscard]] static std::shared_ptr<SLibObject>
    initWithGRAAndNames_nameIn_descIn(const Compare& compare, const Text& name,
                                      const Text& description);
    [[nodiscard]] static std::shared_ptr<SLibObject>
    initWithGRAAndNameAndThing_nameIn_andThing(const Compare& compare, const Text& name,
                                               platform::Value thing);
    /// A missing key reads as 0, false or absent.
    /// Kept: the archived identifier may belong to another object in this process. It is never
    /// read; the object gets a new one.
    [[nodiscard]] static std::shared_ptr<SLibObject>
    initWithCoder(platform::KeyedUnarchiver& coder);

    SLibObject(const SLibObject&) = delete;
    SLibObject& operator=(const SLibObject&) = delete;

    /// Owned by the object; never null.
    const std::unique_ptr<slibItemID> slibID;
    /// Any related object, shared; archived if present.
    platform::Value thing;
    bool locked = false;
    std::int64_t slibObjectVersion = 0;
    /// For the subclass to use.
    std::int64_t version = 0;
    /// Unlike the identifier, it survives archiving; absent only if the archive lacked it.
    std::optional<platform::UUID> slibNewUID;
    /// The fourth comparison value as it was issued.
    std::uint64_t slibUniqueID = 0;
    /// These three are not archived.
    bool dirty = false;
    std::int32_t refCount = 0;
    std::uint64_t checksum = 0;

    [[nodiscard]] Text name() const;
    /// Absent text removes the name.
    void setSLIBName(const Text& name);
    [[nodiscard]] Text description() const;
    void setDescription(const Text& description);

    /// Whether any object but `thing` has that name, ignoring case. An absent name equals none.
    [[nodiscard]] static bool
    nameDuplicated_ofThing_inHere(const Text& name, const SLibObject* thing,
                                  const std::vector<std::shared_ptr<SLibObject>>& objects);
    /// The name becomes "Untitled", the description empty, the related object absent and the
    /// reference count 0; the object is neither locked nor dirty. Everything else stays.
    void reset();

    /// Kept: other programs call it. Always 0.
    [[nodiscard]] std::uint64_t calculateChecksum() const { return 0; }
    /// Kept: other programs call it. Does nothing.
    void addUniqueID() {}
    /// Kept: other programs call it. Always absent.
    [[nodiscard]] std::optional<platform::URL> urlToFileTracker(const platform::Value& url) const;

    /// The panels of `SupportLibCat`, main thread only; both ways of choosing a file are the same.
    [[nodiscard]] static std::optional<platform::URL>
    simpleGetFile_ofThese(platform::Host& host, const std::vector<std::string>& types);
    [[nodiscard]] static std::optional<platform::URL>
    simplerGetFile_ofThese(platform::Host& host, const std::vector<std::string>& types);
    [[nodiscard]] static std::optional<platform::URL> getAPuttingURL(platform::Host& host);

    /// An animation, not started, that moves one view from a frame to another. A duration that is
    /// negative or NaN counts as 0.
    [[nodiscard]] static platform::ViewAnimation
    prepViewAnimationRectMove_start_dest_howLong_andRamp(platform::View& view,
                                                         const platform::Rect& start,
                                                         const platform::Rect& destination,
                                                         double seconds,
                                                         platform::AnimationCurve curve);

    /// Each logs one line.
    static void logRect(platform::Host& host, const platform::Rect& rect);
    static void logPoint(platform::Host& host, platform::Point point);
    static void logInteger(platform::Host& host, std::int64_t number);
    /// Truncated towards zero to 32 bits; saturates, and NaN gives 0.
    static void logTruncated(platform::Host& host, double number);

    [[nodiscard]] const platform::ClassNames& archivedClass() const override;
    /// An object without a name becomes "untitled" and keeps that name.
    void encodeWithCoder(platform::KeyedArchiver& coder) const override;

protected:
    explicit SLibObject(const Compare& compare = std::nullopt, const Text& name = std::nullopt,
                        const Text& description = std::nullopt, platform::Value thing = {});
    explicit SLibObject(platform::KeyedUnarchiver& coder);

private:
    void takeNewIdentifier();
};
