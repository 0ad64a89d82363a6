// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStation.h"
#include "platform/host/Host.h"
#include "platform/text/XMLParser.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

/// A single, fixed request to the weather data server; its reply is parsed, but nothing is done
/// with it.
/// Kept: other programs create one. It lives at least until the reply has been handled.
class AviationWeatherRecord final : public platform::XMLParserDelegate,
                                    public std::enable_shared_from_this<AviationWeatherRecord> {
public:
    /// Kept: other programs create one. The station is ignored; the options become `requestedData`.
    [[nodiscard]] static std::shared_ptr<AviationWeatherRecord>
    initWithStation_options(platform::Host& host,
                            const std::shared_ptr<AviationWeatherStation>& station,
                            std::uint64_t options);

    std::uint64_t requestedData = 0;

    /// Sends the request and returns at once. May be called on any thread.
    void getNewMessages();

    void parser_didStartElement(std::string_view name) override;
    void parser_foundCharacters(std::string_view text) override;
    void parser_didEndElement(std::string_view name) override;

private:
    /// Only the factory makes records.
    struct Private {};

public:
    AviationWeatherRecord(Private, platform::Host& host, std::uint64_t options);

private:
    platform::Host& host_;
    /// The latest chunk of characters inside an element of interest.
    std::string currentString_;
    bool iCare_ = false;
};
