// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

namespace platform {

/// Hears what a document consists of, in its order. Texts are UTF-8 and last for the call; an
/// element is told by its local name, whatever namespace it is in.
class XMLParserDelegate {
public:
    virtual ~XMLParserDelegate() = default;
    virtual void parser_didStartElement(std::string_view name) = 0;
    /// One of the element's attributes, told right after its start.
    virtual void parser_foundAttribute(std::string_view /*name*/, std::string_view /*value*/) {}
    /// All character data between two tags at once, character references, entities and CDATA
    /// sections put in their places. Never empty.
    virtual void parser_foundCharacters(std::string_view text) = 0;
    virtual void parser_didEndElement(std::string_view name) = 0;
};

/// Reads a document (XML 1.0 with namespaces) as its bytes come, on the caller's thread. A fault
/// ends the parse after what stands before it was told.
///
/// Nothing outside the document is ever loaded. Entities that swell it far beyond its size, more
/// than 1,000 elements inside each other, more than 100 declared attributes, and 2 GiB or more at
/// once count as faults.
class XMLStream {
public:
    /// The delegate is borrowed and outlives the stream.
    explicit XMLStream(XMLParserDelegate& delegate);
    ~XMLStream();
    XMLStream(const XMLStream&) = delete;
    XMLStream& operator=(const XMLStream&) = delete;

    /// The next bytes; false from the first fault on.
    bool feed(std::span<const std::byte> bytes);
    /// The document is at its end. Whether it was whole.
    bool finish();

private:
    class Parse;
    std::unique_ptr<Parse> parse_;
};

/// Reads a whole document, as the stream does. Whether it had no fault.
bool parseXML(std::span<const std::byte> document, XMLParserDelegate& delegate);

} // namespace platform
