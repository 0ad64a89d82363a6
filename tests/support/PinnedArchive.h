// SPDX-License-Identifier: MIT
#pragma once

#include "platform/archive/KeyedArchiver.h"
#include "platform/host/Files.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace support {

/// An archive that this program made once and that stays as it is: what users' files look like.
inline std::filesystem::path pinnedArchive(const char* name) {
    return std::filesystem::path(NOSIG_SOURCE_DIR "/tests/data/archives") / name;
}

/// Whether `root` is written as it was then, keys and names of classes included.
inline void expectWrittenAs(const char* name, const platform::Value& root) {
    EXPECT_TRUE(platform::KeyedArchiver::archivedData(root) ==
                platform::readFile(pinnedArchive(name), 1 << 20))
        << "other bytes than in " << name;
}

} // namespace support
