// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"
#include "platform/host/Host.h"
#include "platform/text/XMLParser.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

/// Fetches the latest METARs and TAFs of a list of stations: two walks side by side, each with one
/// request on its way at a time. Every station's text is posted as soon as it is there, as the
/// object of a notification; a walk that has come to the end of the list seals itself with its last
/// text. A request that fails ends its walk without a seal.
///
/// The first requests start on the caller's thread; replies are handled, further requests started
/// and notifications posted on the thread of the host's URL sessions. A grabber lives at least
/// until its last reply has been handled, whoever else lets it go; it cannot be stopped, but its
/// requests can be made to yield to other grabbers'. Its operations may be called on any thread.
///
/// Kept: users know it so, and the help says it. Both walks capture into one text, which each
/// request of either empties; what a reply captured stands ahead of the next one's capture unless a
/// request was sent in between.
class SCWeatherGrabber final : public platform::XMLParserDelegate,
                               public std::enable_shared_from_this<SCWeatherGrabber> {
public:
    static constexpr const char* updateMetarString = "updateMetarString";
    static constexpr const char* sealMetarString = "sealMetarString";
    static constexpr const char* updateTafString = "updateTafString";
    static constexpr const char* sealTafString = "sealTafString";

    [[nodiscard]] static std::shared_ptr<SCWeatherGrabber> init(platform::Host& host);

    /// Not to be changed from outside while a walk is under way.
    StationArray stationsToCollectWeatherFrom;
    /// Not used by the walks.
    std::int64_t indexIntoStations = 0;
    /// Whether the server is asked even where a kept reply may be reused. Set before the walks
    /// start.
    bool revalidates = false;

    /// Starts both walks over a list: the selected station, then, under a header of their own, the
    /// favourites. A station without an identifier has an empty text. An empty list does nothing.
    /// Walks that are already under way go on from the start of the new list.
    void getNewMessages(StationArray stations);
    /// Sends the request of a walk's current position; past the end of the list, nothing.
    void nextStationMetar();
    void nextStationTAF();
    /// From now on every request, those on their way included, yields to those of grabbers that
    /// are not superseded. The walks go on all the same.
    void supersede() { *superseded_ = true; }
    /// Kept: other programs call them. Do nothing.
    void doMetars() {}
    void doTAFs() {}

    void parser_didStartElement(std::string_view name) override;
    void parser_foundCharacters(std::string_view text) override;
    void parser_didEndElement(std::string_view name) override;

private:
    /// Only the factory makes grabbers.
    struct Private {};

public:
    SCWeatherGrabber(Private, platform::Host& host);

private:
    struct Kind {
        const char* update;
        const char* seal;
        const char* header;
        const char* notAvailable;
        platform::URL (*request)(platform::Host& host, std::string_view identifier);
    };

    struct Walk {
        const Kind& kind;
        std::int64_t index = 0;
        std::optional<std::string> text;
        /// How much of the capture text an element of this kind has closed off.
        std::optional<std::size_t> captured;
    };

    static const Kind metarKind;
    static const Kind tafKind;

    void sendRequest(Walk& walk);
    void handleReply(Walk& walk, const platform::Data& reply);
    void post(const char* name, const std::string& text);

    platform::Host& host_;
    const std::shared_ptr<std::atomic<bool>> superseded_ =
        std::make_shared<std::atomic<bool>>(false);
    /// Held while a reply is handled and while a request is sent, which happens within that too.
    std::recursive_mutex mutex_;
    std::optional<std::string> currentString_;
    bool iCare_ = false;
    Walk metars_{metarKind, 0, {}, {}};
    Walk tafs_{tafKind, 0, {}, {}};
};
