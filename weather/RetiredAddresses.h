// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"

namespace weather {

/// Where to ask instead of an address that the default data server gave up: its METAR and TAF
/// questions for stations, over http or https alike, go to their https successors. Every other
/// address, another host's and another port's included, is answered as it stands.
[[nodiscard]] platform::URL successorOf(const platform::URL& address);

} // namespace weather
