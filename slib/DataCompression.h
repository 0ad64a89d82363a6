// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <span>

/// Compresses blocks of bytes to zlib streams (RFC 1950), and decompresses these and gzip files
/// (RFC 1952). Any thread. An empty or null block is returned as the same object. Memory grows with
/// the output; if it runs out, the result is null.

/// Blocks that would grow beyond this many bytes are not decompressed.
inline constexpr std::size_t zlibInflateLimit = std::size_t{2} << 30;

/// The block compressed at the default level; null if zlib cannot start.
[[nodiscard]] std::shared_ptr<const platform::Data>
zlibDeflate(const std::shared_ptr<const platform::Data>& block);

/// The original block; null if the stream is corrupt, cut short or yields more than `limit` bytes.
/// Bytes after the end of the stream are ignored.
[[nodiscard]] std::shared_ptr<const platform::Data>
zlibInflate(const std::shared_ptr<const platform::Data>& block,
            std::size_t limit = zlibInflateLimit);

/// The same for the first member of a gzip file.
[[nodiscard]] std::shared_ptr<const platform::Data>
gzipInflate(const std::shared_ptr<const platform::Data>& file,
            std::size_t limit = zlibInflateLimit);

/// The same in pieces, for who does not need it all at once: hands what the file's first member
/// yields to `take`, in order. False if the file is corrupt, cut short or yields more than `limit`
/// bytes, or if memory runs out; what it yielded up to there has been handed on.
[[nodiscard]] bool gzipInflate(std::span<const std::byte> file, std::size_t limit,
                               const std::function<void(std::span<const std::byte>)>& take);
