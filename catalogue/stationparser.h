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

/// Reads the text of a station list into records: an operation that ends by posting the
/// notification `StationParseDone` on the thread that ran it. Results are published only when
/// complete, so any thread may ask for them at any time.
///
/// A list has one station per line, in fixed columns; its first line is ignored. The line after a
/// blank line is a region header: its text up to the first digit names the region of the stations
/// that follow. Lines that begin with "!" or "CD" are skipped.
class stationparser final : public platform::Operation {
public:
    static constexpr const char* StationParseDone = "StationParseDone";
    using Field = std::span<const char>;

    [[nodiscard]] static std::shared_ptr<stationparser>
    initWithNSString(platform::NotificationCenter& center, platform::Log& log,
                     std::optional<std::string> text);

    /// The whole list. It must not change while a parse runs.
    std::optional<std::string> masterString;
    /// The parse does not use it.
    platform::Guarded<std::shared_ptr<const platform::Data>> fileConents;

    /// The stations in line order; null before the first parse has ended.
    [[nodiscard]] std::shared_ptr<StationArray> stationArray() const {
        return stationArray_.load();
    }
    /// A collection whose `stations` is that same array; null if the text was too short or memory
    /// ran out.
    [[nodiscard]] std::shared_ptr<AviationWeatherStationCollection> theCollection() const {
        return theCollection_.load();
    }
    /// Whether the text ended within a header or a station line, or memory ran out; in the latter
    /// case there is no collection.
    [[nodiscard]] bool error() const { return error_; }

    /// Parses, then posts the notification.
    void main() override;
    void parse();

    /// Appends the record of the line at the start of `text`; missing bytes read as blanks. A
    /// station whose position is not on the globe is logged and left out.
    void captureStation(Field text, StationArray& stations) const;

    /// Returns the signed degrees of a field of degrees, minutes and a hemisphere letter; only a
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
