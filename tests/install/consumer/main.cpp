// SPDX-License-Identifier: MIT
#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "slib/DataCompression.h"
#include "slib/SLibRange.h"

#include <cstdio>

/// Archives a range, compresses the archive, reads all of that back and prints it.
int main() {
    const auto range = SLibRange::initWithValues_rangeEnd_startSpan(41, 42, 43);
    range->setSLIBName("a range");
    const auto archive = platform::KeyedArchiver::archivedData(range);
    if (!archive) {
        return 1;
    }
    const auto bytes = zlibInflate(zlibDeflate(std::make_shared<platform::Data>(*archive)));
    if (!bytes) {
        return 1;
    }
    platform::ClassTable classes;
    classes.add("SLibRange", SLibRange::initWithCoder);
    const auto root = platform::KeyedUnarchiver::unarchive(*bytes, classes).root;
    const auto read = platform::objectOf<SLibRange>(root);
    if (!read) {
        return 1;
    }
    std::printf("%s: %d %d %d\n", read->name()->c_str(), int(read->start), int(read->end),
                int(read->span));
}
