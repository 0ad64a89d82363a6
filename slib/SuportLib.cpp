// SPDX-License-Identifier: MIT
#include "slib/SuportLib.h"

#include "platform/text/Text.h"
#include "platform/values/Value.h"

#include <fmt/format.h>

#include <cstdlib>

namespace SuportLib {
namespace {

std::string coordinateText(double degrees, char positive, char negative) {
    constexpr int secondsPerDegree = 3600;
    const std::int32_t seconds = platform::wholeNumber32(degrees * secondsPerDegree);
    // The letter follows the sign of these whole degrees; half a degree south has lost its sign
    // here.
    const int wholeDegrees = seconds / secondsPerDegree;
    const int rest = std::abs(seconds - wholeDegrees * secondsPerDegree);
    return fmt::format("{}°{}'{}\"{}", std::abs(wholeDegrees), rest / 60, rest % 60,
                       wholeDegrees < 0 ? negative : positive);
}

} // namespace

void drawAtPoint_inColor(platform::Canvas& canvas, std::string_view text, platform::Point point,
                         const platform::Color& color) {
    canvas.drawText(text, point, {std::nullopt, color});
}

void drawAtPoint_withSize_inColor(platform::Canvas& canvas, std::string_view text,
                                  platform::Point point, int size, const platform::Color& color) {
    platform::Font system;
    system.size = size;
    canvas.drawText(text, point, {system, color});
}

std::string OSTypeToString(std::uint32_t code) {
    return fmt::format("{}", code);
}

std::uint32_t stringToOStype(std::string_view text) {
    return static_cast<std::uint32_t>(platform::integerOf(std::string(text)));
}

std::string stringFromChar(char character) {
    return platform::textOfCode(character);
}

std::string removeLeadingSpaces(const std::optional<std::string>& text) {
    return text ? std::string(platform::trimmed(*text)) : std::string();
}

std::string latitudeString(double latitude) {
    return coordinateText(latitude, 'N', 'S');
}

std::string longitudeString(double longitude) {
    return ' ' + coordinateText(longitude, 'E', 'W');
}

std::string fullCoordinateString_and(double latitude, double longitude) {
    return latitudeString(latitude) + longitudeString(longitude);
}

} // namespace SuportLib
