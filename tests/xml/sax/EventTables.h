#ifndef ZUTARNEX_TESTS_XML_SAX_EVENTTABLES_H
#define ZUTARNEX_TESTS_XML_SAX_EVENTTABLES_H

#include "support/Text.h"
#include "xml/sax/AttributesImpl.h"
#include "xml/sax/ContentHandler.h"
#include "xml/sax/DTDHandler.h"
#include "xml/sax/DeclHandler.h"
#include "xml/sax/ErrorHandler.h"
#include "xml/sax/LexicalHandler.h"
#include "xml/sax/LocatorImpl.h"
#include "xml/sax/SaxParseException.h"

#include <string>

namespace Quillon::Xml::Sax {

/// An event with arguments that all differ, and the line that a RecordingHandler makes of it.
template <class Handler>
struct EventCase {
    const char* name;
    void (*play)(Handler&);
    const char* line;
};

template <class Handler>
std::string nameOfCase(const testing::TestParamInfo<EventCase<Handler>>& info) {
    return info.param.name;
}

constexpr unsigned short kRun[] = {'.', '.', 'a', 0xE9, '\n', 'z', '.', 0};

inline void playStartElement(ContentHandler& handler) {
    using Testing::text;
    AttributesImpl attributes;
    attributes.addAttribute(text(u"urn:a"), text(u"x"), text(u"p:x"), text(u"ID"), text(u"1"));
    attributes.addAttribute(text(u""), text(u"y"), text(u"y"), text(u"CDATA"), text(u"2"));
    handler.startElement(text(u"urn:e"), text(u"e"), text(u"p:e"), attributes);
}

inline void playLocator(ContentHandler& handler) {
    LocatorImpl locator;
    handler.setDocumentLocator(&locator);
    handler.setDocumentLocator(nullptr);
}

inline const EventCase<ContentHandler> kContentEvents[] = {
    {"setDocumentLocator", playLocator, "setDocumentLocator(locator)\nsetDocumentLocator(null)\n"},
    {"startDocument", [](ContentHandler& h) { h.startDocument(); }, "startDocument()\n"},
    {"endDocument", [](ContentHandler& h) { h.endDocument(); }, "endDocument()\n"},
    {"startPrefixMapping",
     [](ContentHandler& h) { h.startPrefixMapping(Testing::text(u"p"), Testing::text(u"urn:p")); },
     "startPrefixMapping(\"p\", \"urn:p\")\n"},
    {"endPrefixMapping", [](ContentHandler& h) { h.endPrefixMapping(Testing::text(u"p")); },
     "endPrefixMapping(\"p\")\n"},
    {"startElement", playStartElement,
     "startElement(\"urn:e\", \"e\", \"p:e\", [(\"urn:a\", \"x\", \"p:x\", \"ID\", \"1\"), "
     "(\"\", \"y\", \"y\", \"CDATA\", \"2\")])\n"},
    {"endElement",
     [](ContentHandler& h) {
         h.endElement(Testing::text(u"urn:e"), Testing::text(u"e"), Testing::text(u"p:e"));
     },
     "endElement(\"urn:e\", \"e\", \"p:e\")\n"},
    {"characters", [](ContentHandler& h) { h.characters(kRun, 2, 4); }, "characters(\"a\u00E9\\nz\")\n"},
    {"ignorableWhitespace", [](ContentHandler& h) { h.ignorableWhitespace(kRun, 2, 4); },
     "ignorableWhitespace(\"a\u00E9\\nz\")\n"},
    {"processingInstruction",
     [](ContentHandler& h) { h.processingInstruction(Testing::text(u"target"), XmlString()); },
     "processingInstruction(\"target\", null)\n"},
    {"skippedEntity", [](ContentHandler& h) { h.skippedEntity(Testing::text(u"ent")); },
     "skippedEntity(\"ent\")\n"},
};

inline const EventCase<DTDHandler> kDtdEvents[] = {
    {"notationDecl",
     [](DTDHandler& h) { h.notationDecl(Testing::text(u"n"), Testing::text(u"pub"), Testing::text(u"sys")); },
     "notationDecl(\"n\", \"pub\", \"sys\")\n"},
    {"unparsedEntityDecl",
     [](DTDHandler& h) {
         h.unparsedEntityDecl(Testing::text(u"u"), XmlString(), Testing::text(u"sys"), Testing::text(u"gif"));
     },
     "unparsedEntityDecl(\"u\", null, \"sys\", \"gif\")\n"},
};

inline SaxParseException sampleError() {
    return SaxParseException(Testing::text(u"msg"), Testing::text(u"pub"), Testing::text(u"sys"), 3,
                             (1LL << 40) + 1);
}

inline const EventCase<ErrorHandler> kErrorEvents[] = {
    {"warning", [](ErrorHandler& h) { h.warning(sampleError()); },
     "warning(\"msg\", \"pub\", \"sys\", 3, 1099511627777)\n"},
    {"error", [](ErrorHandler& h) { h.error(sampleError()); },
     "error(\"msg\", \"pub\", \"sys\", 3, 1099511627777)\n"},
    {"fatalError", [](ErrorHandler& h) { h.fatalError(sampleError()); },
     "fatalError(\"msg\", \"pub\", \"sys\", 3, 1099511627777)\n"},
};

inline const EventCase<LexicalHandler> kLexicalEvents[] = {
    {"startDTD",
     [](LexicalHandler& h) { h.startDTD(Testing::text(u"root"), XmlString(), Testing::text(u"r.dtd")); },
     "startDTD(\"root\", null, \"r.dtd\")\n"},
    {"endDTD", [](LexicalHandler& h) { h.endDTD(); }, "endDTD()\n"},
    {"startEntity", [](LexicalHandler& h) { h.startEntity(Testing::text(u"[dtd]")); },
     "startEntity(\"[dtd]\")\n"},
    {"endEntity", [](LexicalHandler& h) { h.endEntity(Testing::text(u"%p")); }, "endEntity(\"%p\")\n"},
    {"startCDATA", [](LexicalHandler& h) { h.startCDATA(); }, "startCDATA()\n"},
    {"endCDATA", [](LexicalHandler& h) { h.endCDATA(); }, "endCDATA()\n"},
    {"comment", [](LexicalHandler& h) { h.comment(kRun, 2, 4); }, "comment(\"a\u00E9\\nz\")\n"},
};

inline const EventCase<DeclHandler> kDeclEvents[] = {
    {"elementDecl", [](DeclHandler& h) { h.elementDecl(Testing::text(u"e"), Testing::text(u"(a,b)")); },
     "elementDecl(\"e\", \"(a,b)\")\n"},
    {"attributeDecl",
     [](DeclHandler& h) {
         h.attributeDecl(Testing::text(u"e"), Testing::text(u"a"), Testing::text(u"ID"),
                         Testing::text(u"#IMPLIED"), XmlString());
     },
     "attributeDecl(\"e\", \"a\", \"ID\", \"#IMPLIED\", null)\n"},
    {"internalEntityDecl",
     [](DeclHandler& h) { h.internalEntityDecl(Testing::text(u"i"), Testing::text(u"value")); },
     "internalEntityDecl(\"i\", \"value\")\n"},
    {"externalEntityDecl",
     [](DeclHandler& h) {
         h.externalEntityDecl(Testing::text(u"x"), Testing::text(u"pub"), Testing::text(u"sys"));
     },
     "externalEntityDecl(\"x\", \"pub\", \"sys\")\n"},
};

} // namespace Quillon::Xml::Sax

#endif
