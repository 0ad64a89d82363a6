// SPDX-License-Identifier: MIT
#pragma once

#include "platform/views/Drawing.h"
#include "slib/SupportLibCat.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Text helpers: drawing, number codes, coordinates.
namespace SuportLib {

/// Draws in a colour, in the canvas's own font.
void drawAtPoint_inColor(platform::Canvas& canvas, std::string_view text, platform::Point point,
                         const platform::Color& color);
/// Draws in a colour and the system font; the size is in points.
void drawAtPoint_withSize_inColor(platform::Canvas& canvas, std::string_view text,
                                  platform::Point point, int size, const platform::Color& color);

/// Kept: other programs store it this way. The code in decimal digits, not as four characters.
[[nodiscard]] std::string OSTypeToString(std::uint32_t code);
/// The low 32 bits of the whole number that the text begins with; 0 if there is none.
[[nodiscard]] std::uint32_t stringToOStype(std::string_view text);
/// Text of one character: empty for 0, U+FFFD for anything but ASCII.
[[nodiscard]] std::string stringFromChar(char character);
/// Kept: reports end in line ends, so the end is trimmed too, whatever the name says. The text
/// without leading and trailing white space and line ends; empty if absent.
[[nodiscard]] std::string removeLeadingSpaces(const std::optional<std::string>& text);

/// A coordinate, given in degrees, as degrees, minutes and seconds without leading zeros:
/// `38°30'0"N`. Fractions of a second are dropped.
/// Kept: users know it this way, and the help says so. The letter follows the sign of the whole
/// degrees, so that anything between -1 and 0 is "N" or "E".
[[nodiscard]] std::string latitudeString(double latitude);
/// Kept: it follows a latitude. Begins with a blank.
[[nodiscard]] std::string longitudeString(double longitude);
/// Both, with one blank between them and none in front.
[[nodiscard]] std::string fullCoordinateString_and(double latitude, double longitude);

/// The folder helpers belong to this namespace too.
using SupportLibCat::createOrReturnAppSupportFolder;
using SupportLibCat::createOrReturnDocumentsFolder;
using SupportLibCat::fileNameInAppSupport;
using SupportLibCat::fileNameInBundle;
using SupportLibCat::fileNameInDocDirectory;

} // namespace SuportLib
