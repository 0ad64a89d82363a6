// SPDX-License-Identifier: MIT
#include "reports/Words.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <vector>

namespace reports {
namespace {

TEST(Words, OfWeatherCodes) {
    const std::pair<const char*, const char*> cases[] = {
        {"", ""},
        {"-SHRA BR", "light showers of rain, mist"},
        {"+TSRAGR", "thunderstorm with heavy rain and hail"},
        {"TS -SH", "thunderstorm, light showers"},
        {"VCTS", "thunderstorm in the vicinity"},
        {"BR VCFZFG", "mist, freezing fog in the vicinity"},
        {"-RASNPL", "light rain, snow and ice pellets"},
        {"-FZDZRA", "light freezing drizzle and rain"},
        {"+FC", "tornado or waterspout"},
        {"PRFG", "partial fog"},
        {"-RA/ BR", "light rain, mist"},
        {"IC PE", "ice crystals, ice pellets"},
        {"NSW", "no significant weather"},
        {"+SGGS UP",
         "heavy snow grains and small hail or snow pellets, unidentified precipitation"},
        {"DU SA HZ PY", "dust, sand, haze, spray"},
        {"FU VA PO SQ", "smoke, volcanic ash, dust or sand whirls, squalls"},
        {"FC SS DS", "funnel cloud, sandstorm, duststorm"},
        {"MIFG BCFG DRSN BLSA", "shallow fog, patches of fog, low drifting snow, blowing sand"},
        {"RAXX -", "RAXX, -"},
        {"SHXX", "SHXX"},
        {"MI", "MI"},
    };
    for (const auto& [codes, words] : cases) {
        EXPECT_EQ(weatherInWords(codes), words) << codes;
    }
}

/// The known words of a description, ours or the table's, in an order that allows comparing them.
std::vector<std::string> meaningOf(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const auto replace = [&text](const std::string& from, const std::string& to) {
        for (auto at = text.find(from); at != text.npos; at = text.find(from, at + to.size())) {
            text.replace(at, from.size(), to);
        }
    };
    // The table's typing error, and terms of several words.
    replace("freezng", "freezing");
    replace("small hail or snow pellets", "soft-pellets");
    replace("snow pellets/small hail", "soft-pellets");
    replace("snow grains", "grains");
    replace("ice pellets", "ice");
    replace("well-developed funnel cloud(s) (tornado or waterspout)", "tornado");
    replace("tornado or waterspout", "tornado");
    replace(" (tornado or water-spout)", "");
    const std::vector<std::string> known{
        "light",        "heavy",    "thunderstorm", "shower",       "freezing",     "drizzle",
        "rain",         "snow",     "grains",       "soft-pellets", "ice",          "hail",
        "unidentified", "vicinity", "shallow",      "patches",      "partial",      "low drifting",
        "blowing",      "mist",     "fog",          "smoke",        "volcanic ash", "dust",
        "sand",         "haze",     "whirls",       "squalls",      "funnel",       "tornado"};
    std::vector<std::pair<std::size_t, std::string>> found;
    for (const std::string& word : known) {
        if (const auto at = text.find(word); at != text.npos) {
            found.emplace_back(at, word);
        }
    }
    std::ranges::sort(found);
    std::vector<std::string> meaning;
    for (const auto& [at, word] : found) {
        meaning.push_back(word);
    }
    // "Thunderstorm with heavy rain" may be "heavy thunderstorm with rain": the order of kinds of
    // precipitation counts, the place of what describes them does not.
    const auto rank =
        std::stable_partition(meaning.begin(), meaning.end(), [](const std::string& word) {
            return word == "light" || word == "heavy" || word == "thunderstorm" ||
                   word == "shower" || word == "freezing" || word == "unidentified";
        });
    std::sort(meaning.begin(), rank);
    return meaning;
}

TEST(Words, AgreeWithTheWholeTable) {
    const std::filesystem::path path = NOSIG_SHARED_DATA "/world/wmo-4678.tsv";
    if (!std::filesystem::exists(path)) {
        GTEST_SKIP() << "no table to compare with";
    }
    std::ifstream table(path);
    int rows = 0;
    for (std::string line; std::getline(table, line); ++rows) {
        const std::string code = line.substr(0, line.find('\t'));
        const std::string words = line.substr(line.find('\t') + 1);
        EXPECT_EQ(meaningOf(weatherInWords(code)), meaningOf(words))
            << code << ": " << weatherInWords(code) << " | " << words;
    }
    EXPECT_EQ(rows, 402);
}

} // namespace
} // namespace reports
