// SPDX-License-Identifier: MIT
#include "slib/SLibObject.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

/// All objects of a round live until its end; identifiers issued in earlier rounds stay issued.
void makeMillionObjects(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<std::shared_ptr<SLibObject>> objects;
        for (int i = 0; i < 1'000'000; ++i) {
            objects.push_back(SLibObject::initWithName("name"));
        }
        benchmark::DoNotOptimize(objects);
    }
}
BENCHMARK(makeMillionObjects)->Unit(benchmark::kMillisecond);

} // namespace
