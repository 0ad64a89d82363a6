// SPDX-License-Identifier: MIT
#include "reports/Cells.h"
#include "reports/Codec.h"
#include "reports/Description.h"
#include "reports/RawText.h"
#include "reports/Reader.h"
#include "tests/fuzz/Fuzz.h"

#include <vector>

namespace {

struct Kept final : reports::Receiver {
    void receive(reports::Metar&& metar) override { metars.push_back(std::move(metar)); }
    void receive(reports::Taf&& taf) override { tafs.push_back(std::move(taf)); }

    std::vector<reports::Metar> metars;
    std::vector<reports::Taf> tafs;
};

void check(const reports::Metar& metar) {
    const platform::Date now = metar.observed + std::chrono::minutes(10);
    (void)reports::reportAsText("", &metar, nullptr, now);
    (void)reports::windCell(metar.conditions.wind);
    (void)reports::ceilingCell(metar.conditions);
    (void)reports::metarInWords(metar);
    (void)reports::trendInWords(std::span(&metar, 1));
    require(reports::decodedMetar(reports::encoded(metar)) == metar, "a METAR is kept as it is");
}

void check(const reports::Taf& taf) {
    (void)reports::reportAsText("", nullptr, &taf, taf.begins);
    for (const auto& forecast : taf.forecasts) {
        (void)reports::forecastInWords(forecast);
    }
    require(reports::decodedTaf(reports::encoded(taf)) == taf, "a TAF is kept as it is");
}

} // namespace

void feed(std::span<const std::byte> reply) {
    std::size_t cut = 0;
    for (const std::byte byte : reply) {
        cut = (cut + std::to_integer<std::size_t>(byte)) % (reply.size() + 1);
    }
    Kept whole;
    reports::Reader reader(whole);
    reader.feed(reply);
    const auto understanding = reader.finish();

    Kept inPieces;
    reports::Reader slowReader(inPieces);
    slowReader.feed(reply.first(cut));
    slowReader.feed(reply.subspan(cut));
    require(slowReader.finish() == understanding && inPieces.metars == whole.metars &&
                inPieces.tafs == whole.tafs,
            "it does not matter how a reply arrives");
    for (const auto& metar : whole.metars) {
        check(metar);
    }
    for (const auto& taf : whole.tafs) {
        check(taf);
    }
}
