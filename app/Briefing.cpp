// SPDX-License-Identifier: MIT
#include "app/Briefing.h"

#include "catalogue/StationCells.h"
#include "platform/text/Text.h"
#include "weather/DataServerRequests.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

namespace app {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<reports::BriefingLine>;
using LineKind = reports::BriefingLine::Kind;

constexpr const char* setting = "briefing";
/// Ages are told in minutes, and none is to be told a minute late.
constexpr auto ageStep = 20s;
/// A text of another kind, pasted by mistake, would fill the page with its words.
constexpr std::size_t mostWordsNamed = 20;
constexpr std::int64_t longestWordNamed = 20;

std::string leftOutInWords(const std::vector<std::string>& words) {
    std::string text = "Left out, since they name no station: ";
    for (std::size_t i = 0; i < std::min(words.size(), mostWordsNamed); ++i) {
        const std::string_view start = platform::wholeCharacterPrefix(words[i], longestWordNamed);
        text += fmt::format("{}{}{}", i > 0 ? ", " : "", start,
                            start.size() < words[i].size() ? "…" : "");
    }
    return words.size() > mostWordsNamed
               ? fmt::format("{} and {} more.", text, words.size() - mostWordsNamed)
               : text + ".";
}

void addWords(Lines& lines, std::string words) {
    lines.push_back({LineKind::words, std::move(words)});
}

void addWordsOn(Lines& lines, const catalogue::NamedStations& list) {
    if (!list.leftOut.empty()) {
        addWords(lines, leftOutInWords(list.leftOut));
    }
    if (list.beyond > 0) {
        addWords(lines, fmt::format("Only the first {} stations are here; {} more are left out.",
                                    catalogue::NamedStations::mostStations, list.beyond));
    }
}

void addHead(Lines& lines, const catalogue::NamedStation& named) {
    const auto& [identifier, code, station] = named;
    lines.push_back(
        {LineKind::station, station ? catalogue::stationDescription(*station) : identifier});
    if (!station) {
        addWords(lines, fmt::format("{} is not in the catalogue.", identifier));
    }
    if (!code.empty()) {
        addWords(lines, fmt::format("{} is the IATA code of {}.", code, identifier));
    }
}

} // namespace

Briefing::Briefing(platform::Host& host, reports::Store& store, Sources sources)
    : host_(host),
      store_(store),
      sources_(std::move(sources)),
      words_("Type ICAO identifiers or IATA codes, and press Return."),
      minutes_(host.timers.scheduleRepeating(ageStep, [this] { changed(); })),
      storeChanges_(host.notificationCenter.addObserver(
          reports::Store::didChange,
          [this, &host, stale = std::weak_ptr(isStale_)](const platform::Notification&) {
              // Replies come in groups; the page shows all that is there when its turn comes.
              const auto isStale = stale.lock();
              if (isStale && !isStale->exchange(true)) {
                  host.mainThread.perform(isStale, [this] {
                      *isStale_ = false;
                      changed();
                  });
              }
          })) {
    const auto kept = host.userDefaults.objectForKey(setting);
    if (const auto* text = std::get_if<std::string>(&kept)) {
        text_ = *text;
    }
}

void Briefing::show(std::string text) {
    const auto catalogue = sources_.catalogue();
    text_ = std::move(text);
    host_.userDefaults.setObject(text_, setting);
    showList(catalogue::namedStations(text_, catalogue.get()), "No station is listed.");
}

void Briefing::showFavorites() {
    std::string identifiers;
    for (const auto& station : sources_.favorites()) {
        identifiers += station->ICAO.value_or("") + " ";
    }
    if (const std::string_view text = platform::trimmed(identifiers); !text.empty()) {
        show(std::string(text));
    } else {
        showList({}, "There are no favorites.");
    }
}

void Briefing::showList(catalogue::NamedStations list, std::string words) {
    list_ = std::move(list);
    words_ = std::move(words);
    *superseded_ = true;
    superseded_ = std::make_shared<std::atomic<bool>>(false);
    ask(reports::Kind::metar);
    ask(reports::Kind::taf);
    changed();
}

void Briefing::ask(reports::Kind kind) {
    const platform::Date now = host_.clock.now();
    std::vector<std::string> missing;
    for (const auto& named : list_.stations) {
        if (reports::isMissing(kind, known(named.identifier), now)) {
            missing.push_back(named.identifier);
        }
    }
    if (!missing.empty()) {
        // The sessions read the reply into the store, which tells of it.
        host_.urlSessions.startDataTask(
            {.address = weather::listRequest(host_, kind, missing), .superseded = superseded_},
            [](const std::optional<platform::Data>&) {});
    }
}

reports::Known Briefing::known(const std::string& station) const {
    return {store_.reportsOf(station), store_.reportsOf(reports::allStations)};
}

std::vector<reports::BriefingLine> Briefing::page() const {
    if (!hasStations() && list_.leftOut.empty()) {
        return {{LineKind::words, words_}};
    }
    Lines lines;
    addWords(lines, std::string(reports::noBriefing));
    addWordsOn(lines, list_);
    const std::string server = weather::dataServer(host_);
    const platform::Date now = host_.clock.now();
    for (const auto& named : list_.stations) {
        addHead(lines, named);
        std::ranges::move(
            reports::briefingOf(named.identifier, known(named.identifier), server, now),
            std::back_inserter(lines));
    }
    return lines;
}

std::string Briefing::asText() const {
    return reports::briefingAsText(page(), host_.clock.now());
}

std::string Briefing::time() const {
    return reports::timeOfBriefing(host_.clock.now());
}

} // namespace app
