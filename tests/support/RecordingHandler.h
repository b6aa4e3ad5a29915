#ifndef ZUTARNEX_TESTS_SUPPORT_RECORDINGHANDLER_H
#define ZUTARNEX_TESTS_SUPPORT_RECORDINGHANDLER_H

#include "xml/sax/ContentHandler.h"
#include "xml/sax/DTDHandler.h"
#include "xml/sax/DeclHandler.h"
#include "xml/sax/EntityResolver2.h"
#include "xml/sax/ErrorHandler.h"
#include "xml/sax/LexicalHandler.h"

#include <functional>
#include <string>
#include <vector>

namespace Quillon::Testing {

/// Implements every handler interface and keeps one line per event, made to be compared:
///
///     startElement("urn:a", "e", "p:e", [("", "x", "x", "CDATA", "1")])
///     characters("a line feed is \n")
///     startDTD("root", null, "root.dtd")
///
/// Null strings are `null`; text is UTF-8 with C escapes, a lone surrogate shows as \uXXXX. A line with the flags of
/// an Attributes2 (`declared specified` behind the value) must be asked for.
class RecordingHandler : public Xml::Sax::EntityResolver2,
                         public Xml::Sax::DTDHandler,
                         public Xml::Sax::ContentHandler,
                         public Xml::Sax::ErrorHandler,
                         public Xml::Sax::LexicalHandler,
                         public Xml::Sax::DeclHandler {
public:
    using Resolver =
        std::function<Xml::Sax::InputSource*(const Xml::XmlString& publicId, const Xml::XmlString& systemId)>;

    RecordingHandler();
    ~RecordingHandler() override;

    const std::vector<std::string>& lines() const { return lines_; }
    /// The lines of the events whose name is `name`.
    std::vector<std::string> linesOf(const std::string& name) const;
    std::string text() const; ///< the lines, each ended by a line feed
    void clear();             ///< forgets the lines, the number of events and the locator

    /// The n-th event from now on (1: the next one) is recorded and then calls `thrower`, once; without a thrower it
    /// throws a SaxException with the message "thrown by the handler". 0: none does.
    void throwAt(std::size_t n, std::function<void()> thrower = {});
    std::size_t eventCount() const { return eventCount_; }

    void joinText(bool join) { joinText_ = join; } ///< a run of `characters`, or of white space, is one line
    void recordFlags(bool record) { flags_ = record; } ///< declared and specified, where the list knows them

    /// What both resolveEntity operations answer; at first null.
    void resolveWith(Resolver resolver) { resolver_ = std::move(resolver); }
    void supplySubset(Xml::Sax::InputSource* source) {
        subset_ = source;
    } ///< getExternalSubset answers it once

    Xml::Sax::Locator* locator() const { return locator_; } ///< the last one that was set

    Xml::Sax::InputSource* resolveEntity(const Xml::XmlString& publicId,
                                         const Xml::XmlString& systemId) override;
    Xml::Sax::InputSource* getExternalSubset(const Xml::XmlString& name,
                                             const Xml::XmlString& baseURI) override;
    Xml::Sax::InputSource* resolveEntity(const Xml::XmlString& name, const Xml::XmlString& publicId,
                                         const Xml::XmlString& baseURI,
                                         const Xml::XmlString& systemId) override;

    void notationDecl(const Xml::XmlString& name, const Xml::XmlString& publicId,
                      const Xml::XmlString& systemId) override;
    void unparsedEntityDecl(const Xml::XmlString& name, const Xml::XmlString& publicId,
                            const Xml::XmlString& systemId, const Xml::XmlString& notationName) override;

    void setDocumentLocator(Xml::Sax::Locator* locator) override;
    void startDocument() override;
    void endDocument() override;
    void startPrefixMapping(const Xml::XmlString& prefix, const Xml::XmlString& uri) override;
    void endPrefixMapping(const Xml::XmlString& prefix) override;
    void startElement(const Xml::XmlString& uri, const Xml::XmlString& localName, const Xml::XmlString& qName,
                      const Xml::Sax::Attributes& attributes) override;
    void endElement(const Xml::XmlString& uri, const Xml::XmlString& localName,
                    const Xml::XmlString& qName) override;
    void characters(const unsigned short* ch, unsigned int start, unsigned int length) override;
    void ignorableWhitespace(const unsigned short* ch, unsigned int start, unsigned int length) override;
    void processingInstruction(const Xml::XmlString& target, const Xml::XmlString& data) override;
    void skippedEntity(const Xml::XmlString& name) override;

    void warning(const Xml::Sax::SaxParseException& exception) override;
    void error(const Xml::Sax::SaxParseException& exception) override;
    void fatalError(const Xml::Sax::SaxParseException& exception) override;

    void startDTD(const Xml::XmlString& name, const Xml::XmlString& publicId,
                  const Xml::XmlString& systemId) override;
    void endDTD() override;
    void startEntity(const Xml::XmlString& name) override;
    void endEntity(const Xml::XmlString& name) override;
    void startCDATA() override;
    void endCDATA() override;
    void comment(const unsigned short* ch, unsigned int start, unsigned int length) override;

    void elementDecl(const Xml::XmlString& name, const Xml::XmlString& model) override;
    void attributeDecl(const Xml::XmlString& eName, const Xml::XmlString& aName, const Xml::XmlString& type,
                       const Xml::XmlString& mode, const Xml::XmlString& value) override;
    void internalEntityDecl(const Xml::XmlString& name, const Xml::XmlString& value) override;
    void externalEntityDecl(const Xml::XmlString& name, const Xml::XmlString& publicId,
                            const Xml::XmlString& systemId) override;

private:
    void record(const char* name, std::initializer_list<const Xml::XmlString*> arguments = {});
    void recordText(const char* name, const std::u16string& text);
    void recordRun(const char* name, const std::u16string& text);
    void recordError(const char* name, const Xml::Sax::SaxParseException& exception);
    void add(std::string line);
    void count();

    std::vector<std::string> lines_;
    std::size_t eventCount_ = 0;
    std::size_t throwIn_ = 0;
    std::function<void()> thrower_;
    bool joinText_ = false;
    bool flags_ = false;
    const char* openRun_ = nullptr; ///< the last event, when the next one can be joined to it
    std::u16string openText_;       ///< its text, when text is joined
    Resolver resolver_;
    Xml::Sax::InputSource* subset_ = nullptr;
    Xml::Sax::Locator* locator_ = nullptr;
};

/// The form in which a RecordingHandler writes a string: quoted and escaped, or `null`.
std::string quoted(const Xml::XmlString& string);
std::string quoted(const std::u16string& text);

} // namespace Quillon::Testing

#endif
