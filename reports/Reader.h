// SPDX-License-Identifier: MIT
#pragma once

#include "platform/text/XMLParser.h"
#include "reports/Report.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>

namespace reports {

/// What a reply turned out to be.
enum class Understanding : std::uint8_t {
    whole,   ///< a complete reply of the service, with reports
    nothing, ///< a complete reply without any report, or no bytes at all
    none,    ///< something else, a reply that breaks off, or one that reports an error
};

/// Takes the reports that a reader finds.
class Receiver {
public:
    virtual ~Receiver() = default;
    virtual void receive(Metar&& metar) = 0;
    virtual void receive(Taf&& taf) = 0;
};

/// Reads one reply of the weather data server as its bytes arrive: METARs or TAFs in XML, of one
/// station or of the whole world, in the service's present layout or its classic one
/// (https://aviationweather.gov/data/api, schemas metar 1.2 to 2.0 and taf 1.1 to 2.0).
///
/// Each report is handed on as soon as it is complete, in the order of the reply. An element that
/// cannot be read, or is out of range, is absent from its report. A report without a station, a
/// time or a raw text is passed over, as is one that only says that there is none (NIL). A report's
/// values come from its own elements and its own raw text, never from another report. Used by one
/// thread.
class Reader {
public:
    /// The receiver is borrowed and must outlive the reader.
    explicit Reader(Receiver& receiver);
    ~Reader();
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    /// Reads the next bytes; false if the rest will not be read.
    bool feed(std::span<const std::byte> bytes);
    /// Says what the reply turned out to be, now that it is at its end.
    [[nodiscard]] Understanding finish();
    /// The number of reports that were passed over.
    [[nodiscard]] std::size_t passedOver() const;

private:
    class Document;
    std::unique_ptr<Document> document_;
    platform::XMLStream stream_;
    bool hasBytes_ = false;
};

} // namespace reports
