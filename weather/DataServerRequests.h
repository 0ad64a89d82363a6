// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"
#include "reports/Sessions.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Requests to the weather data server, in its classic form unless another is named. They go to the
/// server that the setting "dataserverhost" names, or else to the default one. May be called on any
/// thread.
namespace weather {

/// The host that requests go to.
[[nodiscard]] std::string dataServer(platform::Host& host);

/// Requests for the latest METAR and the latest TAF of one station. `identifier` is percent-escaped
/// here.
[[nodiscard]] platform::URL metarRequest(platform::Host& host, std::string_view identifier);
[[nodiscard]] platform::URL tafRequest(platform::Host& host, std::string_view identifier);

/// Request, in the present form, for the METARs of one station of the last 24 hours.
[[nodiscard]] platform::URL historyRequest(platform::Host& host, std::string_view identifier);

/// Request, in the present form, for the last METARs or TAFs of several stations at once.
[[nodiscard]] platform::URL listRequest(platform::Host& host, reports::Kind kind,
                                        const std::vector<std::string>& identifiers);

/// Request for the file of every station's last report of a kind.
[[nodiscard]] platform::URL worldRequest(platform::Host& host, reports::Kind kind);

/// Request for the TAF of station KSFO over plain http. `latest` is the key that asks for the
/// latest report: "mostRecent" or "mostRecentForEachStation".
[[nodiscard]] platform::URL fixedTafRequest(platform::Host& host, std::string_view latest);

/// Request for the server's table of all stations.
[[nodiscard]] platform::URL stationTableRequest(platform::Host& host);

/// What an address asks for, in the classic form or the present one; nothing for one that is no
/// question for the METARs or TAFs of named stations. The stations as they are named.
[[nodiscard]] std::optional<reports::Question> questionIn(const platform::URL& address);

} // namespace weather
