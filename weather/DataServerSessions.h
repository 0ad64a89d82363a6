// SPDX-License-Identifier: MIT
#pragma once

#include "platform/net/URLSession.h"

namespace weather {

/// How this program asks web servers: by its name, the default data server no more than that one
/// bears, and at the successors of the addresses that it gave up.
[[nodiscard]] platform::URLSessionOptions sessionOptions();

} // namespace weather
