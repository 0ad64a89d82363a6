// SPDX-License-Identifier: MIT
#include "catalogue/ListFile.h"

#include "platform/Files.h"
#include "platform/Text.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace catalogue {

namespace {

using namespace std::string_view_literals;

constexpr std::uint64_t longestFile = std::uint64_t{1} << 30;
constexpr std::size_t shortestStationLine = 83;
/// Where the two shifted columns begin, and where what follows them keeps its place.
constexpr std::size_t spareBlank = 24;
constexpr std::size_t lastSynopDigit = 36;

/// Calls `take` with each station line's span of the text.
template <typename Text, typename Take>
void forEachStationLine(Text& text, Take take) {
    bool followsBlank = false;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        const auto line = std::span(text).subspan(start, end - start);
        const std::string_view view(line.data(), line.size());
        if (view.size() >= shortestStationLine && !view.starts_with('!') &&
            !view.starts_with("CD") && !followsBlank) {
            take(line);
        }
        followsBlank = view.empty();
        start = end + 1;
    }
}

} // namespace

std::optional<std::string> readListFile(const std::filesystem::path& path) {
    const auto bytes = platform::readFile(path, longestFile);
    if (!bytes) {
        return std::nullopt;
    }
    return realignedList(listText(*bytes));
}

std::string listText(std::span<const std::byte> bytes) {
    // The mark of UTF-32LE begins with that of UTF-16LE, so it is tried first.
    static constexpr std::array<std::pair<std::string_view, const char*>, 5> marks{{
        {"\xEF\xBB\xBF"sv, "UTF-8"},
        {"\xFF\xFE\0\0"sv, "UTF-32LE"},
        {"\0\0\xFE\xFF"sv, "UTF-32BE"},
        {"\xFF\xFE"sv, "UTF-16LE"},
        {"\xFE\xFF"sv, "UTF-16BE"},
    }};
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    for (const auto& [mark, encoding] : marks) {
        if (text.starts_with(mark)) {
            return platform::utf8FromEncoding(text.substr(mark.size()), encoding);
        }
    }
    std::string result(text);
    if (!platform::isValidUtf8(result)) {
        std::ranges::replace_if(
            result, [](char c) { return static_cast<unsigned char>(c) >= 0x80; }, '?');
    }
    return result;
}

std::string realignedList(std::string text) {
    bool hasShiftedIndex = false;
    bool isRoomy = true;
    forEachStationLine(text, [&](std::span<const char> line) {
        hasShiftedIndex |= line[lastSynopDigit] >= '0' && line[lastSynopDigit] <= '9';
        isRoomy &= line[spareBlank] == ' ' && line[spareBlank + 1] == ' ';
    });
    if (hasShiftedIndex && isRoomy) {
        forEachStationLine(text, [](std::span<char> line) {
            const auto columns = line.subspan(spareBlank, lastSynopDigit + 1 - spareBlank);
            std::rotate(columns.begin(), columns.begin() + 1, columns.end());
        });
    }
    return text;
}

} // namespace catalogue
