// SPDX-License-Identifier: MIT
#include "tests/support/ScarceMemory.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr auto plenty = std::numeric_limits<std::size_t>::max();

thread_local std::size_t allocationsLeft = plenty;
thread_local bool ranOut = false;
// Memory allocated here but freed by another thread stays counted; the tests hand over little.
thread_local std::ptrdiff_t bytesNow = 0;
thread_local std::ptrdiff_t bytesAtMost = 0;

} // namespace

void* operator new(std::size_t size) {
    if (allocationsLeft == 0) {
        ranOut = true;
        throw std::bad_alloc();
    }
    allocationsLeft -= allocationsLeft == plenty ? 0 : 1;
    void* const block = std::malloc(std::max<std::size_t>(size, 1));
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    bytesNow += static_cast<std::ptrdiff_t>(malloc_usable_size(block));
    bytesAtMost = std::max(bytesAtMost, bytesNow);
    return block;
}

void operator delete(void* block) noexcept {
    bytesNow -= static_cast<std::ptrdiff_t>(malloc_usable_size(block));
    std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
    operator delete(block);
}

namespace support {

ScarceMemory::ScarceMemory(std::size_t first) {
    ranOut = false;
    allocationsLeft = first;
}

ScarceMemory::~ScarceMemory() {
    allocationsLeft = plenty;
}

bool ScarceMemory::hasRunOut() {
    return ranOut;
}

PeakMemory::PeakMemory() {
    bytesNow = 0;
    bytesAtMost = 0;
}

std::size_t PeakMemory::bytes() {
    return static_cast<std::size_t>(bytesAtMost);
}

} // namespace support
