// SPDX-License-Identifier: MIT
#include "catalogue/ListFile.h"

#include <gtest/gtest.h>

#include <string>

namespace catalogue {
namespace {

using namespace std::string_literals;

std::string decoded(const std::string& bytes) {
    return listText(std::as_bytes(std::span(bytes)));
}

TEST(ListFile, AByteOrderMarkDecidesTheEncoding) {
    struct {
        const char* what;
        std::string bytes, text;
    } const rows[] = {
        {"UTF-8", "Z\xC3\xBCrich", "Z\xC3\xBCrich"},
        {"UTF-8 with a mark", "\xEF\xBB\xBFZ\xC3\xBC", "Z\xC3\xBC"},
        {"one character a byte", "Z\xFCrich \xC3\xBC", "Z?rich ??"},
        {"UTF-16LE", "\xFF\xFEK\0\xFC\0"s, "K\xC3\xBC"},
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

// The first has both columns one to the right of where the parser reads them, the second neither.
const std::string shifted =
    "AK ADAK NAS         PADK  ADK   70454  51 53N  176 39W    4   X     T          7 US";
const std::string straight =
    "AK ADAK NAS         PADK ADK   70454   51 53N  176 39W    4   X     T          7 US";
const std::string bare =
    "AK AKUTAN           PAUT               54 09N  165 36W   25   X                7 US";

TEST(ListFile, RealignsOnlyListsThatAreShiftedThroughout) {
    struct {
        const char* what;
        std::string text, realigned;
    } const rows[] = {
        {"every station line moves, with or without codes",
         "! c\n" + shifted + "\n" + bare + "\r\n" + shifted,
         "! c\n" + straight + "\n" + bare + "\r\n" + straight},
        {"headers, comments and headings stay",
         "!" + shifted + "\n\n" + shifted + "\nCD" + shifted + "\n" + shifted,
         "!" + shifted + "\n\n" + shifted + "\nCD" + shifted + "\n" + straight},
        {"short lines stay", shifted + "\n" + shifted.substr(0, 82),
         straight + "\n" + shifted.substr(0, 82)},
        {"one line in the other form keeps all", shifted + "\n" + straight,
         shifted + "\n" + straight},
        {"nothing", "", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(realignedList(row.text), row.realigned);
    }
}

} // namespace
} // namespace catalogue
