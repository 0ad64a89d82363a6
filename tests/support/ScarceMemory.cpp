// SPDX-License-Identifier: MIT
#include "tests/support/ScarceMemory.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

using support::Allocations;

thread_local Allocations Allocations::ofThisThread;

void* operator new(std::size_t size) {
    Allocations& ours = Allocations::ofThisThread;
    ours.hasRunOut = ours.hasRunOut || ours.left == 0;
    void* const block = ours.left == 0 ? nullptr : std::malloc(std::max<std::size_t>(size, 1));
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    ours.left -= ours.left == Allocations::plenty ? 0 : 1;
    ours.bytes += static_cast<std::ptrdiff_t>(malloc_usable_size(block));
    ours.mostBytes = std::max(ours.mostBytes, ours.bytes);
    return block;
}

void operator delete(void* block) noexcept {
    Allocations::ofThisThread.bytes -= static_cast<std::ptrdiff_t>(malloc_usable_size(block));
    std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
    operator delete(block);
}
