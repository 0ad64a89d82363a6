// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/TemporaryFolder.h"

#include <zlib.h>

#include <string>

namespace support {

/// A text as a gzip file.
inline std::string gzip(const std::string& text) {
    const TemporaryFolder folder;
    gzFile file = gzopen((folder / "file").c_str(), "wb1");
    gzwrite(file, text.data(), static_cast<unsigned>(text.size()));
    gzclose(file);
    return folder.read("file");
}

} // namespace support
