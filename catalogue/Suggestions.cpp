// SPDX-License-Identifier: MIT
#include "catalogue/Suggestions.h"

#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <unordered_set>
#include <utility>

namespace catalogue {

namespace {

using Kind = Suggestion::Kind;

constexpr std::size_t mostByBeginningOfCode = 2;
constexpr std::size_t mostRegions = 2;

/// How well a name fits; the best first.
enum Fit : std::size_t {
    whole,
    wordsAtStart,
    words,
    beginningAtStart,
    beginning,
    inside,
    noFit,
};

std::string_view trimmedText(const std::optional<std::string>& text) {
    return text ? platform::trimmed(*text) : std::string_view();
}

/// Adds the words of a text, each with a blank before and one after the last; nothing if it has
/// none. Apostrophes belong to no word and separate none: O'HARE is one word.
void addWords(std::string_view text, std::string& words) {
    bool isInside = false;
    bool isAny = false;
    for (const char c : text) {
        const char letter = platform::asciiLower(c);
        if (!platform::isAscii(letter) || (letter >= 'a' && letter <= 'z') ||
            (letter >= '0' && letter <= '9')) {
            if (!isInside) {
                words += ' ';
            }
            words += letter;
            isInside = true;
            isAny = true;
        } else if (letter != '\'') {
            isInside = false;
        }
    }
    if (isAny) {
        words += ' ';
    }
}

std::string wordsOf(std::string_view text) {
    std::string words;
    addWords(platform::folded(text), words);
    return words;
}

constexpr std::size_t priorities = 11;
constexpr std::size_t ranks = 4 * priorities;

/// Below `ranks`; the lower, the more important.
std::size_t rankOf(const AviationWeatherStation& station) {
    const bool issuesTAFs = station.aviationFlag == 'T' || station.aviationFlag == 'U';
    const char digit = station.plottingPriority;
    const std::size_t priority =
        digit >= '0' && digit <= '9' ? static_cast<std::size_t>(digit - '0') : priorities - 1;
    return ((issuesTAFs ? 0U : 2U) + (station.METAR == 'X' ? 0U : 1U)) * priorities + priority;
}

/// The part of a text between blanks and commas that the fewest stations have in a field.
std::string rarestTerm(std::string_view text, SearchField field,
                       const AviationWeatherStationCollection& collection) {
    std::string rarest;
    std::size_t fewest = std::numeric_limits<std::size_t>::max();
    for (const std::string& term : searchTerms(std::string(text))) {
        const std::size_t count =
            term.empty() ? fewest : stationsWith(term, field, collection).size();
        if (count < fewest || (count == fewest && term.size() > rarest.size())) {
            rarest = term;
            fewest = count;
        }
    }
    return rarest;
}

} // namespace

std::string suggestionLine(const Suggestion& suggestion) {
    if (!suggestion.station) {
        return suggestion.region + " · region";
    }
    const AviationWeatherStation& station = *suggestion.station;
    const auto identifier = trimmedText(station.ICAO);
    const auto name = trimmedText(station.stationName);
    if (suggestion.kind == Kind::IATA) {
        return fmt::format("{} → {} {} · IATA", trimmedText(station.IATA), identifier, name);
    }
    return fmt::format("{}  {} · {}", identifier, name,
                       suggestion.kind == Kind::identifier ? "ICAO" : "name");
}

SuggestedSearch searchFor(const Suggestion& suggestion,
                          const AviationWeatherStationCollection& collection) {
    const auto search = [&collection](SearchField field, std::string_view text) {
        return SuggestedSearch{field, rarestTerm(text, field, collection)};
    };
    if (!suggestion.station) {
        return search(SearchField::regions, suggestion.region);
    }
    const auto identifier = trimmedText(suggestion.station->ICAO);
    if (suggestion.kind != Kind::name && !identifier.empty()) {
        return search(SearchField::identifiers, identifier);
    }
    return search(SearchField::names, trimmedText(suggestion.station->stationName));
}

void FoldedTexts::add(std::string_view text) {
    starts_.push_back(words_.size());
    if (platform::isAscii(text)) {
        addWords(text, words_);
    } else {
        addWords(platform::folded(text), words_);
    }
}

template <typename Found>
void FoldedTexts::eachWith(std::string_view part, Found found) const {
    const std::string_view all = words_;
    std::size_t next = 0;
    for (auto at = all.find(part); at != all.npos;) {
        while (next < starts_.size() && starts_[next] <= at) {
            ++next;
        }
        const std::size_t start = starts_[next - 1];
        const std::size_t end = next == starts_.size() ? all.size() : starts_[next];
        found(next - 1, all.substr(start, end - start));
        at = all.find(part, end);
    }
}

/// A text to find the meanings of.
struct SuggestionIndex::Query {
    explicit Query(std::string_view searched) : text(wordsOf(searched)) {
        for (std::size_t at = 0; at + 1 < text.size();) {
            const std::size_t end = text.find(' ', at + 1);
            parts.push_back(std::string_view(text).substr(at + 1, end - at - 1));
            at = end;
        }
    }
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;

    /// The part that the fewest names are likely to contain.
    [[nodiscard]] std::string_view longest() const {
        return *std::ranges::max_element(parts, {}, &std::string_view::size);
    }

    /// `noFit` if the name does not fit at all.
    [[nodiscard]] Fit fitOf(std::string_view name) const {
        const std::string_view all = text;
        if (name == all) {
            return whole;
        }
        if (const auto at = name.find(all); at != name.npos) {
            return at == 0 ? wordsAtStart : words;
        }
        if (const auto at = name.find(all.substr(0, all.size() - 1)); at != name.npos) {
            return at == 0 ? beginningAtStart : beginning;
        }
        Fit worst = words;
        for (const std::string_view part : parts) {
            const auto at = name.find(part);
            if (at == name.npos) {
                return noFit;
            }
            // The part is a view into the text, where a blank stands before and after it.
            const std::string_view begun(part.data() - 1, part.size() + 1);
            const std::string_view alone(part.data() - 1, part.size() + 2);
            worst = std::max(worst, name.find(alone) != name.npos   ? words
                                    : name.find(begun) != name.npos ? beginning
                                                                    : inside);
        }
        return worst;
    }

    /// The words, each with a blank before it and one after the last.
    std::string text;
    /// Views into it.
    std::vector<std::string_view> parts;
};

SuggestionIndex::SuggestionIndex(const AviationWeatherStationCollection* collection) {
    if (!collection || !collection->stations) {
        return;
    }
    std::array<StationArray, ranks> ranked;
    std::unordered_set<std::string_view> known;
    std::optional<std::string> last;
    for (const auto& station : *collection->stations) {
        ranked[rankOf(*station)].push_back(station);
        // Those of a region stand together.
        if (station->stateName != last) {
            last = station->stateName;
            const auto region = trimmedText(station->stateName);
            if (!region.empty() && known.insert(region).second) {
                regions_.emplace_back(region);
                regionNames_.add(region);
            }
        }
    }
    for (const StationArray& equal : ranked) {
        for (const auto& station : equal) {
            identifiers_.add(station->ICAO.value_or(""));
            codes_.add(station->IATA.value_or(""));
            names_.add(station->stationName.value_or(""));
        }
        stations_.insert(stations_.end(), equal.begin(), equal.end());
    }
}

std::vector<Suggestion> SuggestionIndex::find(std::string_view text) const {
    const Query query(text);
    if (query.parts.empty()) {
        return {};
    }
    std::vector<Suggestion> suggestions;
    std::unordered_set<std::size_t> known;
    // Regions come last, but must not fall off the end.
    const auto regions = bestOf(regionNames_, mostRegions, query);
    const auto add = [&](Kind kind, std::size_t station) {
        if (suggestions.size() + regions.size() < most && known.insert(station).second) {
            suggestions.push_back({kind, stations_[station], {}});
        }
    };
    for (const auto& [kind, station] : stationsByCode(query)) {
        add(kind, station);
    }
    for (const std::size_t station : bestOf(names_, most, query)) {
        add(Kind::name, station);
    }
    for (const std::size_t region : regions) {
        suggestions.push_back({Kind::region, nullptr, regions_[region]});
    }
    return suggestions;
}

std::vector<std::pair<Kind, std::size_t>>
SuggestionIndex::stationsByCode(const Query& query) const {
    std::vector<std::pair<Kind, std::size_t>> found;
    std::vector<std::pair<Kind, std::size_t>> begun;
    const auto look = [&](Kind kind, const FoldedTexts& codes) {
        codes.eachWith(query.longest(), [&](std::size_t station, std::string_view code) {
            const Fit fit = query.fitOf(code);
            if (fit == whole) {
                found.emplace_back(kind, station);
            } else if (fit == beginningAtStart && begun.size() < mostByBeginningOfCode) {
                begun.emplace_back(kind, station);
            }
        });
    };
    look(Kind::identifier, identifiers_);
    look(Kind::IATA, codes_);
    found.insert(found.end(), begun.begin(), begun.end());
    return found;
}

std::vector<std::size_t> SuggestionIndex::bestOf(const FoldedTexts& texts, std::size_t wanted,
                                                 const Query& query) {
    std::array<std::vector<std::size_t>, noFit> found;
    texts.eachWith(query.longest(), [&](std::size_t index, std::string_view words) {
        const Fit fit = query.fitOf(words);
        if (fit != noFit) {
            found[fit].push_back(index);
        }
    });
    std::vector<std::size_t> best;
    for (const auto& equal : found) {
        best.insert(best.end(), equal.begin(), equal.end());
    }
    best.resize(std::min(best.size(), wanted));
    return best;
}

} // namespace catalogue
