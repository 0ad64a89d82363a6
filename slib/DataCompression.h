// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"

#include <cstddef>
#include <memory>

/// Blocks of bytes as zlib streams (RFC 1950). Any thread. An empty or absent block comes back as
/// the same object, both ways. Memory grows with what has been made; where it runs out the result
/// is null.

/// Blocks that would grow beyond this many bytes are not inflated.
inline constexpr std::size_t zlibInflateLimit = std::size_t{2} << 30;

/// The block compressed at the default level; null when zlib cannot start.
[[nodiscard]] std::shared_ptr<const platform::Data>
zlibDeflate(const std::shared_ptr<const platform::Data>& block);

/// The block that was compressed; null when the stream is corrupt, cut short or makes more than
/// `limit` bytes. Bytes behind the end of the stream are ignored.
[[nodiscard]] std::shared_ptr<const platform::Data>
zlibInflate(const std::shared_ptr<const platform::Data>& block,
            std::size_t limit = zlibInflateLimit);
