// SPDX-License-Identifier: MIT
#include "map/Tiles.h"
#include "product/Addresses.h"

namespace map {

namespace {

/// The United States, one polygon for each part. Land borders are accurate to some kilometres; the
/// sea is included generously.
const std::vector<std::vector<platform::Location>> unitedStates{
    {{49.0, -123.3},   {49.0, -95.2},    {49.38, -95.15},  {48.72, -94.6},   {48.57, -93.0},
     {48.06, -91.5},   {48.2, -90.9},    {48.0, -89.5},    {48.3, -88.4},    {46.9, -84.9},
     {46.52, -84.5},   {46.08, -83.6},   {45.35, -82.55},  {43.57, -82.14},  {43.0, -82.42},
     {42.6, -82.5},    {42.33, -83.03},  {42.1, -83.13},   {41.7, -82.7},    {42.8, -79.0},
     {43.46, -79.15},  {43.63, -76.8},   {44.3, -76.15},   {45.0, -75.0},    {45.01, -71.5},
     {45.3, -70.9},    {45.9, -70.3},    {46.7, -70.0},    {47.46, -69.24},  {47.2, -68.94},
     {47.36, -68.3},   {47.08, -67.8},   {45.7, -67.8},    {45.17, -67.2},   {44.8, -66.95},
     {44.0, -67.0},    {41.0, -69.0},    {35.0, -74.5},    {30.0, -79.5},    {26.0, -79.5},
     {24.0, -81.0},    {24.2, -83.2},    {28.0, -86.0},    {28.3, -94.0},    {27.5, -96.5},
     {25.96, -96.9},   {25.87, -97.4},   {26.05, -98.2},   {26.4, -99.1},    {27.06, -99.46},
     {27.55, -99.51},  {28.7, -100.5},   {29.75, -101.4},  {29.85, -102.35}, {29.0, -103.2},
     {29.57, -104.4},  {30.6, -104.95},  {31.75, -106.45}, {31.78, -108.21}, {31.33, -108.22},
     {31.33, -111.05}, {32.49, -114.81}, {32.72, -114.72}, {32.53, -117.13}, {32.5, -120.0},
     {34.4, -121.2},   {40.4, -125.0},   {48.45, -125.0},  {48.25, -123.6},  {48.7, -123.2}},
    {{69.7, -141.0},  {60.32, -141.0}, {60.3, -139.1}, {58.92, -137.5}, {59.75, -135.5},
     {56.6, -131.85}, {55.95, -130.0}, {54.7, -130.6}, {54.5, -134.0},  {59.0, -140.5},
     {59.3, -148.0},  {56.0, -153.0},  {54.0, -160.0}, {51.0, -172.0},  {51.0, -179.9},
     {52.8, -179.9},  {57.5, -172.0},  {63.0, -172.5}, {65.6, -168.9},  {68.5, -167.5},
     {71.7, -157.0},  {70.4, -141.0}},
    {{18.5, -160.7}, {22.6, -160.7}, {22.6, -154.5}, {18.5, -154.5}},
    {{17.5, -67.6}, {18.7, -67.6}, {18.3, -64.7}, {17.5, -64.4}},
};

TileServer server(Imagery imagery, const product::addresses::TileService& service,
                  std::vector<std::vector<platform::Location>> coverage = {}) {
    return {imagery,
            std::string(service.address),
            service.highestZoom,
            std::string(service.credit),
            std::string(service.creditPage),
            std::move(coverage)};
}

} // namespace

std::vector<TileServer> worldTileServers() {
    using namespace product::addresses;
    return {server(Imagery::standard, standardTiles),
            server(Imagery::satellite, satelliteTilesOfTheUnitedStates, unitedStates),
            server(Imagery::satellite, satelliteTiles)};
}

} // namespace map
