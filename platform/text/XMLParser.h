// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

namespace platform {

/// Receives a document's contents in order. Texts are UTF-8 and valid for the call only. An element
/// is reported by its local name, whatever its namespace.
class XMLParserDelegate {
public:
    virtual ~XMLParserDelegate() = default;
    virtual void parser_didStartElement(std::string_view name) = 0;
    /// One attribute of the element, reported right after its start.
    virtual void parser_foundAttribute(std::string_view /*name*/, std::string_view /*value*/) {}
    /// All character data between two tags in one call, with character references, entities and
    /// CDATA sections resolved. Never empty.
    virtual void parser_foundCharacters(std::string_view text) = 0;
    virtual void parser_didEndElement(std::string_view name) = 0;
};

/// Parses a document (XML 1.0 with namespaces) as its bytes arrive, on the caller's thread. A fault
/// ends the parse once everything before it has been reported.
///
/// Nothing outside the document is ever loaded. Entities that expand it far beyond its size, more
/// than 1,000 nested elements, more than 100 declared attributes, and 2 GiB or more at once are
/// faults.
class XMLStream {
public:
    /// The delegate is borrowed and must outlive the stream.
    explicit XMLStream(XMLParserDelegate& delegate);
    ~XMLStream();
    XMLStream(const XMLStream&) = delete;
    XMLStream& operator=(const XMLStream&) = delete;

    /// Parses the next bytes. Returns false from the first fault on.
    bool feed(std::span<const std::byte> bytes);
    /// Ends the document. Returns whether it was complete and without fault.
    bool finish();

private:
    class Parse;
    std::unique_ptr<Parse> parse_;
};

/// Parses a whole document as the stream does. Returns whether it was without fault.
bool parseXML(std::span<const std::byte> document, XMLParserDelegate& delegate);

} // namespace platform
