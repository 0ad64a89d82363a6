// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace platform {

/// Hears what a document consists of, in its order. Texts are UTF-8 and last for the call; an
/// element is told by its local name, whatever namespace it is in.
class XMLParserDelegate {
public:
    virtual ~XMLParserDelegate() = default;
    virtual void parser_didStartElement(std::string_view name) = 0;
    /// All character data between two tags at once, character references, entities and CDATA
    /// sections put in their places. Never empty.
    virtual void parser_foundCharacters(std::string_view text) = 0;
    virtual void parser_didEndElement(std::string_view name) = 0;
};

/// Reads a whole document (XML 1.0 with namespaces) on the caller's thread. A fault ends the
/// parse after what stands before it was told, and gives false.
///
/// Nothing outside the document is ever loaded. Entities that swell it far beyond its size, more
/// than 1,000 elements inside each other, more than 100 declared attributes, and 2 GiB or more
/// count as faults.
bool parseXML(std::span<const std::byte> document, XMLParserDelegate& delegate);

} // namespace platform
