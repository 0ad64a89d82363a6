// SPDX-License-Identifier: MIT
#include "reports/Sessions.h"

#include "reports/Reader.h"

#include <algorithm>
#include <utility>

namespace reports {
namespace {

struct Collector final : Receiver {
    explicit Collector(const std::string& asked) : station(asked) {}

    void receive(Metar&& metar) override {
        const bool isAsked = metar.station == station;
        batch.metars.push_back({std::make_shared<const Metar>(std::move(metar)), isAsked});
    }
    void receive(Taf&& taf) override {
        batch.tafs.push_back(std::make_shared<const Taf>(std::move(taf)));
    }
    [[nodiscard]] bool has(Kind kind) const {
        return kind == Kind::metar ? std::ranges::any_of(batch.metars, &Batch::Entry::keepsHistory)
                                   : std::ranges::any_of(batch.tafs, [this](const auto& taf) {
                                         return taf->station == station;
                                     });
    }

    const std::string& station;
    Batch batch;
};

Answer::Ending endingOf(const platform::URLSessions::Ending& ending, Kind kind,
                        Collector& collector) {
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
    if (reader.finish() == Understanding::none) {
        // Reports that were complete before the reply broke off count.
        return collector.has(kind) ? Answer::Ending::whole : Answer::Ending::notUnderstood;
    }
    return collector.has(kind) ? Answer::Ending::whole : Answer::Ending::nothing;
}

Batch readReply(const Question& question, const platform::URLSessions::Ending& ending) {
    Collector collector(question.station);
    const Answer answer{ending.asked, endingOf(ending, question.kind, collector), ending.status};
    collector.batch.answers.push_back({question.station, question.kind, answer});
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
