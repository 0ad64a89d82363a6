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
    whole,   ///< a reply of the service, to its end
    nothing, ///< a whole one without any report, or no bytes at all
    none,    ///< something else, or a reply that breaks off or says that the question was wrong
};

/// Who takes what a reader finds.
class Receiver {
public:
    virtual ~Receiver() = default;
    virtual void receive(Metar&& metar) = 0;
    virtual void receive(Taf&& taf) = 0;
};

/// Reads one reply of the weather data server, as its bytes come: METARs or TAFs in XML, of one
/// station or of the whole world, in the service's present layout or its classic one
/// (https://aviationweather.gov/data/api, schemas metar 1.2 to 2.0 and taf 1.1 to 2.0).
///
/// Each report is handed on as soon as it is complete, in the order of the reply. An element that
/// cannot be read, or is out of its range, is absent from its report; a report without station,
/// time or raw text, and one that only says that there is none (NIL), is passed over. What a report
/// hands on it has from its own elements and its own raw text, from no other reply. One thread.
class Reader {
public:
    /// The receiver is borrowed and outlives the reader.
    explicit Reader(Receiver& receiver);
    ~Reader();
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    /// The next bytes; false when the rest will not be read.
    bool feed(std::span<const std::byte> bytes);
    /// The reply is at its end.
    [[nodiscard]] Understanding finish();
    /// Reports that were passed over.
    [[nodiscard]] std::size_t passedOver() const;

private:
    class Document;
    std::unique_ptr<Document> document_;
    platform::XMLStream stream_;
    bool hasBytes_ = false;
};

} // namespace reports
