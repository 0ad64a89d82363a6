// SPDX-License-Identifier: MIT
#include "reports/RawText.h"

#include "platform/text/Text.h"
#include "platform/values/Units.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace reports {
namespace {

using platform::metresPerMile;

bool isDigits(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, platform::isDigit);
}

int number(std::string_view digits) {
    int value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
}

std::vector<std::string_view> wordsOf(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    std::vector<std::string_view> words;
    for (std::size_t at = text.find_first_not_of(blanks); at != text.npos;
         at = text.find_first_not_of(blanks, at)) {
        const std::size_t end = std::min(text.find_first_of(blanks, at), text.size());
        words.push_back(text.substr(at, end - at));
        at = end;
    }
    return words;
}

/// A word without the "=" that ends a report.
std::string_view bare(std::string_view word) {
    while (word.ends_with('=')) {
        word.remove_suffix(1);
    }
    return word;
}

/// Whether a word is a period, "DDHH/DDHH"; "9999/8000" is not, since no month has 99 days.
bool isSpan(std::string_view word) {
    const auto isTime = [](std::string_view part) {
        return isDigits(part) && number(part.substr(0, 2)) >= 1 &&
               number(part.substr(0, 2)) <= 31 && number(part.substr(2)) <= 24;
    };
    return word.size() == 9 && word[4] == '/' && isTime(word.substr(0, 4)) &&
           isTime(word.substr(5));
}

bool isFrom(std::string_view word) {
    return word.starts_with("FM") && (word.size() == 6 || word.size() == 8) &&
           isDigits(word.substr(2));
}

bool isProbability(std::string_view word) {
    return word.size() == 6 && word.starts_with("PROB") && isDigits(word.substr(4));
}

/// Whether a change group begins with this word. Its period may be attached: "TEMPO1218/1220".
bool isChange(std::string_view word) {
    constexpr std::array<std::string_view, 3> changes{"BECMG", "TEMPO", "INTER"};
    return std::ranges::any_of(changes, [word](std::string_view change) {
        return word.starts_with(change) &&
               (word.size() == change.size() || isSpan(word.substr(change.size())));
    });
}

constexpr std::array<std::pair<std::string_view, Cover>, 5> layerWords{{{"FEW", Cover::few},
                                                                        {"SCT", Cover::scattered},
                                                                        {"BKN", Cover::broken},
                                                                        {"OVC", Cover::overcast},
                                                                        {"///", Cover::unknown}}};

/// The layer that a word such as "BKN020CB", "OVC004///", "BKN///" or "//////" stands for.
std::optional<Layer> layerOf(std::string_view word) {
    const auto* cover = std::ranges::find(layerWords, word.substr(0, 3),
                                          &std::pair<std::string_view, Cover>::first);
    const std::string_view height = word.substr(std::min<std::size_t>(3, word.size()));
    const bool isMissing = height.starts_with("///");
    if (cover == layerWords.end() || height.size() < 3 ||
        (!isMissing && !isDigits(height.substr(0, 3)))) {
        return {};
    }
    const std::string_view kind = height.substr(3);
    if (!kind.empty() && kind != "CB" && kind != "TCU" && kind != "///") {
        return {};
    }
    Layer layer{cover->second, {}, kind == "///" ? "" : std::string(kind)};
    if (!isMissing) {
        layer.base = 100 * number(height.substr(0, 3));
    }
    return layer;
}

std::optional<Visibility> visibilityOf(std::string_view word) {
    // Automatic stations append NDV: they cannot tell whether the visibility varies by direction.
    if (word.size() == 7 && word.ends_with("NDV")) {
        word.remove_suffix(3);
    }
    if (word == "9999") {
        return Visibility{10'000 / metresPerMile, true};
    }
    if (word.size() == 4 && isDigits(word)) {
        return Visibility{number(word) / metresPerMile, false};
    }
    if (word.size() > 2 && word.size() <= 4 && word.ends_with("SM") &&
        isDigits(word.substr(0, word.size() - 2))) {
        return Visibility{static_cast<double>(number(word)), false};
    }
    return {};
}

bool isVariation(std::string_view word) {
    return word.size() == 7 && word[3] == 'V' && isDigits(word.substr(0, 3)) &&
           isDigits(word.substr(4));
}

/// Whether the visibility may follow this word: "22010KT", "180V240", "/////KT".
bool isWind(std::string_view word) {
    return isVariation(word) ||
           (word.size() >= 7 && (word.ends_with("KT") || word.ends_with("MPS")));
}

} // namespace

RawFlags rawFlags(std::string_view raw) {
    RawFlags flags;
    bool hasTime = false;
    for (const std::string_view word : wordsOf(raw)) {
        const std::string_view text = bare(word);
        if (text == "RMK") {
            break;
        }
        flags.isNil |= text == "NIL";
        flags.isCancelled |= hasTime && (text == "CNL" || text == "CANCELLED");
        if (text == "COR") {
            flags.revision = Revision::corrected;
        } else if (text == "AMD" && flags.revision == Revision::none) {
            flags.revision = Revision::amended;
        }
        hasTime |= isSpan(text);
    }
    return flags;
}

Conditions rawConditions(std::string_view metar) {
    Conditions found;
    bool isAfterWind = false;
    for (const std::string_view word : wordsOf(metar)) {
        const std::string_view text = bare(word);
        if (text == "RMK" || isChange(text) || text == "NOSIG") {
            break;
        }
        if (text == "CAVOK") {
            found.visibility = Visibility{10'000 / metresPerMile, true};
            found.layers = {{Cover::CAVOK, {}, {}}};
        } else if (text == "CLR" || text == "SKC" || text == "NSC" || text == "NCD") {
            found.layers.push_back({Cover::none, {}, {}});
        } else if (text.starts_with("VV") && text.size() == 5) {
            found.layers.push_back({Cover::obscured, {}, {}});
            if (isDigits(text.substr(2))) {
                found.verticalVisibility = 100 * number(text.substr(2));
            }
        } else if (const auto layer = layerOf(text)) {
            found.layers.push_back(*layer);
        } else if (isAfterWind && !found.visibility) {
            found.visibility = visibilityOf(text);
        }
        isAfterWind = isWind(text);
    }
    return found;
}

std::optional<std::pair<int, int>> rawWindVariation(std::string_view metar) {
    for (const std::string_view word : wordsOf(metar)) {
        if (word == "RMK" || isChange(word)) {
            break;
        }
        if (isVariation(word)) {
            return std::pair(number(word.substr(0, 3)), number(word.substr(4)));
        }
    }
    return {};
}

std::vector<std::string> brokenTaf(std::string_view taf) {
    std::vector<std::string> lines(1);
    bool hasValidity = false;
    bool isRemark = false;
    std::string_view before;
    for (const std::string_view word : wordsOf(taf)) {
        const std::string_view text = bare(word);
        const bool isPartOfChange = isProbability(before) && isChange(text);
        const bool isBareSpan = isSpan(text) && !isChange(before) && !isProbability(before);
        const bool begins = text == "RMK" || isFrom(text) || isProbability(text) ||
                            isChange(text) || (isBareSpan && hasValidity);
        if (begins && !isRemark && !isPartOfChange && !lines.back().empty()) {
            lines.emplace_back();
        }
        hasValidity |= isBareSpan || begins;
        isRemark |= text == "RMK";
        lines.back() += lines.back().empty() ? "" : " ";
        lines.back() += word;
        before = text;
    }
    if (lines.back().empty()) {
        lines.clear();
    }
    return lines;
}

std::size_t partsOfTaf(std::string_view taf) {
    return static_cast<std::size_t>(std::ranges::count_if(
        brokenTaf(taf), [](std::string_view line) { return !line.starts_with("RMK"); }));
}

} // namespace reports
