// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/// Every address outside this machine that the program knows.
namespace product::addresses {

/// The weather data server, unless the user names another one.
inline constexpr std::string_view dataServerHost = "aviationweather.gov";
/// The path at which a data server answers in its classic form.
inline constexpr std::string_view dataServerPath = "/adds/dataserver_current/httpparam";
/// The paths at which `dataServerHost` answers METAR and TAF requests since it retired that one.
inline constexpr std::string_view metarPath = "/api/data/metar";
inline constexpr std::string_view tafPath = "/api/data/taf";
/// The path of its table of stations: JSON, compressed, renewed daily.
inline constexpr std::string_view stationTablePath = "/data/cache/stations.cache.json.gz";

/// The files of every station's last METAR and TAF, compressed with gzip.
inline constexpr std::string_view worldMetarsPath = "/data/cache/metars.cache.xml.gz";
inline constexpr std::string_view worldTafsPath = "/data/cache/tafs.cache.xml.gz";

/// The host of the aeronautical charts, over https.
inline constexpr std::string_view chartHost = "skyvector.com";

/// The project's mail address and home page. Neither exists yet: names that end in "example" are
/// reserved and never resolve (RFC 2606). Once real ones replace them here, the help page on the
/// window and the release notes must stop calling them stand-ins.
inline constexpr std::string_view feedback = "feedback@nosig.example";
inline constexpr std::string_view productPage = "http://nosig.example/";

/// A server of map tiles, 256 pixels wide, in Web Mercator. In the address "{z}", "{x}" and "{y}"
/// stand for the zoom level and the tile's column and row, counted from the upper left.
struct TileService {
    std::string_view address;
    int highestZoom = 0;
    /// The credit that the service's licence requires beside its imagery, and the page with the
    /// details.
    std::string_view credit;
    std::string_view creditPage;
};

inline constexpr TileService standardTiles{"https://tile.openstreetmap.org/{z}/{x}/{y}.png", 19,
                                           "© OpenStreetMap contributors",
                                           "https://www.openstreetmap.org/copyright"};
/// The mosaic of 2016 is under CC BY 4.0; later ones are not free for every use.
inline constexpr TileService satelliteTiles{
    "https://tiles.maps.eox.at/wmts/1.0.0/s2cloudless_3857/default/g/{z}/{y}/{x}.jpg", 14,
    "Sentinel-2 cloudless – https://s2maps.eu by EOX IT Services GmbH "
    "(Contains modified Copernicus Sentinel data 2016 & 2017), CC BY 4.0",
    "https://s2maps.eu"};
/// Public domain.
inline constexpr TileService satelliteTilesOfTheUnitedStates{
    "https://basemap.nationalmap.gov/arcgis/rest/services/USGSImageryOnly/MapServer/tile/{z}/{y}/"
    "{x}",
    16, "Imagery: U.S. Geological Survey, The National Map",
    "https://www.usgs.gov/programs/national-geospatial-program/national-map"};

} // namespace product::addresses
