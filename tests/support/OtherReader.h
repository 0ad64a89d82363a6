// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

namespace support {

/// The object graph of the archive in a file as a reader of another make sees it:
/// Class:Ancestor{key=value}, @ before what stands in a slot of its own.
inline std::string readByPython(const std::filesystem::path& file) {
    const std::string command =
        "python3 '" NOSIG_SOURCE_DIR "/tests/support/read_archive.py' '" + file.string() + "' 2>&1";
    std::FILE* const pipe = ::popen(command.c_str(), "r");
    std::string output;
    for (int c = 0; pipe != nullptr && (c = std::fgetc(pipe)) != EOF;) {
        output += static_cast<char>(c);
    }
    return pipe != nullptr && ::pclose(pipe) == 0 ? output : "FAILED: " + output;
}

} // namespace support
