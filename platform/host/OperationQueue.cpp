// SPDX-License-Identifier: MIT
#include "platform/host/OperationQueue.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <new>
#include <thread>
#include <utility>

namespace platform {

struct OperationQueue::State {
    mutable std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::shared_ptr<Operation>> waiting;
    bool isRunning = false;
    bool isEnding = false;
    std::thread worker;

    [[nodiscard]] bool isIdle() const { return waiting.empty() && !isRunning; }

    void work() {
        std::unique_lock lock(mutex);
        while (true) {
            changed.wait(lock, [this] { return isEnding || !waiting.empty(); });
            if (isEnding) {
                return;
            }
            const auto next = std::ranges::max_element(
                waiting, {}, [](const auto& operation) { return operation->queuePriority; });
            auto operation = *next;
            waiting.erase(next);
            isRunning = true;
            lock.unlock();
            // Running out of memory ends the operation, not the program.
            try {
                operation->main();
            } catch (const std::bad_alloc&) {
            }
            try {
                if (const auto completed = std::exchange(operation->completionBlock, {})) {
                    completed();
                }
            } catch (const std::bad_alloc&) {
            }
            operation.reset();
            lock.lock();
            isRunning = false;
            changed.notify_all();
        }
    }
};

OperationQueue::OperationQueue() : state_(std::make_shared<State>()) {}

OperationQueue::~OperationQueue() {
    {
        const std::scoped_lock lock(state_->mutex);
        state_->isEnding = true;
        state_->changed.notify_all();
    }
    if (state_->worker.get_id() == std::this_thread::get_id()) {
        state_->worker.detach();
    } else if (state_->worker.joinable()) {
        state_->worker.join();
    }
}

void OperationQueue::addOperation(std::shared_ptr<Operation> operation) {
    if (!operation) {
        return;
    }
    const std::scoped_lock lock(state_->mutex);
    state_->waiting.push_back(std::move(operation));
    if (!state_->worker.joinable()) {
        state_->worker = std::thread([state = state_] { state->work(); });
    }
    state_->changed.notify_all();
}

void OperationQueue::addWork(std::function<void()> work) {
    class Work final : public Operation {
    public:
        explicit Work(std::function<void()> work) : work_(std::move(work)) {}
        void main() override { work_(); }

    private:
        std::function<void()> work_;
    };
    addOperation(std::make_shared<Work>(std::move(work)));
}

void OperationQueue::waitUntilAllOperationsAreFinished() {
    std::unique_lock lock(state_->mutex);
    state_->changed.wait(lock, [this] { return state_->isIdle(); });
}

bool OperationQueue::isIdle() const {
    const std::scoped_lock lock(state_->mutex);
    return state_->isIdle();
}

} // namespace platform
