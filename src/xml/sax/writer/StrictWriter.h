#ifndef ZUTARNEX_XML_SAX_WRITER_STRICTWRITER_H
#define ZUTARNEX_XML_SAX_WRITER_STRICTWRITER_H

#include "xml/sax/writer/TextConsumer.h"
#include "zutarnex/export.h"

#include <iosfwd>
#include <memory>

namespace Quillon::Xml::Sax {

class Refusal;
class StrictDocument;

/// A writer that cannot write ill-formed XML: what it writes reads back as the same events, or it refuses the event
/// that would spoil that, before a byte of it is written.
///
///     std::ofstream out("catalog.xml");
///     StrictWriter writer(out);
///     EventFilter::bind(&reader, &writer);
///     reader.parse(makeString("catalog-old.xml"));
///
/// The same events: the texts of adjacent `characters` are one text, and where CDATA sections begin and end may
/// differ, because what cannot stand in one is written between two.
///
/// What is written as something else:
/// - In text and attribute values, characters that the encoding lacks and those that a parser would change (carriage
///   return; tab and line feed in attribute values) are character references, and so are `&`, `%`, `"` and carriage
///   returns in the values of entities, which an event carries as replacement text.
/// - `]]>` and such characters inside a CDATA section end it and begin another one.
/// - Text in an element that is declared to hold elements only is a CDATA section.
/// - An external entity is the reference to it: what comes between startEntity() and endEntity() is checked for its
///   nesting and not written. Likewise the declarations of the external subset ("[dtd]") and of external parameter
///   entities. Switch `expandingEntities` on to have the content itself, without the boundaries, instead.
/// - A prefix mapping whose attribute is not in the list of its element (a reader without `namespace-prefixes`) is
///   written as that attribute.
///
/// What is refused: names that are none, or that the encoding cannot hold; characters that XML does not have, lone
/// surrogates among them (also the half of a pair whose other half comes with the next event); comments, processing
/// instructions and identifiers that cannot be written as they are; a second root, text outside the root, tags that do
/// not nest, events out of their order; prefixes that are not bound, or bound to something else than the event says;
/// attributes that occur twice, whose type is another one than was declared, or that were declared with a default and
/// left out; entities declared twice, and references to entities without a declaration that a parser would find.
///
/// Canonical mode and `expandingEntities` are those of XmlWriter; in canonical mode no document type is written, so
/// DTD events and the types of attributes do not read back. The encoding may not change inside a document.
///
/// Units, Ownership, Threads: as TextConsumer.
/// Throws:    SaxException, its message the event and the character or the reason ("comment: U+002D ..."), or, with a
///            locator, the SaxParseException with the place. Nothing of
///            that event is in the stream; it is not for the writer to say what becomes of the document, but the next
///            startDocument() begins a new one. SaxNotSupportedException from startDocument() for an encoding other than
///            UTF-8, US-ASCII and ISO-8859-1. Unlike XmlWriter's, these events let System::OutOfMemoryException and
///            std::bad_alloc through.
/// Cost:      as XmlWriter, and a look at each unit of names and texts; memory for the names of the open elements and
///            for what the DTD declares.
class ZUTARNEX_API StrictWriter : public TextConsumer {
public:
    explicit StrictWriter(std::ostream& out);
    ~StrictWriter() override;

    /// Whether white space may be layout, as XmlFilterFormat makes it. Outside the root it is then written instead of
    /// refused, and in an element that is declared to hold elements only it stands there as it is, though it does not
    /// read back as `characters`. Off at first.
    bool spaceIsLayout() const noexcept;
    void spaceIsLayout(bool on) noexcept;

    /// REQUIRES: a locator that is set before startDocument() lives until endDocument(), or is not used again after
    /// the next startDocument().
    void setDocumentLocator(Locator* locator) override;
    void startDocument() override;
    void endDocument() override;
    void startPrefixMapping(const XmlString& prefix, const XmlString& uri) override;
    void endPrefixMapping(const XmlString& prefix) override;
    void startElement(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                      const Attributes& attributes) override;
    void endElement(const XmlString& uri, const XmlString& localName, const XmlString& qName) override;
    void characters(const unsigned short* ch, unsigned int start, unsigned int length) override;
    void ignorableWhitespace(const unsigned short* ch, unsigned int start, unsigned int length) override;
    void processingInstruction(const XmlString& target, const XmlString& data) override;
    void skippedEntity(const XmlString& name) override;

    void startDTD(const XmlString& name, const XmlString& publicId, const XmlString& systemId) override;
    void endDTD() override;
    void startEntity(const XmlString& name) override;
    void endEntity(const XmlString& name) override;
    void startCDATA() override;
    void endCDATA() override;
    void comment(const unsigned short* ch, unsigned int start, unsigned int length) override;

    void notationDecl(const XmlString& name, const XmlString& publicId, const XmlString& systemId) override;
    void unparsedEntityDecl(const XmlString& name, const XmlString& publicId, const XmlString& systemId,
                            const XmlString& notationName) override;

    void elementDecl(const XmlString& name, const XmlString& model) override;
    void attributeDecl(const XmlString& eName, const XmlString& aName, const XmlString& type,
                       const XmlString& mode, const XmlString& value) override;
    void internalEntityDecl(const XmlString& name, const XmlString& value) override;
    void externalEntityDecl(const XmlString& name, const XmlString& publicId,
                            const XmlString& systemId) override;

private:
    Refusal enterDeclaration(const char* event) const;
    bool writesDeclarations() const noexcept;
    void endDeclaration();

    std::unique_ptr<StrictDocument> document_;
};

} // namespace Quillon::Xml::Sax

#endif
