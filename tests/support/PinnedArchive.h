// SPDX-License-Identifier: MIT
#pragma once

#include "platform/archive/KeyedArchiver.h"
#include "platform/host/Files.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace support {

/// The path of an archive that the program wrote once and that never changes: users have such
/// files.
inline std::filesystem::path pinnedArchive(const char* name) {
    return std::filesystem::path(NOSIG_SOURCE_DIR "/tests/data/archives") / name;
}

/// Expects `root` to be written as the same bytes, with the same names of keys and classes.
inline void expectWrittenAs(const char* name, const platform::Value& root) {
    EXPECT_TRUE(platform::KeyedArchiver::archivedData(root) ==
                platform::readFile(pinnedArchive(name), 1 << 20))
        << "the bytes differ from those of " << name;
}

} // namespace support
