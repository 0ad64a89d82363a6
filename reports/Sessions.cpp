// SPDX-License-Identifier: MIT
#include "reports/Sessions.h"

#include "reports/Reader.h"

#include <set>
#include <utility>

namespace reports {
namespace {

struct Collector final : Receiver {
    explicit Collector(const Question& question)
        : asked(question.stations.begin(), question.stations.end()), kind(question.kind) {}

    void receive(Metar&& metar) override {
        note(Kind::metar, metar.station);
        const bool isAsked = asked.contains(metar.station);
        batch.metars.push_back({std::make_shared<const Metar>(std::move(metar)), isAsked});
    }
    void receive(Taf&& taf) override {
        note(Kind::taf, taf.station);
        batch.tafs.push_back(std::make_shared<const Taf>(std::move(taf)));
    }
    void note(Kind found, const std::string& station) {
        if (found == kind && asked.contains(station)) {
            answered.insert(station);
        }
    }

    const std::set<std::string> asked;
    const Kind kind;
    /// The stations asked for of which there is a report.
    std::set<std::string> answered;
    Batch batch;
};

/// What the transfer brought for those stations asked for of which it has no report.
Answer::Ending endingOf(const platform::URLSessions::Ending& ending, Collector& collector) {
    constexpr int firstSuccess = 200;
    constexpr int lastSuccess = 299;
    if (!ending.data) {
        return Answer::Ending::notReached;
    }
    if (ending.status < firstSuccess || ending.status > lastSuccess) {
        return Answer::Ending::refused;
    }
    Reader reader(collector);
    reader.feed(*ending.data);
    return reader.finish() == Understanding::none ? Answer::Ending::notUnderstood
                                                  : Answer::Ending::nothing;
}

Batch readReply(const Question& question, const platform::URLSessions::Ending& ending) {
    Collector collector(question);
    const Answer::Ending others = endingOf(ending, collector);
    for (const std::string& station : question.stations) {
        // Reports that were complete before a reply broke off count.
        const bool isThere = collector.answered.contains(station);
        collector.batch.answers.push_back(
            {station,
             question.kind,
             {ending.asked, isThere ? Answer::Ending::whole : others, ending.status}});
    }
    return std::move(collector.batch);
}

} // namespace

Sessions::Sessions(platform::URLSessions& real, Store& store, QuestionIn questionIn)
    : real_(real), store_(store), questionIn_(std::move(questionIn)) {}

void Sessions::startDataTask(const Request& request, CompletionHandler handler) {
    const auto question = questionIn_(request.address);
    if (!question) {
        real_.startDataTask(request, std::move(handler));
        return;
    }
    Request watched = request;
    watched.ended = [this, question = *question, ended = request.ended](const Ending& ending) {
        store_.take(readReply(question, ending));
        if (ended) {
            ended(ending);
        }
    };
    store_.ask(*question);
    real_.startDataTask(watched, std::move(handler));
}

} // namespace reports
