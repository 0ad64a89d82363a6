// SPDX-License-Identifier: MIT
#include "slib/slibItemID.h"

#include "platform/text/Text.h"

slibTextBlock::slibTextBlock(std::string_view text) : text_(platform::repairedUtf8(text)) {
    bytes_.reserve(text_.size());
    for (const char unit : text_) {
        const auto byte = static_cast<unsigned char>(unit);
        if (platform::isAscii(unit)) {
            bytes_ += unit;
        } else if (byte >= 0xC0) { // the first byte of a longer character
            bytes_ += '?';
        }
    }
}

slibTextBlock slibTextBlock::fromBytes(std::string_view bytes) {
    slibTextBlock block;
    block.bytes_ = bytes;
    block.text_ = platform::utf8FromMacRoman(bytes);
    return block;
}
