// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/Search.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What a search text may mean: stations by identifier, IATA code or name, and regions. Case, marks
/// of letters and punctuation do not matter.
namespace catalogue {

/// One meaning of a text.
struct Suggestion {
    enum class Kind { identifier, IATA, name, region };

    Kind kind;
    /// Null for a region.
    std::shared_ptr<AviationWeatherStation> station;
    /// The region's name as listed, without blanks around it; empty for a station.
    std::string region;
};

/// Says in one line what a suggestion is, such as "EGLL  LONDON/HEATHROW · name".
[[nodiscard]] std::string suggestionLine(const Suggestion& suggestion);

/// A search of one term that lists what a suggestion stands for.
struct SuggestedSearch {
    SearchField field;
    std::string term;
};

/// A search splits its text at blanks and commas and lists what matches any part, so a whole name
/// would list too much. The term is therefore the one part of the name of station or region that
/// the fewest stations of the collection have; of equally rare ones the longest. Other stations
/// that have it, too, are listed as well. A station that was suggested by one of its codes is
/// searched for by its identifier or, without one, by its name. The term is empty for a station
/// that has neither.
[[nodiscard]] SuggestedSearch searchFor(const Suggestion& suggestion,
                                        const AviationWeatherStationCollection& collection);

/// The words of texts, folded, one text after another in one piece of memory.
class FoldedTexts {
public:
    void add(std::string_view text);
    /// Calls `found` with the index and the words of each text that contains `part`, which holds no
    /// blank. There is one blank before, between and after words.
    template <typename Found>
    void eachWith(std::string_view part, Found found) const;

private:
    std::string words_;
    std::vector<std::size_t> starts_;
};

/// Finds the meanings of texts in one catalogue, in time that grows with the catalogue, but without
/// touching its records. Making one takes longer than finding. Any thread may do either, as long as
/// no thread changes the catalogue's array or the texts of its stations.
class SuggestionIndex {
public:
    /// Keeps the collection's stations alive; null is a catalogue without any.
    explicit SuggestionIndex(const AviationWeatherStationCollection* collection);

    /// The most that are suggested at a time.
    static constexpr std::size_t most = 8;

    /// Returns, in this order, what the text may mean:
    /// - a station whose identifier it is,
    /// - stations whose IATA code it is,
    /// - up to two stations whose identifier or IATA code begins with it,
    /// - stations by name: the text is the whole name, whole words of it, the beginning of a word,
    ///   or inside a word; where a name begins with it, earlier. Words may be in any order,
    /// - up to two regions, in the same order.
    /// Of equally good ones, stations that issue TAFs come first, then those that report METARs,
    /// then by plotting priority, then in catalogue order. A station is suggested once.
    [[nodiscard]] std::vector<Suggestion> find(std::string_view text) const;

private:
    struct Query;

    [[nodiscard]] std::vector<std::pair<Suggestion::Kind, std::size_t>>
    stationsByCode(const Query& query) const;
    /// The indices of the texts that fit best, in order.
    [[nodiscard]] static std::vector<std::size_t> bestOf(const FoldedTexts& texts,
                                                         std::size_t wanted, const Query& query);

    /// The most important first.
    StationArray stations_;
    FoldedTexts identifiers_;
    FoldedTexts codes_;
    FoldedTexts names_;
    std::vector<std::string> regions_;
    FoldedTexts regionNames_;
};

} // namespace catalogue
