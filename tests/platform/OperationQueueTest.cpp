// SPDX-License-Identifier: MIT
#include "platform/host/OperationQueue.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <future>
#include <new>
#include <string>
#include <thread>

namespace platform {
namespace {

struct Step final : Operation {
    explicit Step(std::function<void()> step) : run(std::move(step)) {}
    void main() override { run(); }
    std::function<void()> run;
};

TEST(OperationQueue, RunsByPriorityThenInOrderEachFollowedByItsCompletion) {
    OperationQueue queue;
    std::string order;
    std::promise<void> mayStart;
    queue.addOperation(std::make_shared<Step>([&] { mayStart.get_future().wait(); }));
    for (const auto& [name, priority] : {std::pair{'a', 0}, {'b', 0}, {'c', 4}, {'d', -4}}) {
        auto step = std::make_shared<Step>([&order, name = name] { order += name; });
        step->queuePriority = priority;
        step->completionBlock = [&order] { order += '.'; };
        queue.addOperation(step);
    }
    EXPECT_FALSE(queue.isIdle());
    mayStart.set_value();
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(order, "c.a.b.d.");
    EXPECT_TRUE(queue.isIdle());
}

TEST(OperationQueue, EndsAfterTheRunningOperationAndDropsTheRest) {
    // The later operation may or may not run. What matters is that nothing touches its flag once
    // the queue is destroyed; ThreadSanitizer checks that.
    bool hasEnded = false;
    bool hasRunLater = false;
    {
        OperationQueue queue;
        std::promise<void> started;
        queue.addOperation(nullptr);
        queue.addOperation(std::make_shared<Step>([&] {
            started.set_value();
            std::this_thread::yield();
            hasEnded = true;
        }));
        started.get_future().wait();
        queue.addOperation(std::make_shared<Step>([&] { hasRunLater = true; }));
    }
    hasRunLater = true;
    EXPECT_TRUE(hasEnded);
}

TEST(OperationQueue, AnOperationThatRunsOutOfMemoryEndsWithoutTheOthers) {
    OperationQueue queue;
    int completed = 0;
    const auto runOut = [] { throw std::bad_alloc(); };
    const auto complete = [&] { ++completed; };
    const std::pair<std::function<void()>, std::function<void()>> steps[] = {
        {runOut, complete}, {[] {}, runOut}, {[] {}, complete}};
    for (const auto& [step, then] : steps) {
        const auto operation = std::make_shared<Step>(step);
        operation->completionBlock = then;
        queue.addOperation(operation);
    }
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(completed, 2);
}

TEST(OperationQueue, MayBeDestroyedOnItsOwnThread) {
    auto queue = std::make_shared<OperationQueue>();
    const std::weak_ptr<OperationQueue> watched = queue;
    std::promise<void> mayStart;
    auto step = std::make_shared<Step>([&] { mayStart.get_future().wait(); });
    std::weak_ptr<Operation> operation = step;
    step->completionBlock = [queue] {};
    queue->addOperation(std::move(step));
    queue.reset();
    EXPECT_FALSE(watched.expired());
    mayStart.set_value();
    support::waitUntil("the end of the queue",
                       [&] { return watched.expired() && operation.expired(); });
}

} // namespace
} // namespace platform
