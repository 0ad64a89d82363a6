// SPDX-License-Identifier: MIT
#include "catalogue/ListFile.h"

#include "platform/host/Files.h"
#include "platform/text/Text.h"

#include <algorithm>
#include <array>
#include <new>
#include <string_view>
#include <utility>

namespace catalogue {

namespace {

using namespace std::string_view_literals;

constexpr std::uint64_t longestFile = std::uint64_t{1} << 30;
constexpr std::size_t shortestStationLine = 83;

/// The parser's columns. `synopEnd` is one past the index.
namespace column {
constexpr std::size_t name = 3;
constexpr std::size_t nameWidth = 16;
constexpr std::size_t icao = 20;
constexpr std::size_t blankBeforeIata = 24;
constexpr std::size_t iata = 25;
constexpr std::size_t blankBeforeSynop = 30;
constexpr std::size_t synop = 31;
constexpr std::size_t synopEnd = 36;
constexpr std::size_t latitudeLetter = 44;
constexpr std::size_t longitudeLetter = 53;
} // namespace column

/// Calls `take(line, isStation)` for each line, where `isStation` says whether the parser takes it
/// for a station's.
template <typename Text, typename Take>
void forEachLine(Text& text, Take take) {
    // The parser skips the first line, too, whatever it is.
    bool followsBlank = true;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        const auto line = std::span(text).subspan(start, end - start);
        const std::string_view view(line.data(), line.size());
        take(line,
             !view.empty() && !followsBlank && !view.starts_with('!') && !view.starts_with("CD"));
        followsBlank = view.empty();
        start = end + 1;
    }
}

/// The same for station lines only, without those that are too short to be one.
template <typename Text, typename Take>
void forEachStationLine(Text& text, Take take) {
    forEachLine(text, [&](auto line, bool isStation) {
        if (isStation && line.size() >= shortestStationLine) {
            take(line);
        }
    });
}

bool hasPosition(std::string_view line) {
    return line.size() >= shortestStationLine &&
           "NS"sv.find(line[column::latitudeLetter]) != std::string_view::npos &&
           "EW"sv.find(line[column::longitudeLetter]) != std::string_view::npos;
}

bool isContinuation(char unit) {
    return (static_cast<unsigned char>(unit) & 0xC0) == 0x80;
}

/// Returns how many more bytes than columns the name takes if the line was laid out by characters;
/// 0 for any other line.
std::size_t pushOfName(std::string_view line) {
    if (hasPosition(line)) {
        return 0;
    }
    std::size_t at = 0;
    for (std::size_t column = 0; at < line.size(); ++at) {
        if (!isContinuation(line[at]) && column++ == column::icao) {
            break;
        }
    }
    const std::size_t push = at - std::min(at, column::icao);
    return push > 0 && hasPosition(line.substr(push)) ? push : 0;
}

/// Returns the text with one byte per column, even in lines that were laid out by characters.
std::string inByteColumns(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    forEachLine(text, [&](std::span<const char> span, bool isStation) {
        std::string_view line(span.data(), span.size());
        const std::size_t push = isStation ? pushOfName(line) : 0;
        if (push > 0) {
            std::size_t end = column::name + column::nameWidth;
            while (isContinuation(line[end])) {
                --end;
            }
            result.append(line.substr(0, end)).append(column::icao - end, ' ');
            line.remove_prefix(column::icao + push);
        }
        result.append(line).append(1, '\n');
    });
    if (!text.ends_with('\n')) {
        result.pop_back();
    }
    return result;
}

bool isShifted(std::span<const char> line) {
    return platform::isDigit(line[column::synopEnd]) ||
           (line[column::iata] == ' ' && line[column::synop] == ' ');
}

bool isShiftedThroughout(std::string_view text) {
    std::size_t lines = 0;
    std::size_t openLines = 0;
    std::size_t indexes = 0;
    std::size_t shiftedIndexes = 0;
    forEachStationLine(text, [&](std::span<const char> line) {
        ++lines;
        openLines += line[column::iata] == ' ' && line[column::synop] == ' ' ? 1 : 0;
        shiftedIndexes += platform::isDigit(line[column::synopEnd]) ? 1 : 0;
        indexes += platform::isDigit(line[column::synopEnd]) ||
                           platform::isDigit(line[column::synopEnd - 1])
                       ? 1
                       : 0;
    });
    return shiftedIndexes > 0 && 10 * shiftedIndexes >= 9 * indexes && 10 * openLines >= 9 * lines;
}

bool fits(std::string_view line) {
    return hasPosition(line) && line[column::blankBeforeIata] == ' ' &&
           line[column::blankBeforeSynop] == ' ' && line[column::synopEnd] == ' ';
}

/// Carriage returns before a line feed are part of it; each of the others ends a line.
void useLineFeeds(std::string& text) {
    std::size_t length = text.find('\r');
    for (std::size_t at = length; at < text.size();) {
        const std::size_t end = std::min(text.find_first_not_of('\r', at), text.size());
        if (end == text.size() || text[end] != '\n') {
            for (; at < end; ++at) {
                text[length++] = '\n';
            }
        }
        const std::size_t next = std::min(text.find('\r', end), text.size());
        std::copy(text.begin() + static_cast<std::ptrdiff_t>(end),
                  text.begin() + static_cast<std::ptrdiff_t>(next),
                  text.begin() + static_cast<std::ptrdiff_t>(length));
        length += next - end;
        at = next;
    }
    text.resize(std::min(length, text.size()));
}

} // namespace

std::optional<ListText> readList(const std::filesystem::path& path) try {
    const auto bytes = platform::readFile(path, longestFile);
    return bytes ? std::optional(alignedList(decodedList(*bytes))) : std::nullopt;
} catch (const std::bad_alloc&) {
    return std::nullopt;
}

std::optional<std::string> readListFile(const std::filesystem::path& path) {
    auto list = readList(path);
    return list ? std::optional(std::move(list->text)) : std::nullopt;
}

std::string decodedList(std::span<const std::byte> bytes) {
    // UTF-32LE is tried first because its mark begins with that of UTF-16LE.
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
            auto decoded = platform::utf8FromEncoding(text.substr(mark.size()), encoding);
            useLineFeeds(decoded);
            return decoded;
        }
    }
    std::string result(text);
    useLineFeeds(result);
    if (!platform::isValidUtf8(result)) {
        std::ranges::replace_if(
            result, [](char c) { return static_cast<unsigned char>(c) >= 0x80; }, '?');
    }
    return result;
}

ListText alignedList(std::string text) {
    ListText list;
    list.text = std::move(text);
    if (!std::ranges::all_of(list.text, [](char c) { return static_cast<signed char>(c) >= 0; })) {
        list.text = inByteColumns(list.text);
    }
    if (isShiftedThroughout(list.text)) {
        forEachStationLine(list.text, [&](std::span<char> line) {
            if (isShifted(line)) {
                const auto columns = line.subspan(column::blankBeforeIata,
                                                  column::synopEnd + 1 - column::blankBeforeIata);
                std::rotate(columns.begin(), columns.begin() + 1, columns.end());
                ++list.realignedLines;
            }
        });
    }
    forEachLine(list.text, [&](std::span<const char> line, bool isStation) {
        list.oddLines += isStation && !fits({line.data(), line.size()}) ? 1 : 0;
    });
    return list;
}

} // namespace catalogue
