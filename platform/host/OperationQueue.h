// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <functional>
#include <memory>

namespace platform {

/// A piece of work that an operation queue runs once, on its worker thread.
class Operation {
public:
    virtual ~Operation() = default;
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    /// Must not throw, except that running out of memory ends the operation, and likewise its
    /// completion.
    virtual void main() = 0;

    /// Asks `main` to end early; its own contract says where it checks. Any thread.
    void cancel() { isCancelled_ = true; }
    [[nodiscard]] bool isCancelled() const { return isCancelled_; }

    /// Waiting operations of a higher priority run first; equal ones run in the order of adding.
    int queuePriority = 0;
    /// Runs on the worker thread after `main`, and is then released. May be empty.
    std::function<void()> completionBlock;

protected:
    Operation() = default;

private:
    std::atomic<bool> isCancelled_ = false;
};

/// Runs operations one after another on a thread of its own, which starts with the first one. All
/// members may be called on any thread but the worker's own. The destructor may run there too, so
/// that an operation or its completion may hold the last reference to its queue.
class OperationQueue {
public:
    OperationQueue();
    /// Waits for the running operation, unless on the worker's own thread, and drops those that
    /// have not begun.
    ~OperationQueue();
    OperationQueue(const OperationQueue&) = delete;
    OperationQueue& operator=(const OperationQueue&) = delete;

    /// The queue shares ownership of the operation until it has completed. Null is ignored.
    void addOperation(std::shared_ptr<Operation> operation);
    /// Adds an operation that only calls a function.
    void addWork(std::function<void()> work);
    void waitUntilAllOperationsAreFinished();
    [[nodiscard]] bool isIdle() const;

private:
    struct State;
    std::shared_ptr<State> state_;
};

} // namespace platform
