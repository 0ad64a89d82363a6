// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"

#include <random>

namespace slib {

/// The calling thread's own generator, seeded by the system on first use. Not suitable for secrets.
[[nodiscard]] std::mt19937_64& randomGenerator();

/// A random identifier (RFC 4122, version 4). Any thread.
[[nodiscard]] platform::UUID randomUUID();

} // namespace slib
