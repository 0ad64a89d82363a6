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

/// Fetches the latest METARs and TAFs of a list of stations in two walks side by side, each with
/// one request in flight at a time. Each station's text is posted as soon as it arrives, as the
/// object of a notification; a walk that reaches the end of the list posts its last text once more,
/// as its seal. A request that fails ends its walk without a seal.
///
/// The first requests start on the caller's thread; replies are handled, further requests started
/// and notifications posted on the thread of the host's URL sessions. A grabber lives at least
/// until its last reply has been handled, even if its owner has released it. It cannot be stopped,
/// but its requests can be made to yield to those of other grabbers. Its operations may be called
/// on any thread.
///
/// Kept: users expect this, and the help describes it. Both walks capture into one text, which each
/// request of either walk empties; what one reply captured precedes the next reply's capture unless
/// a request was sent in between.
class SCWeatherGrabber final : public platform::XMLParserDelegate,
                               public std::enable_shared_from_this<SCWeatherGrabber> {
public:
    static constexpr const char* updateMetarString = "updateMetarString";
    static constexpr const char* sealMetarString = "sealMetarString";
    static constexpr const char* updateTafString = "updateTafString";
    static constexpr const char* sealTafString = "sealTafString";

    [[nodiscard]] static std::shared_ptr<SCWeatherGrabber> init(platform::Host& host);

    /// Must not be changed from outside while a walk is under way.
    StationArray stationsToCollectWeatherFrom;
    /// The walks do not use it.
    std::int64_t indexIntoStations = 0;
    /// Whether to ask the server even if a cached reply may be reused. Must be set before the walks
    /// start.
    bool revalidates = false;

    /// Starts both walks over a list: the selected station, then the favourites under a header of
    /// their own. The text of a station without an identifier is empty. Does nothing if the list is
    /// empty. Walks that are already under way continue at the start of the new list.
    void getNewMessages(StationArray stations);
    /// Sends the request for a walk's current position; does nothing past the end of the list.
    void nextStationMetar();
    void nextStationTAF();
    /// From now on all its requests, including those in flight, yield to requests of grabbers that
    /// are not superseded. The walks continue.
    void supersede() { *superseded_ = true; }
    /// Kept: other programs call them. They do nothing.
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
        /// The length of the captured text when the latest element of this kind ended; absent if
        /// none has.
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
    /// Held while a reply is handled and while a request is sent. Recursive, because handling a
    /// reply sends the next request.
    std::recursive_mutex mutex_;
    std::optional<std::string> currentString_;
    bool iCare_ = false;
    Walk metars_{metarKind, 0, {}, {}};
    Walk tafs_{tafKind, 0, {}, {}};
};
