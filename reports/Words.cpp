// SPDX-License-Identifier: MIT
#include "reports/Words.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

namespace reports {
namespace {

using Word = std::pair<std::string_view, std::string_view>;

constexpr std::array<Word, 10> precipitation{{{"DZ", "drizzle"},
                                              {"RA", "rain"},
                                              {"SN", "snow"},
                                              {"SG", "snow grains"},
                                              {"PL", "ice pellets"},
                                              {"PE", "ice pellets"},
                                              {"GR", "hail"},
                                              {"GS", "small hail or snow pellets"},
                                              {"IC", "ice crystals"},
                                              {"UP", "unidentified precipitation"}}};

/// What is not precipitation: alone in its code, or after one descriptor.
constexpr std::array<Word, 14> others{{{"BR", "mist"},
                                       {"FG", "fog"},
                                       {"FU", "smoke"},
                                       {"VA", "volcanic ash"},
                                       {"DU", "dust"},
                                       {"SA", "sand"},
                                       {"HZ", "haze"},
                                       {"PY", "spray"},
                                       {"PO", "dust or sand whirls"},
                                       {"SQ", "squalls"},
                                       {"FC", "funnel cloud"},
                                       {"SS", "sandstorm"},
                                       {"DS", "duststorm"},
                                       {"NSW", "no significant weather"}}};

constexpr std::array<Word, 6> descriptors{{{"MI", "shallow "},
                                           {"BC", "patches of "},
                                           {"PR", "partial "},
                                           {"DR", "low drifting "},
                                           {"BL", "blowing "},
                                           {"FZ", "freezing "}}};

template <std::size_t count>
std::optional<std::string_view> wordFor(const std::array<Word, count>& words,
                                        std::string_view code) {
    const auto found = std::ranges::find(words, code, &Word::first);
    return found == words.end() ? std::nullopt : std::optional(found->second);
}

bool take(std::string_view& code, std::string_view start) {
    const bool isThere = code.starts_with(start);
    code.remove_prefix(isThere ? start.size() : 0);
    return isThere;
}

/// "rain", "rain and snow", "rain, snow and hail"; nothing if `code` does not consist of
/// precipitation alone.
std::optional<std::string> precipitationWords(std::string_view code) {
    std::vector<std::string_view> found;
    for (; !code.empty(); code.remove_prefix(std::min<std::size_t>(2, code.size()))) {
        const auto word = wordFor(precipitation, code.substr(0, 2));
        if (!word) {
            return {};
        }
        found.push_back(*word);
    }
    std::string words;
    for (std::size_t i = 0; i < found.size(); ++i) {
        words += i == 0 ? "" : i + 1 == found.size() ? " and " : ", ";
        words += found[i];
    }
    return words;
}

std::optional<std::string> thunderstorm(std::string_view strength, std::string_view code) {
    if (code.empty()) {
        return std::string(strength) + "thunderstorm";
    }
    const auto rain = precipitationWords(code);
    return rain ? std::optional("thunderstorm with " + std::string(strength) + *rain)
                : std::nullopt;
}

std::optional<std::string> shower(std::string_view strength, std::string_view code) {
    if (code.empty()) {
        return std::string(strength) + "showers";
    }
    const auto rain = precipitationWords(code);
    return rain ? std::optional(std::string(strength) + "showers of " + *rain) : std::nullopt;
}

std::optional<std::string> phenomenon(std::string_view strength, std::string_view code) {
    if (code == "FC" && strength == "heavy ") {
        return "tornado or waterspout";
    }
    std::string words(strength);
    for (const auto& [descriptor, word] : descriptors) {
        if (take(code, descriptor)) {
            words += word;
            break;
        }
    }
    if (const auto word = wordFor(others, code)) {
        return words += *word;
    }
    const auto rain = precipitationWords(code);
    return rain && !rain->empty() ? std::optional(words + *rain) : std::nullopt;
}

std::string inWords(std::string_view code) {
    std::string_view rest = code;
    const bool isNear = take(rest, "VC");
    const std::string_view strength = take(rest, "-") ? "light " : take(rest, "+") ? "heavy " : "";
    const auto words = take(rest, "TS")   ? thunderstorm(strength, rest)
                       : take(rest, "SH") ? shower(strength, rest)
                                          : phenomenon(strength, rest);
    return words ? *words + (isNear ? " in the vicinity" : "") : std::string(code);
}

} // namespace

std::string weatherInWords(std::string_view codes) {
    std::string words;
    while (!codes.empty()) {
        const std::size_t end = std::min(codes.find_first_of(" /"), codes.size());
        if (end > 0) {
            words += words.empty() ? "" : ", ";
            words += inWords(codes.substr(0, end));
        }
        codes.remove_prefix(std::min(end + 1, codes.size()));
    }
    return words;
}

} // namespace reports
