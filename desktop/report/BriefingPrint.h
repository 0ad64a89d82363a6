// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Briefing.h"

#include <QString>

#include <span>

class QPagedPaintDevice;

namespace desktop {

/// Prints a page of several stations' weather, black on white, on as many sheets as it takes, of
/// which only those in the device's page ranges are printed, if it has any. Each has `time` and its
/// number at its foot. A station's name is on the same sheet as the start of its first report.
/// False if the device cannot be written to.
[[nodiscard]] bool printBriefing(QPagedPaintDevice& device,
                                 std::span<const reports::BriefingLine> lines, const QString& time);

} // namespace desktop
