// SPDX-License-Identifier: MIT
#include "platform/text/XMLParser.h"

// expat is built with its entity guards, but declares them only if this macro is defined.
#define XML_DTD
#include <expat.h>

#include <limits>
#include <memory>
#include <string>
#include <type_traits>

namespace platform {
namespace {

/// Separates an element's namespace from its local name; no namespace contains it.
constexpr char separator = '\n';
constexpr int deepest = 1000;
/// Each costs time at every element of its name.
constexpr int mostDeclaredAttributes = 100;
/// How many times its own size a document may expand to, once that exceeds a few megabytes.
constexpr float mostAmplification = 2;

std::string_view localName(const XML_Char* name) {
    const std::string_view full = name;
    return full.substr(full.rfind(separator) + 1);
}

} // namespace

class XMLStream::Parse {
public:
    explicit Parse(XMLParserDelegate& delegate) : delegate_(delegate) {
        XML_Parser parser = parser_.get();
        XML_SetUserData(parser, this);
        XML_SetElementHandler(parser, startElement, endElement);
        XML_SetCharacterDataHandler(parser, characters);
        XML_SetAttlistDeclHandler(parser, declaredAttribute);
        XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser, mostAmplification);
    }

    bool feed(std::span<const std::byte> bytes, bool isLast) {
        if (bytes.size() > std::numeric_limits<int>::max()) {
            stop();
        }
        const auto* text = reinterpret_cast<const char*>(bytes.data());
        const bool isSound =
            !isStopped_ && XML_Parse(parser_.get(), text, static_cast<int>(bytes.size()),
                                     isLast ? XML_TRUE : XML_FALSE) == XML_STATUS_OK;
        isStopped_ |= !isSound;
        if (isStopped_ || isLast) {
            flush();
        }
        return isSound;
    }

private:
    static void startElement(void* self, const XML_Char* name, const XML_Char** attributes) {
        auto& parse = *static_cast<Parse*>(self);
        parse.flush();
        if (++parse.depth_ > deepest) {
            parse.stop();
        } else {
            parse.delegate_.parser_didStartElement(localName(name));
            for (; *attributes; attributes += 2) {
                parse.delegate_.parser_foundAttribute(localName(attributes[0]), attributes[1]);
            }
        }
    }

    static void endElement(void* self, const XML_Char* name) {
        auto& parse = *static_cast<Parse*>(self);
        parse.flush();
        // expat still reports the end of an empty element whose start stopped it.
        if (!parse.isStopped_) {
            --parse.depth_;
            parse.delegate_.parser_didEndElement(localName(name));
        }
    }

    static void characters(void* self, const XML_Char* text, int length) {
        static_cast<Parse*>(self)->text_.append(text, static_cast<std::size_t>(length));
    }

    static void declaredAttribute(void* self, const XML_Char* /*element*/,
                                  const XML_Char* /*attribute*/, const XML_Char* /*type*/,
                                  const XML_Char* /*value*/, int /*isRequired*/) {
        auto& parse = *static_cast<Parse*>(self);
        if (++parse.declaredAttributes_ > mostDeclaredAttributes) {
            parse.stop();
        }
    }

    void stop() {
        isStopped_ = true;
        XML_StopParser(parser_.get(), XML_FALSE);
    }

    void flush() {
        if (!text_.empty()) {
            delegate_.parser_foundCharacters(text_);
            text_.clear();
        }
    }

    struct Free {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };

    XMLParserDelegate& delegate_;
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, Free> parser_{
        XML_ParserCreateNS(nullptr, separator)};
    std::string text_;
    int depth_ = 0;
    int declaredAttributes_ = 0;
    bool isStopped_ = false;
};

XMLStream::XMLStream(XMLParserDelegate& delegate) : parse_(std::make_unique<Parse>(delegate)) {}

XMLStream::~XMLStream() = default;

bool XMLStream::feed(std::span<const std::byte> bytes) {
    return parse_->feed(bytes, false);
}

bool XMLStream::finish() {
    return parse_->feed({}, true);
}

bool parseXML(std::span<const std::byte> document, XMLParserDelegate& delegate) {
    XMLStream stream(delegate);
    return stream.feed(document) && stream.finish();
}

} // namespace platform
