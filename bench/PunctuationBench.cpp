// SPDX-License-Identifier: MIT
#include "slib/slibTextPuncRecord.h"
#include "tests/support/FakeHost.h"

#include <benchmark/benchmark.h>

#include <array>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// 10 MB of sentences in an order that no branch predictor can learn.
const std::string& prose() {
    static const std::string text = [] {
        constexpr std::array<std::string_view, 6> sentences{
            "The wind had gone round to the north-west by morning, and the cloud lay in long bars "
            "over the ridge. ",
            "\"Shall we wait?\" she asked; nobody answered. ",
            "They'd seen worse in March: sleet, a low ceiling, gusts from every side (or so it "
            "seemed), and no light on the field.\n",
            "He wrote the figures down, one under the other, and drew a line. ",
            "What the instrument said and what the sky did were two different things that day. ",
            "Fog! It never lasted beyond ten, the old hands said, but the old hands had been wrong "
            "before.\n\n",
        };
        std::mt19937 random; // NOLINT: the same text in every run
        std::string made;
        while (made.size() < 10'000'000) {
            made += sentences[random() % sentences.size()];
        }
        return made;
    }();
    return text;
}

void scanPunctuation(benchmark::State& state) {
    support::FakeHost fake;
    const auto words = std::make_shared<const std::string>(prose());
    for (auto _ : state) {
        const auto record = slibTextPuncRecord::init(fake.host);
        const auto operation = slibTextPuncOperation::initWithPtr_andLen(
            fake.host, std::shared_ptr<const char>(words, words->data()), words->size());
        operation->setPuncRec(record);
        operation->main();
        benchmark::DoNotOptimize(record->count());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(words->size()));
}
BENCHMARK(scanPunctuation)->Unit(benchmark::kMillisecond);

/// The yardstick for the scan: the least code that finds the same marks.
void plainTableLoop(benchmark::State& state) {
    const std::string& text = prose();
    std::array<bool, 256> isMark{};
    for (const char mark : std::string_view("\r!\"(),.:;?{}")) {
        isMark[static_cast<unsigned char>(mark)] = true;
    }
    for (auto _ : state) {
        std::vector<slibPuncToken> tokens;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (isMark[static_cast<unsigned char>(text[i])]) {
                tokens.push_back({static_cast<signed char>(text[i]),
                                  static_cast<std::int64_t>(text.size() - i)});
            }
        }
        benchmark::DoNotOptimize(tokens);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(plainTableLoop)->Unit(benchmark::kMillisecond);

} // namespace
