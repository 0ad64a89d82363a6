// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/table/Places.h"
#include "catalogue/table/ServiceTable.h"

#include <chrono>
#include <cstddef>
#include <string>

namespace catalogue {

/// A table of stations as a list in the fixed columns of the public one, with what the columns have
/// no room for.
struct MadeList {
    /// ASCII. The same table gives the same bytes.
    std::string list;
    /// The table's own positions, which the list has in whole minutes: one line per station, in the
    /// order of their identifiers, as `withPositions` reads it.
    std::string positions;
    /// Stations that neither report nor forecast and are listed a second time, by the same name and
    /// within two hundredths of a degree, under an identifier that does; they are left out.
    std::size_t formerIdentifiers = 0;
    /// Stations whose country or state is not the table's.
    std::size_t placesCorrected = 0;
};

/// `edition` is the day of the table, which the list gives with every region. A code that several
/// stations have in common is left to one of them: to one that both reports METARs and issues TAFs
/// rather than one that does either or neither, then to the first.
[[nodiscard]] MadeList makeList(const ServiceTable& table, const Places& places,
                                std::chrono::year_month_day edition);

} // namespace catalogue
