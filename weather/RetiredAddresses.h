// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"

namespace weather {

/// Returns the address to use in place of `address`. The METAR and TAF requests for stations that
/// the default data server has retired, over http or https, become their https successors. Any
/// other address, such as one with another host or port, is returned unchanged.
[[nodiscard]] platform::URL successorOf(const platform::URL& address);

} // namespace weather
