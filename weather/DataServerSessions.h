// SPDX-License-Identifier: MIT
#pragma once

#include "platform/net/URLSession.h"

namespace weather {

/// How this program talks to web servers: it sends its name, stays within the default data server's
/// limits, and uses the successors of that server's retired addresses.
[[nodiscard]] platform::URLSessionOptions sessionOptions();

} // namespace weather
