// SPDX-License-Identifier: MIT
#include "slib/DataCompression.h"

#define ZLIB_CONST // zlib promises not to write to its input
#include <zlib.h>

#include <algorithm>
#include <limits>
#include <new>
#include <span>
#include <utility>

namespace {

using Block = std::shared_ptr<const platform::Data>;

/// zlib's figure for a gzip file.
constexpr int gzipFormat = MAX_WBITS + 16;

/// zlib counts bytes in 32 bits, so a longer block is processed in pieces.
constexpr std::size_t longestPiece = std::numeric_limits<uInt>::max();

/// A zlib stream, ended on destruction.
template <int (*end)(z_stream*)>
class Stream {
public:
    Stream() = default;
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    ~Stream() { end(&stream_); }
    z_stream& operator*() { return stream_; }

private:
    z_stream stream_{};
};

/// Gives zlib the next piece of input once it has used up the last one.
void feed(z_stream& stream, std::span<const std::byte>& input) {
    if (stream.avail_in == 0) {
        const auto piece = input.first(std::min(input.size(), longestPiece));
        stream.next_in = reinterpret_cast<const Bytef*>(piece.data());
        stream.avail_in = static_cast<uInt>(piece.size());
        input = input.subspan(piece.size());
    }
}

/// Gives zlib the free part of the output, runs `code` and adds the number of bytes written to
/// `produced`.
template <typename Code>
int produce(z_stream& stream, platform::Data& output, std::size_t& produced, Code code) {
    const auto room = static_cast<uInt>(std::min(output.size() - produced, longestPiece));
    stream.next_out = reinterpret_cast<Bytef*>(output.data() + produced);
    stream.avail_out = room;
    const int result = code();
    produced += room - stream.avail_out;
    return result;
}

Block cut(platform::Data output, std::size_t length) {
    output.resize(length);
    output.shrink_to_fit();
    return std::make_shared<const platform::Data>(std::move(output));
}

/// `format` is zlib's figure for the longest window and the kind of stream.
Block inflated(const Block& block, std::size_t limit, int format) try {
    if (!block || block->empty()) {
        return block;
    }
    Stream<inflateEnd> owner;
    z_stream& stream = *owner;
    if (inflateInit2(&stream, format) != Z_OK) {
        return nullptr;
    }
    // One byte beyond the limit shows that a block exceeds it.
    const std::size_t mostRoom = limit + 1;
    const std::size_t half = block->size() / 2;
    platform::Data output(std::min(block->size() + half, mostRoom));
    std::size_t produced = 0;
    std::span<const std::byte> input(*block);
    int result = Z_OK;
    while (result == Z_OK && produced < mostRoom) {
        if (produced == output.size()) {
            output.resize(std::min(produced + half, mostRoom));
        }
        feed(stream, input);
        result = produce(stream, output, produced, [&] { return inflate(&stream, Z_SYNC_FLUSH); });
    }
    return result == Z_STREAM_END && produced <= limit ? cut(std::move(output), produced) : nullptr;
} catch (const std::bad_alloc&) {
    return nullptr;
}

} // namespace

Block zlibDeflate(const Block& block) try {
    if (!block || block->empty()) {
        return block;
    }
    constexpr std::size_t growth = 16384;
    Stream<deflateEnd> owner;
    z_stream& stream = *owner;
    if (deflateInit(&stream, Z_DEFAULT_COMPRESSION) != Z_OK) {
        return nullptr;
    }
    platform::Data output(growth);
    std::size_t produced = 0;
    std::span<const std::byte> input(*block);
    do {
        if (produced == output.size()) {
            output.resize(produced + growth);
        }
        feed(stream, input);
        const int flush = input.empty() ? Z_FINISH : Z_NO_FLUSH;
        produce(stream, output, produced, [&] { return deflate(&stream, flush); });
    } while (stream.avail_out == 0 || !input.empty());
    return cut(std::move(output), produced);
} catch (const std::bad_alloc&) {
    return nullptr;
}

Block zlibInflate(const Block& block, std::size_t limit) {
    return inflated(block, limit, MAX_WBITS);
}

Block gzipInflate(const Block& block, std::size_t limit) {
    return inflated(block, limit, gzipFormat);
}

bool gzipInflate(std::span<const std::byte> file, std::size_t limit,
                 const std::function<void(std::span<const std::byte>)>& take) try {
    constexpr std::size_t pieceSize = 65536;
    Stream<inflateEnd> owner;
    z_stream& stream = *owner;
    if (inflateInit2(&stream, gzipFormat) != Z_OK) {
        return false;
    }
    platform::Data piece(pieceSize);
    std::size_t total = 0;
    int result = Z_OK;
    while (result == Z_OK && total <= limit) {
        feed(stream, file);
        std::size_t produced = 0;
        result = produce(stream, piece, produced, [&] { return inflate(&stream, Z_SYNC_FLUSH); });
        total += produced;
        if (total <= limit) {
            take(std::span(piece).first(produced));
        }
    }
    return result == Z_STREAM_END && total <= limit;
} catch (const std::bad_alloc&) {
    return false;
}
