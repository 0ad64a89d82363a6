// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"
#include "platform/host/Guarded.h"
#include "platform/host/Host.h"
#include "platform/host/OperationQueue.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// Reads the text of a station list into records: an operation that ends with the notification
/// `StationParseDone`, posted on the thread that ran it. Results are published whole, so that any
/// thread may ask for them at any time.
///
/// A list has one station a line, in fixed columns; the first line is not looked at. A blank line
/// makes the next one a region header, whose text up to the first digit names the region of the
/// stations that follow. Lines that begin with "!" or "CD" are passed over.
class stationparser final : public platform::Operation {
public:
    static constexpr const char* StationParseDone = "StationParseDone";
    using Field = std::span<const char>;

    [[nodiscard]] static std::shared_ptr<stationparser>
    initWithNSString(platform::NotificationCenter& center, platform::Log& log,
                     std::optional<std::string> text);

    /// The whole list, given at creation. Must not change while a parse runs.
    std::optional<std::string> masterString;
    /// Not used by the parse.
    platform::Guarded<std::shared_ptr<const platform::Data>> fileConents;

    /// The stations in the order of their lines; null before the first parse has ended.
    [[nodiscard]] std::shared_ptr<StationArray> stationArray() const {
        return stationArray_.load();
    }
    /// A collection whose `stations` is that very array; null when the text was too short or memory
    /// ran out.
    [[nodiscard]] std::shared_ptr<AviationWeatherStationCollection> theCollection() const {
        return theCollection_.load();
    }
    /// The text ended in the middle of something, or memory ran out: there is no collection then.
    [[nodiscard]] bool error() const { return error_; }

    /// Parses, then posts the notification.
    void main() override;
    void parse();

    /// Appends the record of the line that `text` begins with; bytes that are missing read as
    /// blanks. A station whose position lies outside the globe is logged and left out.
    void captureStation(Field text, StationArray& stations) const;

    /// Signed degrees of a field that holds degrees, minutes and a hemisphere letter; only a
    /// capital "S" or "W" makes them negative.
    [[nodiscard]] static double latitudeFromText(Field field);
    [[nodiscard]] static double longitudeFromText(Field field);
    [[nodiscard]] static double ConvertDegreeAngleToDouble_mins_secs(double degrees, double minutes,
                                                                     double seconds);
    /// Both coordinates in degrees, minutes and seconds.
    [[nodiscard]] static std::string coordinateString_lon(double latitude, double longitude);

private:
    /// Only the factory makes parsers.
    struct Private {};

public:
    stationparser(Private, platform::NotificationCenter& center, platform::Log& log,
                  std::optional<std::string> text);

private:
    void walk(std::string_view text, StationArray& stations);

    platform::NotificationCenter& center_;
    platform::Log& log_;
    platform::Guarded<std::shared_ptr<StationArray>> stationArray_;
    platform::Guarded<std::shared_ptr<AviationWeatherStationCollection>> theCollection_;
    std::atomic<bool> error_ = false;
    std::optional<std::string> currentState_;
};
