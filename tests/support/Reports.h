// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/// Replies of the data server, made from the identifier of a station, so that a mix-up shows.
namespace support {

inline std::string metarRaw(const std::string& station) {
    return "METAR " + station + " 010000Z 23012G22KT 2SM BR OVC008 04/03 A2992 RMK OF" + station;
}

/// A reply with an IFR report of midnight, 1 March 2024.
inline std::string metarReply(const std::string& station) {
    return "<response><data><METAR><raw_text>" + metarRaw(station) + "</raw_text><station_id>" +
           station +
           "</station_id><observation_time>2024-03-01T00:00:00Z</observation_time>"
           "<temp_c>4</temp_c><wind_dir_degrees>230</wind_dir_degrees>"
           "<wind_speed_kt>12</wind_speed_kt><wind_gust_kt>22</wind_gust_kt>"
           "<visibility_statute_mi>2</visibility_statute_mi>"
           "<sky_condition sky_cover=\"OVC\" cloud_base_ft_agl=\"800\"/>"
           "<flight_category>IFR</flight_category></METAR></data></response>";
}

/// A reply with the TAF of that day. The text, but no element, tells of a change.
inline std::string tafReply(const std::string& station, const char* change) {
    return "<response><data><TAF><raw_text>TAF " + station +
           " 292320Z 0100/0200 24012KT P6SM SCT040 " + change + "</raw_text><station_id>" +
           station +
           "</station_id><issue_time>2024-02-29T23:20:00Z</issue_time>"
           "<valid_time_from>2024-03-01T00:00:00Z</valid_time_from>"
           "<valid_time_to>2024-03-02T00:00:00Z</valid_time_to>"
           "<forecast><fcst_time_from>2024-03-01T00:00:00Z</fcst_time_from>"
           "<fcst_time_to>2024-03-02T00:00:00Z</fcst_time_to>"
           "<visibility_statute_mi>6+</visibility_statute_mi>"
           "<sky_condition sky_cover=\"SCT\" cloud_base_ft_agl=\"4000\"/></forecast>"
           "</TAF></data></response>";
}

/// One reply with the reports of several.
inline std::string joined(const std::vector<std::string>& replies) {
    const std::string head = "<response><data>";
    const std::string foot = "</data></response>";
    std::string all = head;
    for (const std::string& reply : replies) {
        all += reply.substr(head.size(), reply.size() - head.size() - foot.size());
    }
    return all + foot;
}

} // namespace support
