// SPDX-License-Identifier: MIT
#include "platform/text/Words.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cstddef>
#include <cstdint>

namespace platform {

std::vector<std::string_view> wordsIn(std::string_view text) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::vector<std::string_view> words;
    std::size_t start = 0;
    for (std::size_t index = 0; index < text.size();) {
        const std::size_t before = index;
        UChar32 code = 0;
        U8_NEXT(bytes, index, text.size(), code);
        const bool isInWord =
            code >= 0 && (u_isalnum(code) != 0 || (U_GET_GC_MASK(code) & U_GC_M_MASK) != 0);
        if (!isInWord) {
            if (before > start) {
                words.push_back(text.substr(start, before - start));
            }
            start = index;
        }
    }
    if (start < text.size()) {
        words.push_back(text.substr(start));
    }
    return words;
}

} // namespace platform
