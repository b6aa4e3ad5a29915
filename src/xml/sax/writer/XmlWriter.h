#ifndef ZUTARNEX_XML_SAX_WRITER_XMLWRITER_H
#define ZUTARNEX_XML_SAX_WRITER_XMLWRITER_H

#include "xml/XmlString.h"
#include "xml/sax/Attributes.h"
#include "xml/sax/ContentHandler.h"
#include "xml/sax/DTDHandler.h"
#include "xml/sax/DeclHandler.h"
#include "xml/sax/ErrorHandler.h"
#include "xml/sax/LexicalHandler.h"
#include "xml/sax/Locator.h"
#include "zutarnex/export.h"

#include <cstdint>
#include <iosfwd>

namespace Quillon::Xml::Sax {

/// Writes SAX events as XML text to a standard output stream: as the last stage of a reader or filter chain, or
/// driven by the caller itself.
///
///     std::ostringstream out;
///     XmlWriter writer(out);
///     AttributesImpl attributes;
///     attributes.addAttribute(makeString(""), makeString("id"), makeString("id"), makeString("CDATA"), makeString("7"));
///     writer.startDocument();
///     writer.startElement(makeString(""), makeString("part"), makeString("part"), attributes);
///     writer.endElement(makeString(""), makeString("part"), makeString("part"));
///     writer.endDocument();                // <?xml version="1.0" encoding="UTF-8"?>, <part id="7"></part>
///
/// The writer writes what it is told, in the order of the calls: it keeps no stack of elements, checks no nesting, no
/// names and no identifiers, and does not indent (XmlFilterFormat does). Text is escaped for its context, converted to
/// the encoding and wholly in the stream when the operation returns. One writer can write many documents: each
/// startDocument() resets the depth of entities and nothing else.
///
/// Deliberate (the tests named here and below are in tests/xml/sax/writer/):
/// - a character that the encoding lacks becomes `&;`, never a character reference
///   (UnwritableUnitsBecomeAmpersandSemicolon), and each half of a surrogate pair becomes one of its own;
/// - an element without content is a start tag and an end tag (ElementWithoutContentIsTwoTags);
/// - a carriage return is written as it is (TabAndCarriageReturnStayInEveryContext);
/// - the state of the stream is never looked at (FailedStreamIsNotNoticed): whoever needs to know checks it.
///
/// Layout:    the four bases, then encoding, locator, errorHandler, entityDepth, unwritableMask, canonical, inCDATA,
///            inEpilogue, inDoctype, startedDoctype, expandingEntities, out; 44 bytes on i386, 80 on x86-64
///            (tests/abi/WriterAbiTest.cpp). The only virtual operations are those of the four interfaces and the
///            destructor.
/// Units:     starts and lengths count 16-bit code units.
/// Ownership: stream, encoding name, locator and error handler are not taken; they must stay alive as long as the
///            writer is used. Arrays and strings are needed during the call only.
/// Threads:   one writer is used by one thread at a time; several writers on different threads are independent.
/// Throws:    the output primitives: IllegalCharacterException, IllegalArgumentException,
///            System::OutOfMemoryException, SaxNotSupportedException ("Encoding: " and its name, when nothing can
///            convert to that encoding), SaxException (a null array with a length), and what the stream throws when
///            its exceptions() are on. From the events only SaxException and what derives from it gets out: anything
///            else, an illegal character and exhausted memory included, goes to the host's `unexpected`, which ends
///            the process. What was written before a throw stays in the stream.
/// Cost:      an operation converts short text into the room that the stream's buffer has, any other into 4 KiB on the
///            stack, which it inserts at its end, or whenever they are full; nothing is allocated. Each fragment by
///            itself is one conversion (one block of the host's allocator, freed at once) and one insertion in any other
///            encoding, with a field width, and for a stream that is tied, not buffered, or throws for failbit.
class ZUTARNEX_API XmlWriter : public ContentHandler,
                               public LexicalHandler,
                               public DTDHandler,
                               public DeclHandler {
public:
    /// Where a run of characters stands, and so how it is escaped.
    ///
    ///     unit      EntityValue   AttributeValue   CharacterData   UnescapedText
    ///     "         &quot;        &quot;           "               "
    ///     '         &apos; (*)    &apos; (*)       '               '
    ///     &         &             &amp;            &amp;           &
    ///     <         <             &lt;             &lt;            <
    ///     >         >             &gt;             &gt;            >
    ///     unwritable &;           &;               &;              IllegalCharacterException
    ///
    /// (*) ' in canonical mode. A line feed is eol() everywhere; U+FFFE, U+FFFF and the controls below U+0020, tab,
    /// line feed and carriage return excepted, are an IllegalCharacterException everywhere.
    enum EscapeContext : int {
        EntityValue = 0,    ///< the value of an internal entity
        AttributeValue = 1, ///< attribute values and their defaults
        CharacterData = 2,  ///< text of elements
        UnescapedText = 3   ///< CDATA sections, comments, processing instructions
    };

    /// Writes to std::cout. Throws: System::OutOfMemoryException, the first writer of a process only.
    XmlWriter();
    /// Writes to `out`. Throws: System::OutOfMemoryException, the first writer of a process only.
    explicit XmlWriter(std::ostream& out);
    /// Neither flushes nor closes the stream.
    ~XmlWriter() override;
    XmlWriter(const XmlWriter&) = delete;
    XmlWriter& operator=(const XmlWriter&) = delete;

    /// Selects the encoding of what is written from now on: "UTF-8" (the one a new writer has), "US-ASCII" or
    /// "ISO-8859-1", spelled exactly so. The pointer is kept, not the text.
    ///
    /// Deliberate: any other name is kept, too, and does not change which characters count as writable
    /// (UnknownEncodingKeepsWhatIsWritable); null makes UTF-8 without an XML declaration (NullEncodingIsUtf8WithoutDeclaration).
    /// Text of an encoding with zero bytes, such as UTF-16, is cut at the first one (Utf16IsCutAtTheFirstZeroByte).
    void setEncoding(const char* name);
    const char* getEncoding() const;

    /// Canonical output: no XML declaration, no DOCTYPE and no comments in it, CDATA sections as plain text, no `&apos;`.
    /// (It is not the W3C's Canonical XML.) Switching it on switches expandingEntities on.
    ///
    /// Deliberate: switching it off leaves expandingEntities on (CanonicalOffKeepsExpandingEntities); the declarations
    /// of a DTD are written although their DOCTYPE is not (CanonicalModeWritesDeclarationsNevertheless).
    void setCanonical(bool on);
    bool isCanonical() const;

    void setErrorHandler(ErrorHandler* handler); ///< is kept only; the writer reports nothing to it

    bool inCDATA() const; ///< between startCDATA() and endCDATA(): characters() escapes nothing
    void inCDATA(bool on);
    bool inEpilogue()
        const; ///< canonical mode puts comments and instructions on lines of their own; set by the caller
    void inEpilogue(bool on);
    bool inDoctype() const; ///< between startDTD() and endDTD()
    void inDoctype(bool on);
    bool startedDoctype() const; ///< from startDTD() to the first startElement(): declarations are written
    void startedDoctype(bool on);
    bool
    expandingEntities() const; ///< startDTD() leaves out the external identifier; endEntity() does not count
    void expandingEntities(bool on);

    // The output primitives.

    /// Converts `length` units from `ch` + `start` and writes what comes before the first zero byte. The two halves of
    /// a surrogate pair must be in one call to be one character.
    void rawWrite(const unsigned short* ch, unsigned int start, unsigned int length);
    /// Writes all of `s`, not escaped; nothing when it is null.
    void rawWrite(const XmlString& s);
    void rawWrite(unsigned short c); ///< writes one unit

    XmlString eol() const; ///< a line feed, as a view on a constant
    void newLine();        ///< writes eol()

    /// Writes `length` units from `ch` + `start`, escaped for `context`.
    ///
    /// Throws: IllegalCharacterException, after all up to the last replacement or line feed before that character was
    ///         written, and nothing behind it; IllegalArgumentException for a context that is none of the four.
    void escapeChars(const unsigned short* ch, unsigned int start, unsigned int length,
                     EscapeContext context);
    /// Writes `value`, escaped, between quotation marks.
    void writeQuotedValue(const XmlString& value, EscapeContext context);
    /// Writes `<`, the name, the attributes in their order, and `>`. The length of the list is asked for again before
    /// each attribute.
    ///
    /// Throws: IllegalArgumentException ("no XML name") for an attribute whose qualified name is null or empty; what
    ///         came before it has been written.
    void writeStartTag(const XmlString& qName, const Attributes& attributes);

    // ContentHandler

    void setDocumentLocator(Locator* locator) override;
    /// Deliberate: no declaration in US-ASCII (UsAsciiDocumentHasNoDeclaration).
    void startDocument() override;
    void endDocument() override; ///< writes two line feeds, in canonical mode none
    void startPrefixMapping(const XmlString& prefix, const XmlString& uri) override; ///< writes nothing
    void endPrefixMapping(const XmlString& prefix) override;                         ///< writes nothing
    void startElement(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                      const Attributes& attributes) override;
    void endElement(const XmlString& uri, const XmlString& localName, const XmlString& qName) override;
    void characters(const unsigned short* ch, unsigned int start, unsigned int length) override;
    void ignorableWhitespace(const unsigned short* ch, unsigned int start, unsigned int length) override;
    void processingInstruction(const XmlString& target, const XmlString& data) override;
    void skippedEntity(const XmlString& name) override;

    // LexicalHandler

    void startDTD(const XmlString& name, const XmlString& publicId, const XmlString& systemId) override;
    void endDTD() override;
    void startEntity(const XmlString& name) override; ///< writes and changes nothing
    /// Deliberate: takes one away although startEntity adds none, so that until the next startDocument no declaration
    /// and no CDATA delimiter is written (EndEntitySilencesDeclarationsAndDelimiters).
    void endEntity(const XmlString& name) override;
    void startCDATA() override;
    void endCDATA() override;
    void comment(const unsigned short* ch, unsigned int start, unsigned int length) override;

    // DTDHandler and DeclHandler: written between startDTD() and the first startElement().

    /// Deliberate: with no identifier at all a space is left before `>` (NotationWithoutIdentifiersKeepsItsSpace).
    void notationDecl(const XmlString& name, const XmlString& publicId, const XmlString& systemId) override;
    /// Deliberate: no space between the two literals (PublicUnparsedEntityHasNoSpaceBetweenItsLiterals).
    void unparsedEntityDecl(const XmlString& name, const XmlString& publicId, const XmlString& systemId,
                            const XmlString& notationName) override;

    void elementDecl(const XmlString& name, const XmlString& model) override;
    void attributeDecl(const XmlString& eName, const XmlString& aName, const XmlString& type,
                       const XmlString& mode, const XmlString& value) override;
    void internalEntityDecl(const XmlString& name, const XmlString& value) override;
    /// Deliberate: no space before PUBLIC and none between the two literals (PublicExternalEntityHasNoSpaces).
    void externalEntityDecl(const XmlString& name, const XmlString& publicId,
                            const XmlString& systemId) override;

private:
    friend class EventOutput;

    void ensureLocator();
    bool writesDeclarations() const;

    const char* encoding_;
    Locator* locator_ = nullptr;
    ErrorHandler* errorHandler_ = nullptr;
    std::int32_t entityDepth_ = 0;
    std::uint16_t unwritableMask_ = 0; ///< a unit with one of these bits is not in the encoding
    bool canonical_ = false;
    bool inCDATA_ = false;
    bool inEpilogue_ = false;
    bool inDoctype_ = false;
    bool startedDoctype_ = false;
    bool expandingEntities_ = false;
    std::ostream* out_;
};

} // namespace Quillon::Xml::Sax

#endif
