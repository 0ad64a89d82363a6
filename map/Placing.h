// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Geodesy.h"
#include "platform/views/Views.h"

#include <cstdint>

namespace map {

/// Shows two by two kilometres around a place, in a map of the given type. If the place is invalid,
/// only the type changes.
void showPlace(platform::MapView& view, const platform::Location& place, std::int64_t mapType);

} // namespace map
