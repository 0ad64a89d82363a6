// SPDX-License-Identifier: MIT
#pragma once

#include <zlib.h>

#include <stdexcept>
#include <string>

namespace support {

/// A text as a gzip file.
inline std::string gzip(std::string text) {
    constexpr int gzipFormat = MAX_WBITS + 16;
    constexpr int memory = 8;
    z_stream stream{};
    if (deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, gzipFormat, memory, Z_DEFAULT_STRATEGY) !=
        Z_OK) {
        throw std::runtime_error("no deflate");
    }
    std::string file(deflateBound(&stream, static_cast<uLong>(text.size())), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(text.data());
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(file.data());
    stream.avail_out = static_cast<uInt>(file.size());
    deflate(&stream, Z_FINISH);
    file.resize(stream.total_out);
    deflateEnd(&stream);
    return file;
}

} // namespace support
