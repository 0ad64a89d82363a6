// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <string_view>

/// The questions put to the weather data server, in its classic form. They go to the server that
/// the setting "dataserverhost" names, or to the default one. Any thread.
namespace weather {

/// The latest METAR and TAF of one station; its identifier is percent-escaped.
[[nodiscard]] platform::URL metarRequest(platform::Host& host, std::string_view identifier);
[[nodiscard]] platform::URL tafRequest(platform::Host& host, std::string_view identifier);

/// The TAF of station KSFO over plain http; `latest` is the key that asks for the latest one,
/// "mostRecent" or "mostRecentForEachStation".
[[nodiscard]] platform::URL fixedTafRequest(platform::Host& host, std::string_view latest);

} // namespace weather
