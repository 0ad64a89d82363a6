// SPDX-License-Identifier: MIT
#include "catalogue/ListFile.h"

#include <gtest/gtest.h>

#include <string>

namespace catalogue {
namespace {

using namespace std::string_literals;

std::string decoded(const std::string& bytes) {
    return decodedList(std::as_bytes(std::span(bytes)));
}

TEST(ListFile, IsDecodedByItsMarkAndEndsLinesWithLineFeeds) {
    struct {
        const char* what;
        std::string bytes, text;
    } const rows[] = {
        {"line ends of three kinds", "a\r\nb\rc\n\r\nd\r\r\ne\r\rf\r", "a\nb\nc\n\nd\ne\n\nf\n"},
        {"UTF-8", "Z\xC3\xBCrich", "Z\xC3\xBCrich"},
        {"UTF-8 with a mark", "\xEF\xBB\xBFZ\xC3\xBC", "Z\xC3\xBC"},
        {"one character a byte", "Z\xFCrich \x80 \xC3\xBC", "Z?rich ? ??"},
        {"UTF-16LE", "\xFF\xFEK\0\r\0\n\0\xFC\0"s, "K\n\xC3\xBC"},
        {"UTF-16BE", "\xFE\xFF\0K\xD8\x3D\xDE\xEB"s, "K\xF0\x9F\x9B\xAB"},
        {"UTF-32LE", "\xFF\xFE\0\0K\0\0\0"s, "K"},
        {"UTF-32BE", "\0\0\xFE\xFF\0\0\0K"s, "K"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(decoded(row.bytes), row.text);
    }
    EXPECT_FALSE(readListFile("/nonexistent/list.txt"));
    EXPECT_FALSE(readListFile("/dev/zero"));
}

// The IATA and SYNOP columns: one to the right of where the parser reads them, in place, and blank.
const std::string shifted =
    "AK ADAK NAS         PADK  ADK   70454  51 53N  176 39W    4   X     T          7 US";
const std::string straight =
    "AK ADAK NAS         PADK ADK   70454   51 53N  176 39W    4   X     T          7 US";
const std::string bare =
    "AK AKUTAN           PAUT               54 09N  165 36W   25   X                7 US";

std::string with(std::size_t column, const std::string& text, std::string line) {
    return line.replace(column, text.size(), text);
}

TEST(ListFile, RealignsShiftedLinesIfNineTenthsOfTheListAreShifted) {
    const auto times = [](int count, const std::string& line) {
        std::string lines;
        while (count-- > 0) {
            lines += line + "\n";
        }
        return lines;
    };
    const auto nine = times(9, shifted);
    const auto nineStraight = times(9, straight);
    const auto tenShifted = nine + shifted + "\n";
    const auto uncoded = with(25, "   ", straight);
    const auto indexed = times(17, shifted) + times(3, straight) + times(30, bare);
    const auto coded = times(17, shifted) + times(3, with(31, "     ", straight));
    struct {
        const char* what;
        std::string text, aligned;
        std::size_t realigned = 0, odd = 0;
    } const rows[] = {
        {"lines with and without codes move", "! c\n" + nine + times(3, bare),
         "! c\n" + nineStraight + times(3, bare), 12},
        {"lines without codes alone stay", bare, bare},
        {"headers, comments and headings stay",
         "!" + shifted + "\n\n" + shifted + "\nCD" + shifted + "\n" + shifted,
         "!" + shifted + "\n\n" + shifted + "\nCD" + shifted + "\n" + straight, 1},
        {"short lines stay", shifted + "\n" + shifted.substr(0, 82),
         straight + "\n" + shifted.substr(0, 82), 1, 1},
        {"a line in the other form stays", nine + straight, nineStraight + straight, 9},
        {"also without an airport code", nine + uncoded, nineStraight + uncoded, 9},
        {"a tenth shifted is not enough", shifted + "\n" + nineStraight,
         shifted + "\n" + nineStraight, 0, 1},
        {"three indexes in place of twenty are too many", indexed, indexed, 0, 17},
        {"and so are three codes in place", coded, coded, 0, 17},
        {"a stray digit among bare lines moves none of them",
         times(30, bare) + straight + "\n" + with(36, "1", bare),
         times(30, bare) + straight + "\n" + with(36, "1", bare), 0, 1},
        {"nor does one among lines whose codes are in place",
         times(9, with(31, "     ", straight)) + with(36, "1", bare),
         times(9, with(31, "     ", straight)) + with(36, "1", bare), 0, 1},
        {"a stray byte before the code", nine + with(24, "x", shifted),
         nineStraight + with(36, "x", straight), 10, 1},
        {"one at the code's first column", nine + with(25, "x", shifted),
         nineStraight + with(24, "x", straight), 10, 1},
        {"one before the index", nine + with(31, "x", shifted),
         nineStraight + with(30, "x", straight), 10, 1},
        {"one in the latitude", tenShifted + with(44, "x", shifted),
         nineStraight + straight + "\n" + with(44, "x", straight), 11, 1},
        {"one in the longitude", tenShifted + with(53, "x", shifted),
         nineStraight + straight + "\n" + with(53, "x", straight), 11, 1},
        {"nothing", "", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        // The first line of a list is never read.
        const auto list = alignedList("!\n" + row.text);
        EXPECT_EQ(list.text, "!\n" + row.aligned);
        EXPECT_EQ(list.realignedLines, row.realigned);
        EXPECT_EQ(list.oddLines, row.odd);
    }
}

TEST(ListFile, LettersOfSeveralBytesDoNotShiftTheColumns) {
    const std::string rest = straight.substr(20);
    struct {
        const char* what;
        std::string line, aligned;
        std::size_t odd = 0;
    } const rows[] = {
        {"blanks make room", "AK S\u00C3O PAULO       " + rest, "AK S\u00C3O PAULO       " + rest},
        {"laid out by characters", "AK S\u00C3O PAULO        " + rest,
         "AK S\u00C3O PAULO       " + rest},
        {"in the public form too", "AK S\u00C3O PAULO        " + shifted.substr(20),
         "AK S\u00C3O PAULO       " + rest},
        {"no blank to spare", "AK S\u00C3O PAULO CAMPOS " + rest,
         "AK S\u00C3O PAULO CAMPO " + rest},
        {"the last letter is not cut", "AK SAO PAULO CAMP\u00D5S " + rest,
         "AK SAO PAULO CAMP\u00D5 " + rest},
        {"the last letter does not fit", "AK SAO PAULO CAMPO\u00D5 " + rest,
         "AK SAO PAULO CAMPO  " + rest},
        {"outside the name nothing makes room",
         straight.substr(0, 28) + "\u00C3" + straight.substr(29),
         straight.substr(0, 28) + "\u00C3" + straight.substr(29), 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const bool isPublicForm = row.line.ends_with(shifted.substr(20));
        const auto list = alignedList("THE LIST \u00C9\n" + row.line + (isPublicForm ? "\n" : ""));
        EXPECT_EQ(list.text, "THE LIST \u00C9\n" + row.aligned + (isPublicForm ? "\n" : ""));
        EXPECT_EQ(list.oddLines, row.odd);
    }
}

} // namespace
} // namespace catalogue
