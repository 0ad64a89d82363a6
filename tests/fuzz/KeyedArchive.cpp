// SPDX-License-Identifier: MIT
#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "slib/SLIB_Prefs.h"
#include "slib/SLibObject.h"
#include "slib/SLibRange.h"
#include "slib/slibTextPuncRecord.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/platform/ArchiveSamples.h"
#include "tests/support/FakeHost.h"

namespace {

const platform::ClassTable& allClasses() {
    static support::FakeHost host;
    static const platform::ClassTable classes = [] {
        platform::ClassTable table = samples::classes();
        table.add("SLibObject", SLibObject::initWithCoder);
        table.add("SLibRange", SLibRange::initWithCoder);
        table.add("SLIB_Prefs", SLIB_Prefs::initWithCoder);
        table.add("slibTextPuncRecord", [](platform::KeyedUnarchiver& coder) {
            return slibTextPuncRecord::initWithCoder(host.host, coder);
        });
        return table;
    }();
    return classes;
}

} // namespace

void feed(std::span<const std::byte> input) {
    const auto first = platform::KeyedUnarchiver::unarchive(input, allClasses());
    const auto written = platform::KeyedArchiver::archivedData(first.root);
    if (written) {
        require(platform::KeyedUnarchiver::unarchive(*written, allClasses()).fault.empty(),
                "an archive that was written can be read");
    }
}
